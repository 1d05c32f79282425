#pragma once

#include "Classes/ACTIVITY_LOGS/LogText.h"

#include <functional>
#include <memory>
#include <vector>

/// The texts of one record, in the order of its tabs. A file that is gone or can't be read is an empty text.
struct LogPage {
    struct Tab {
        LogTab tab = {};
        LogText text;
    };
    QString logfile;
    bool isSync = false;
    std::vector<Tab> tabs;
};

/// Reads a record's texts off the main thread: at most the shown part of each file, so that the size of a log
/// plays no part, and only regular files. Main thread only.
class LogTextReader
{
public:
    LogTextReader(LogTexts::Facts facts, LogTexts::Sentences sentences);
    /// What comes late from it is dropped.
    ~LogTextReader();
    LogTextReader(const LogTextReader &) = delete;
    LogTextReader &operator=(const LogTextReader &) = delete;

    /// Reads the record's tabs; `done` is called on the main thread, unless another read or cancel() came in
    /// between. A disk that does not answer holds it up for as long.
    void read(const QString &logfile, bool isSync, std::function<void(const LogPage &)> done);
    void cancel();

    /// What read() does behind it, on the calling thread.
    [[nodiscard]] static LogPage page(const QString &logfile, bool isSync, const LogTexts::Facts &facts,
                                      const LogTexts::Sentences &sentences);

private:
    struct State;
    std::shared_ptr<State> m_state;
};
