#pragma once

#include <QObject>
#include <QStringList>

#include <functional>
#include <map>

class QSocketNotifier;

/// The lines that arrive on standard input, without blocking the event loop.
class LineInput : public QObject
{
    Q_OBJECT

public:
    explicit LineInput(QObject *parent = nullptr);

Q_SIGNALS:
    void lineRead(const QString &line);
    void ended();

private:
    void readAvailable();

    QSocketNotifier *m_notifier;
    QByteArray m_pending;
};

/// What a command came to: `text` is its answer, or says why it failed.
struct CommandResult {
    bool done = true;
    QString text;

    [[nodiscard]] static CommandResult ok(QString text = {}) { return {true, std::move(text)}; }
    [[nodiscard]] static CommandResult failed(QString text) { return {false, std::move(text)}; }
};

/// Commands by their leading words. The longest match wins, so "sign in" may stand beside "sign".
class CommandTable
{
public:
    /// Gets the words behind the command and the untouched text behind it.
    using Handler = std::function<CommandResult(const QStringList &words, const QString &rest)>;

    /// `command` is one word, or several with one blank between them; `usage` is what help prints for it.
    void add(const QString &command, const QString &usage, Handler handler);

    /// Runs one line. An unknown command is a failure that names it.
    [[nodiscard]] CommandResult run(const QString &line) const;

    /// One line for each command.
    [[nodiscard]] QString help() const;

private:
    struct Entry {
        QString usage;
        Handler handler;
    };
    std::map<QString, Entry> m_entries;
};

/// Writes one line to standard output at once, so that a reader at the other end of a pipe sees it.
void printLine(const QString &line);

/// The line that ends a command: "ok" or "error", and the text.
void printResult(const CommandResult &result);
