#pragma once

#include <QString>

#include <system_error>

/// How a change to a file or folder ended. It is looked at, never dropped.
class [[nodiscard]] FileResult
{
public:
    /// The change is on disk.
    FileResult() = default;
    /// A call of the system failed with this error number.
    static FileResult failed(int error) { return {error, {}}; }
    /// It was not tried; `words` say why.
    static FileResult refused(QString words) { return {0, std::move(words)}; }

    [[nodiscard]] explicit operator bool() const { return m_error == 0 && m_words.isEmpty(); }
    /// The error number of the call that failed, 0 where none did.
    [[nodiscard]] int error() const { return m_error; }
    /// A few words for a trace: the system's text of the error, or why it was not tried. Empty after a success.
    [[nodiscard]] QString reason() const
    {
        return m_error != 0 ? QString::fromStdString(std::generic_category().message(m_error)) : m_words;
    }

private:
    FileResult(int error, QString words) : m_error(error), m_words(std::move(words)) {}

    int m_error = 0;
    QString m_words;
};
