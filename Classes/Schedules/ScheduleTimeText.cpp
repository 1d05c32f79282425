#include "Classes/Schedules/ScheduleTimeText.h"

#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <memory>

namespace
{
/// Local wall time as a formatter in GMT wants it: so the time zone is Qt's everywhere, and read only once.
UDate wallTime(const QDateTime &moment)
{
    const auto local = moment.toLocalTime();
    return double(local.toMSecsSinceEpoch() + qint64(local.offsetFromUtc()) * 1000);
}

std::u16string_view unitsOf(const icu::UnicodeString &text)
{
    return {text.getBuffer(), size_t(text.length())};
}

QString toQString(const icu::UnicodeString &text)
{
    return QString::fromUtf16(text.getBuffer(), text.length());
}

/// The formatters of one locale, kept because each costs far more to make than to use.
class LocaleFormats
{
public:
    explicit LocaleFormats(const QLocale &locale) : m_locale(locale)
    {
        const auto name = locale == QLocale::c() ? QByteArray("en_US_POSIX") : locale.name().toLatin1();
        const icu::Locale icuLocale(name.constData());
        UErrorCode status = U_ZERO_ERROR;
        m_symbols = std::make_unique<icu::DateFormatSymbols>(icuLocale, status);
        m_pattern =
            std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(u"MM-dd-yyyy HH:mm"), icuLocale, status);
        m_shortTime.reset(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, icuLocale));
        m_usable = U_SUCCESS(status) && m_shortTime;
        if (!m_usable)
            return;
        m_pattern->adoptTimeZone(icu::TimeZone::getGMT()->clone());
        m_shortTime->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    }

    [[nodiscard]] const QLocale &locale() const { return m_locale; }

    [[nodiscard]] bool shows24Hours(const QDateTime &now) const
    {
        if (!m_usable)
            return true;
        icu::UnicodeString time;
        m_shortTime->format(wallTime(now), time);
        int32_t count = 0;
        const auto *halves = m_symbols->getAmPmStrings(count);
        for (int32_t i = 0; i < count; ++i) {
            if (unitsOf(time).find(unitsOf(halves[i])) != std::u16string_view::npos)
                return false;
        }
        return true;
    }

    [[nodiscard]] QString dateAndTime(const QDateTime &moment) const
    {
        icu::UnicodeString text;
        m_pattern->format(wallTime(moment), text);
        return toQString(text);
    }

private:
    QLocale m_locale;
    std::unique_ptr<icu::DateFormatSymbols> m_symbols;
    std::unique_ptr<icu::SimpleDateFormat> m_pattern;
    std::unique_ptr<icu::DateFormat> m_shortTime;
    bool m_usable = false;
};

const LocaleFormats &formatsOf(const QLocale &locale)
{
    thread_local std::unique_ptr<LocaleFormats> kept;
    if (!kept || kept->locale() != locale)
        kept = std::make_unique<LocaleFormats>(locale);
    return *kept;
}

bool isPlainEnglish(const QLocale &locale)
{
    return locale.language() == QLocale::English && locale.territory() == QLocale::UnitedStates;
}
} // namespace

bool getTimeFormat(const QLocale &locale, const QDateTime &now)
{
    return formatsOf(locale).shows24Hours(now);
}

QString scheduleTimeText(const QDateTime &moment, const QLocale &locale)
{
    if (isPlainEnglish(locale) || getTimeFormat(locale))
        return moment.toLocalTime().toString(u"MM-dd-yyyy HH:mm");
    return formatsOf(locale).dateAndTime(moment);
}
