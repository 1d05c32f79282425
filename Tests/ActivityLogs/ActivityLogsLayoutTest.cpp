// What the window needs for its texts, in the language that CORVANE_TEST_LANGUAGE names: the sentences are made
// once a process, so each language has a run of its own.

#include "Classes/ACTIVITY_LOGS/LogTableDelegate.h"
#include "Tests/ActivityLogs/ActivityLogsFixture.h"
#include "Utility/Language/LanguageManager.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>

namespace
{
/// The language is chosen in a home of its own, before the first sentence is made.
class Language : public testing::Environment
{
public:
    void SetUp() override
    {
        m_home.emplace();
        LanguageManager::shared().setCurrentLanguage(
            qEnvironmentVariable("CORVANE_TEST_LANGUAGE", QStringLiteral("en")));
    }
    void TearDown() override { m_home.reset(); }

private:
    std::optional<TemporaryHome> m_home;
};
[[maybe_unused]] const auto *const chosen = testing::AddGlobalTestEnvironment(new Language);

using ActivityLogsLayout = ActivityLogsFixture;
} // namespace

TEST_F(ActivityLogsLayout, NothingIsClippedAndEveryControlHasAName)
{
    const QByteArray date = dayKey(today()).toLatin1() + " 10:00:00";
    day(today(),
        record(date, "In Progress", "23") + record(date, "Cancelled", "7") + record(date, "Success", "20"));
    open();
    for (const auto *label : view().findChildren<QLabel *>()) {
        if (label->isVisible()) {
            EXPECT_LE(label->sizeHint().width(), label->width()) << label->text().toStdString();
        }
        EXPECT_EQ(label->accessibleName(), QString());
    }
    for (const char *control : {"periodPopUp", "refreshButton", "helpButton", "logTable"})
        EXPECT_FALSE(outlet<QWidget>(control).accessibleName().isEmpty()) << control;
    EXPECT_LE(outlet<QComboBox>("periodPopUp").sizeHint().width(), outlet<QComboBox>("periodPopUp").width());
    const QHeaderView &header = *table().horizontalHeader();
    for (int section = 0; section < LogColumns; ++section) {
        if (section != int(LogColumn::Delete)) {
            EXPECT_LE(header.sectionSizeHint(section), header.sectionSize(section)) << section;
        }
        for (int row = 0; row < 3; ++row)
            EXPECT_LE(table().sizeHintForIndex(view().model().index(row, section)).width(),
                      header.sectionSize(section))
                << view().model().text(row, LogColumn(section)).toStdString();
    }
    EXPECT_FALSE(table().horizontalScrollBar()->isVisible());
    for (const QTabBar *bar : view().findChildren<QTabBar *>())
        EXPECT_LE(bar->sizeHint().width(), view().width());
}
