#include "Classes/ACTIVITY_LOGS/LogText.h"

#include "Extensions/TextFormat.h"
#include "Platform/DisplayLine.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Language/LogTextSentences.h"
#include "Utility/Paths/PathTable.h"

#include <QStringDecoder>
#include <QUrl>

#include <algorithm>

using namespace DynamicViewLogs;
using namespace Qt::StringLiterals;

namespace
{
/// A place of the text that is a link.
struct Span {
    qsizetype start;
    qsizetype length;
    LogLink link;
};

/// A message on its way: its text as it becomes, and what is found in the end.
class Message
{
public:
    Message(QString text, const LogTexts::Source &source, const LogTexts::Facts &facts,
            const LogTexts::Sentences &sentences)
        : m_text(std::move(text)), m_language(LogTexts::loadLanguage(m_text)), m_source(source), m_facts(facts),
          m_sentences(sentences)
    {
    }

    [[nodiscard]] LogText made()
    {
        // First what changes the text, so that no place moves once it is found.
        const QString faq = putFaqInFewerWords();
        const QString grant = nameWhatIsMissing();
        linkWithin(ecludeFilesOrFoldersClickHere, {LogLink::Kind::Preferences, {}});
        linkWithin(cutOffClickHere, {LogLink::Kind::Scheduler, {}});
        linkEach(faq, {LogLink::Kind::Faq, m_facts.faqAddress});
        linkEach(grant, {LogLink::Kind::DiskAccess, {}});
        LogText text{pieces(), m_language};
        if (m_source.isClipped) {
            text.pieces.push_back({logClipped.text(), std::nullopt});
            text.pieces.push_back({viewEntireLogs.text(), LogLink{LogLink::Kind::EntireLog, m_source.path}});
        }
        return text;
    }

private:
    [[nodiscard]] QString sentence(const char *key) const { return m_sentences(key, m_language); }

    [[nodiscard]] QString putFaqInFewerWords()
    {
        if (m_source.tab != LogTab::Details || !m_text.contains(sentence(fullDiskAccess)))
            return {};
        auto shorter =
            LogTexts::makeReadFAQHyperlinkOnDynamicString(m_text, m_language, m_facts.faqAddress, m_sentences);
        if (!shorter)
            return {};
        m_text = std::move(shorter->message);
        return shorter->sentence;
    }

    [[nodiscard]] QString nameWhatIsMissing()
    {
        const QString inSet = sentence(backupSetMissing);
        const QString some = sentence(filesMissing);
        if (m_source.tab != LogTab::Summary || !(m_text.contains(inSet) || m_text.contains(some)))
            return {};
        QString grant = formatted(sentence(grantFullDiskAccess), {m_facts.application});
        m_text.replace(inSet, formatted(sentence(backupSetMissingWithReason), {grant}));
        m_text.replace(some, formatted(sentence(filesMissingWithReason), {grant}));
        m_text.remove(formatted(sentence(fullDiskAccessInstruction),
                                {m_facts.applicationProgram, m_facts.daemonProgram, m_facts.faqAddress}));
        return grant;
    }

    void linkEach(const QString &words, const LogLink &link)
    {
        for (qsizetype at = words.isEmpty() ? -1 : m_text.indexOf(words); at >= 0;
             at = m_text.indexOf(words, at + words.size()))
            m_spans.push_back({at, words.size(), link});
    }

    /// Links the words to click within each sentence of that key.
    void linkWithin(const char *key, const LogLink &link)
    {
        const QString whole = sentence(key);
        qsizetype inside = -1;
        QString words;
        for (const char *candidate : {ClickHereCaps, clickHereLink}) {
            if (inside < 0) {
                words = sentence(candidate);
                inside = whole.indexOf(words);
            }
        }
        if (inside < 0)
            return linkEach(whole, link);
        for (qsizetype at = m_text.indexOf(whole); at >= 0; at = m_text.indexOf(whole, at + whole.size()))
            m_spans.push_back({at + inside, words.size(), link});
    }

    [[nodiscard]] std::vector<LogPiece> pieces();

    QString m_text;
    QString m_language;
    const LogTexts::Source &m_source;
    const LogTexts::Facts &m_facts;
    const LogTexts::Sentences &m_sentences;
    std::vector<Span> m_spans;
};

/// What a view can take: it would read some units as its own marks, and others would turn the rest around.
QString displayable(QStringView text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isLineEnd = c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
        const bool isMarkOfDocuments =
            c == QChar::ObjectReplacementCharacter || (c >= u'\xFDD0' && c <= u'\xFDEF');
        const bool isControl = c.category() == QChar::Other_Control && c != u'\n' && c != u'\t';
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            continue;
        if (DisplayLine::turnsDirection(c.unicode()))
            continue;
        shown += isLineEnd                        ? QChar(u'\n')
                 : isControl || isMarkOfDocuments ? QChar(QChar::ReplacementCharacter)
                                                  : c;
    }
    return shown;
}

std::vector<LogPiece> Message::pieces()
{
    std::ranges::stable_sort(m_spans, {}, &Span::start);
    std::vector<LogPiece> made;
    const auto add = [&](qsizetype start, qsizetype end, const std::optional<LogLink> &link) {
        QString shown = displayable(QStringView(m_text).mid(start, end - start));
        if (!shown.isEmpty())
            made.push_back({std::move(shown), link});
    };
    qsizetype done = 0;
    for (const Span &span : m_spans) {
        if (span.start < done)
            continue; // within another link
        add(done, span.start, std::nullopt);
        done = span.start + span.length;
        add(span.start, done, span.link);
    }
    add(done, m_text.size(), std::nullopt);
    return made;
}
} // namespace

QString LogText::plain() const
{
    QString text;
    for (const LogPiece &piece : pieces)
        text += piece.text;
    return text;
}

QString LogTexts::loadLanguage(const QString &content)
{
    const auto holdsOneOf = [&](QStringView one, QStringView other) {
        return content.contains(one) || content.contains(other);
    };
    if (holdsOneOf(u"Nombre de usuario", u"Hora de inicio"))
        return u"es"_s;
    return holdsOneOf(u"ユーザー名", u"開始時刻") ? u"ja"_s : u"en"_s;
}

std::optional<LogTexts::FaqText> LogTexts::makeReadFAQHyperlinkOnDynamicString(const QString &message,
                                                                               const QString &language,
                                                                               const QString &faqAddress,
                                                                               const Sentences &sentences)
{
    if (faqAddress.isEmpty())
        return std::nullopt;
    FaqText text{message, sentences(readFaq, language)};
    text.message.replace(formatted(sentences(visitFaq, language), {faqAddress}), text.sentence);
    return text.message.contains(text.sentence) ? std::optional(text) : std::nullopt;
}

LogText LogTexts::text(const Source &source, const Facts &facts, const Sentences &sentences)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString content = decoder.decode(source.beginning);
    if (decoder.hasError())
        return {{{u" "_s, std::nullopt}}, {}};
    if (content.isEmpty())
        return {};
    return Message(std::move(content), source, facts, sentences).made();
}

QString LogTexts::faqAddress(const QString &publicWebHost)
{
    const QUrl address(publicWebHost + "/online-backup-mac-faq#pre-authorize"_L1, QUrl::StrictMode);
    const bool isWeb = address.scheme() == "https"_L1 || address.scheme() == "http"_L1;
    return isWeb && !address.host().isEmpty() ? address.toString() : QString();
}

LogTexts::Sentences LogTexts::ownSentences()
{
    return [](const char *key, const QString &language) {
        return LanguageManager::shared().localized(QString::fromUtf8(key), language, u"Localizable"_s);
    };
}

LogTexts::Facts LogTexts::ownFacts(const QString &publicWebHost)
{
    return {.application = pathValue("ApplicationName"_L1),
            .applicationProgram = pathValue("ApplicationExecName"_L1),
            .daemonProgram = pathValue("DaemonExecName"_L1),
            .faqAddress = faqAddress(publicWebHost)};
}
