#include "Classes/ACTIVITY_LOGS/LogStatusLook.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace
{
struct Word {
    const char16_t *word;
    LogState state;
};
constexpr Word Words[] = {
    {u"Success", LogState::Success},      {u"Failure", LogState::Failure},   {u"Failed", LogState::Failure},
    {u"In Progress", LogState::Progress}, {u"Cancelled", LogState::Warning}, {u"Aborted", LogState::Warning},
};

constexpr LogStatusLook Looks[LogStates] = {
    {LogState::Success, u"log_status_success", u"success"},
    {LogState::Failure, u"log_status_failure", u"failure"},
    {LogState::Warning, u"log_status_warning", u"warning"},
    {LogState::Progress, u"log_status_progress", u"progress"},
    {LogState::Neutral, u"log_status_neutral", u"secondary"},
};

struct Image {
    const char16_t *name = nullptr;
    std::initializer_list<int> optypes;
};
const Image Images[] = {
    {u"log_online_backup", {1, 2}},
    {u"log_online_restore", {3, 11}},
    {u"log_search", {4}},
    {u"log_online_delete", {5, 18}},
    {u"log_rename", {6}},
    {u"log_protection", {7}},
    {u"log_cleanup", {8, 10}},
    {u"log_putback", {9}},
    {u"log_sync", {12}},
    {u"log_local_backup", {13, 14}},
    {u"log_local_restore", {15}},
    {u"log_local_delete", {16}},
    {u"log_express_backup", {19, 20}},
    {u"log_express_restore", {21}},
    {u"log_express_delete", {22}},
    {u"log_network_backup", {23, 24}},
};
} // namespace

const LogStatusLook &logStateLook(LogState state)
{
    return Looks[int(state)];
}

const LogStatusLook &logStatusLook(QStringView status)
{
    const QStringView word = status.trimmed();
    const auto *known = std::find_if(std::begin(Words), std::end(Words), [word](const Word &row) {
        return word.compare(QStringView(row.word), Qt::CaseInsensitive) == 0;
    });
    return logStateLook(known == std::end(Words) ? LogState::Neutral : known->state);
}

bool isInProgress(QStringView status)
{
    return status == u"In Progress";
}

QString logOperationImage(int optype)
{
    for (const Image &image : Images) {
        if (std::find(image.optypes.begin(), image.optypes.end(), optype) != image.optypes.end())
            return QString::fromUtf16(image.name);
    }
    return QStringLiteral("log_other");
}
