#pragma once

#include "Classes/ACTIVITY_LOGS/LogTabs.h"

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

/// What a press on a part of a log's text asks for.
struct LogLink {
    enum class Kind {
        EntireLog,   ///< the file at `target`
        Preferences, ///< the settings, in the main application
        Scheduler,   ///< the scheduled jobs, in the main application
        Faq,         ///< the page at `target`
        DiskAccess,  ///< the window about full disk access
    };
    Kind kind = Kind::EntireLog;
    QString target;
    friend bool operator==(const LogLink &, const LogLink &) = default;
};
Q_DECLARE_METATYPE(LogLink)

/// A stretch of a text, with the link that it is.
struct LogPiece {
    QString text;
    std::optional<LogLink> link;
    friend bool operator==(const LogPiece &, const LogPiece &) = default;
};

/// The text of a tab, as it is shown: its pieces in order, none without text.
struct LogText {
    std::vector<LogPiece> pieces;
    QString language; ///< of the log: "en", "es" or "ja"; empty where there is no text

    [[nodiscard]] QString plain() const;
    friend bool operator==(const LogText &, const LogText &) = default;
};

/// What becomes of a file's bytes in a tab. Nothing here looks at a file.
namespace LogTexts
{
/// The sentence of a key in a language of the string tables; the key itself where there is none.
using Sentences = std::function<QString(const char *key, const QString &language)>;

struct Source {
    QByteArray beginning;   ///< Limits::ShownLogBytes of the file at most
    bool isClipped = false; ///< the file goes on
    QString path;
    LogTab tab = LogTab::Details;
};

/// What the sentences are filled with.
struct Facts {
    QString application; ///< the product's name
    QString applicationProgram;
    QString daemonProgram;
    QString faqAddress; ///< empty where there is none
};

/// The text, with a link at each of the sentences that offer something and, behind a text that was cut, a line
/// that says so and a link to the file. Bytes that are no UTF-8, a clip through a character among them, are one
/// blank. Control characters are replaced, and marks that would turn the direction of what follows left out.
[[nodiscard]] LogText text(const Source &source, const Facts &facts, const Sentences &sentences);

/// The language that a log is written in, by the words in its head.
[[nodiscard]] QString loadLanguage(const QString &content);

/// `message` with the sentence that names the address put in fewer words, and the part that is the link now;
/// none without such a sentence or an address.
struct FaqText {
    QString message;
    QString sentence;
};
[[nodiscard]] std::optional<FaqText> makeReadFAQHyperlinkOnDynamicString(const QString &message,
                                                                         const QString &language,
                                                                         const QString &faqAddress,
                                                                         const Sentences &sentences);

/// The page about full disk access on the product's site; empty where that isn't a web address.
[[nodiscard]] QString faqAddress(const QString &publicWebHost);

/// The product's own: its string tables, and its names from the path table.
[[nodiscard]] Sentences ownSentences();
[[nodiscard]] Facts ownFacts(const QString &publicWebHost);
} // namespace LogTexts
