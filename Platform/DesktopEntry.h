#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

/// The group `[Desktop Entry]` of a desktop entry: keys and their texts, escapes resolved. Other groups are not
/// kept. Source of the form: Desktop Entry Specification 1.5 of freedesktop.org.
namespace DesktopEntry
{
using Keys = QMap<QString, QString>;

/// The keys in `bytes`; a line that is none is skipped, and of a key that stands twice the first counts. None
/// without the group, or when the bytes are no UTF-8.
[[nodiscard]] std::optional<Keys> parse(const QByteArray &bytes);
[[nodiscard]] QByteArray serialize(const Keys &keys);

/// The value of `Exec` that starts a program with exactly these words, and the words that such a value gives
/// without its field codes. None for a value with an open quote or without a word.
[[nodiscard]] QString execOfWords(const QStringList &words);
[[nodiscard]] std::optional<QStringList> wordsOfExec(const QString &exec);
} // namespace DesktopEntry
