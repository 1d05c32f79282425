#include "Classes/ACTIVITY_LOGS/LogTextReader.h"

#include "Platform/DispatchQueue.h"
#include "Platform/Limits.h"
#include "Platform/MainThread.h"
#include "Platform/RegularFile.h"

#include <QFileInfo>

#include <atomic>
#include <utility>

struct LogTextReader::State {
    State(LogTexts::Facts theirFacts, LogTexts::Sentences theirSentences)
        : facts(std::move(theirFacts)), sentences(std::move(theirSentences))
    {
    }

    const LogTexts::Facts facts;
    const LogTexts::Sentences sentences;
    const DispatchQueue queue{"LogTextReader"};
    std::atomic<quint64> wanted = 0; ///< the number of the last read; no other is carried out
    /// Its caller's. Main thread only, so that what it holds is never released elsewhere.
    std::function<void(const LogPage &)> done;
};

LogTextReader::LogTextReader(LogTexts::Facts facts, LogTexts::Sentences sentences)
    : m_state(std::make_shared<State>(std::move(facts), std::move(sentences)))
{
}

LogTextReader::~LogTextReader()
{
    cancel();
}

void LogTextReader::cancel()
{
    ++m_state->wanted;
    m_state->done = {};
}

LogPage LogTextReader::page(const QString &logfile, bool isSync, const LogTexts::Facts &facts,
                            const LogTexts::Sentences &sentences)
{
    LogPage page{.logfile = logfile, .isSync = isSync};
    const auto exists = [](const QString &path) { return path.startsWith(u'/') && QFileInfo::exists(path); };
    for (const LogTab tab : LogTabs::of(logfile, isSync, exists)) {
        const QString path = LogTabs::file(logfile, tab);
        const RegularFile file = RegularFile::open(path);
        // One byte more tells whether the file goes on, whatever size it claims.
        auto bytes = file ? file.beginning(Limits::ShownLogBytes + 1).value_or(QByteArray()) : QByteArray();
        const bool isClipped = bytes.size() > Limits::ShownLogBytes;
        bytes.truncate(Limits::ShownLogBytes);
        page.tabs.push_back({tab, LogTexts::text({bytes, isClipped, path, tab}, facts, sentences)});
    }
    return page;
}

void LogTextReader::read(const QString &logfile, bool isSync, std::function<void(const LogPage &)> done)
{
    const quint64 number = ++m_state->wanted;
    m_state->done = std::move(done);
    m_state->queue.async([state = m_state, number, logfile, isSync] {
        if (state->wanted != number)
            return; // somebody holds the arrow key down
        const LogPage read = page(logfile, isSync, state->facts, state->sentences);
        onMainThread([state, number, read] {
            if (state->wanted == number)
                std::exchange(state->done, {})(read);
        });
    });
}
