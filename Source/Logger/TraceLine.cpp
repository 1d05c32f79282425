#include "Source/Logger/TraceLine.h"

#include "Utility/Paths/PathTable.h"

#include <unicode/smpdtfmt.h>

#include <ctime>
#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
/// One formatter and the last text that it made. Making a formatter costs some 25 microseconds, using it 3.
class SecondStamp
{
public:
    QString at(std::time_t second)
    {
        const std::lock_guard lock(m_lock);
        if (second != m_second) {
            m_text = format(second);
            m_second = second;
        }
        return m_text;
    }

private:
    QString format(std::time_t second)
    {
        UErrorCode status = U_ZERO_ERROR;
        if (!m_formatter)
            m_formatter = std::make_unique<icu::SimpleDateFormat>(u"EEE LLL d yyyy h:m:s a", status);
        if (U_FAILURE(status))
            return {};
        icu::UnicodeString text;
        m_formatter->format(static_cast<UDate>(second) * 1000.0, text);
        return QString::fromUtf16(text.getBuffer(), text.length());
    }

    std::mutex m_lock;
    std::unique_ptr<icu::SimpleDateFormat> m_formatter;
    std::time_t m_second = -1;
    QString m_text;
};
} // namespace

QString TraceLine::timestamp()
{
    // Never destroyed: threads may trace until the very end of the process.
    static auto &stamp = *new SecondStamp;
    return stamp.at(std::time(nullptr));
}

QString TraceLine::namingThisProduct(QString line)
{
    const QLatin1StringView word("::quillon");
    if (line.contains(word, Qt::CaseInsensitive))
        line.replace(word, u"::"_s + pathValue("ApplicationName"_L1).toLower(), Qt::CaseInsensitive);
    return line;
}
