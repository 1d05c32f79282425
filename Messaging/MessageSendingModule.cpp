#include "Messaging/MessageSendingModule.h"

#include "Platform/Limits.h"
#include "Platform/SessionBus/CallWait.h"
#include "Platform/SessionBus/RemotePort.h"
#include "Platform/WorkerThread.h"
#include "Source/Logger/QNLogger.h"

#include <condition_variable>
#include <csignal>
#include <deque>
#include <system_error>

using namespace Qt::StringLiterals;

SyncPortNames syncPortNames(const std::optional<QString> &machineId, const QString &userName)
{
    const QString ending = machineId.value_or(QString()) + userName;
    return {u"SyncMD"_s + ending, u"SyncDM"_s + ending};
}

namespace
{
/// One message on its way.
struct Envelope {
    QString remotehost;
    QVariantList array;
};

void handToDelegate(const std::weak_ptr<MessageSendingDelegate> &delegate, const QVariantList &array)
{
    if (const auto told = delegate.lock())
        told->didReceiveIPCMessage(array);
}
} // namespace

// ---- Sending
// -----------------------------------------------------------------------------------------------------

/// The sending half. Its threads hold it, so that a module may go while one of them is in a call.
class MessageSendingModule::Sender : public std::enable_shared_from_this<Sender>
{
public:
    explicit Sender(std::chrono::milliseconds callLimit) : m_callLimit(callLimit) {}

    void queue(Envelope message);
    void sendInThread(Envelope message);
    void stop();

private:
    void startSender();
    void sendMessageInternal(const Envelope &message);

    const std::chrono::milliseconds m_callLimit;
    CallWait m_wait;

    std::mutex m_queueMutex;
    std::condition_variable m_wake;
    std::deque<Envelope> m_waiting;
    bool m_senderThreadRuns = false;
    bool m_shouldKeepRunning = true;

    std::mutex m_remoteMutex; // one call at a time
    std::shared_ptr<RemotePort> m_remoteObject;
    QString m_remoteName; // whom it stands for
};

void MessageSendingModule::Sender::queue(Envelope message)
{
    const std::lock_guard lock(m_queueMutex);
    if (m_waiting.size() >= Limits::WaitingMessages)
        return;
    m_waiting.push_back(std::move(message));
    m_wake.notify_one();
    if (m_senderThreadRuns)
        return;
    try {
        startWorkerThread("corvane-sender", [self = shared_from_this()] { self->startSender(); });
        m_senderThreadRuns = true;
    } catch (const std::system_error &) {
        m_waiting.clear(); // lost, like any message that cannot go out; the next one tries again
    }
}

void MessageSendingModule::Sender::sendInThread(Envelope message)
{
    try {
        startWorkerThread("corvane-send", [self = shared_from_this(), sent = std::move(message)] {
            self->sendMessageInternal(sent);
        });
    } catch (const std::system_error &) {
        // The message is lost.
    }
}

void MessageSendingModule::Sender::stop()
{
    {
        const std::lock_guard lock(m_queueMutex);
        m_shouldKeepRunning = false;
        m_waiting.clear();
        m_wake.notify_one();
    }
    m_wait.cancel();
}

void MessageSendingModule::Sender::startSender()
{
    std::unique_lock lock(m_queueMutex);
    for (;;) {
        m_wake.wait(lock, [this] { return !m_waiting.empty() || !m_shouldKeepRunning; });
        if (!m_shouldKeepRunning)
            return;
        const Envelope message = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        sendMessageInternal(message);
        lock.lock();
    }
}

void MessageSendingModule::Sender::sendMessageInternal(const Envelope &message)
{
    const std::lock_guard lock(m_remoteMutex);
    if (!m_remoteObject || !m_remoteObject->isValid() || m_remoteName != message.remotehost) {
        m_remoteObject = RemotePort::connect(message.remotehost, m_callLimit, m_wait);
        m_remoteName = message.remotehost;
    }
    // After a failure nothing of the old connection is trusted: the next message looks the peer up anew.
    if (m_remoteObject && !m_remoteObject->didReceiveDataFromOtherProcess(message.array, m_wait))
        m_remoteObject.reset();
}

// ---- The module
// --------------------------------------------------------------------------------------------------

MessageSendingModule::MessageSendingModule(std::weak_ptr<MessageSendingDelegate> delegate, Settings settings)
    : m_delegate(std::move(delegate)), m_settings(settings),
      m_sender(std::make_shared<Sender>(settings.callLimit))
{
}

MessageSendingModule::~MessageSendingModule()
{
    m_sender->stop();
}

void MessageSendingModule::setupConnection(const QString &localName, const QString &targetName)
{
    std::signal(SIGPIPE, SIG_IGN);
    {
        const std::lock_guard lock(m_mutex);
        m_localhost = localName;
        m_remotehost = targetName;
    }
    listenForRequests();
}

void MessageSendingModule::listenForRequests()
{
    std::unique_lock lock(m_mutex);
    const QString name = m_localhost;
    std::unique_ptr<NamedPort> stale = std::move(m_localPort);
    lock.unlock();

    stale.reset();
    closeConnection(name); // a registration that a module before this one may have left
    auto port = NamedPort::open(
        name, [delegate = m_delegate](const QVariantList &array) { handToDelegate(delegate, array); },
        {.retryPace = m_settings.busRetryPace, .user = getuid(), .trace = [name](const QString &reason) {
             QNLogger::logMonitorTrace(u"The port %1 is not open yet: %2"_s.arg(name, reason));
         }});

    lock.lock();
    m_localPort.swap(port);
}

void MessageSendingModule::sendIPCMessage(const QVariant &message, int type, bool runInThread)
{
    Envelope envelope;
    {
        const std::lock_guard lock(m_mutex);
        if (m_remotehost.isEmpty())
            return;
        envelope = {m_remotehost, {message, QString::number(type), m_localhost, m_remotehost}};
    }
    if (runInThread)
        m_sender->sendInThread(std::move(envelope));
    else
        m_sender->queue(std::move(envelope));
}

void MessageSendingModule::didReceiveDataFromOtherProcess(const QVariantList &array) const
{
    handToDelegate(m_delegate, array);
}

void MessageSendingModule::closeConnection(const QString &name)
{
    NamedPort::closeAll(name);
}

void MessageSendingModule::closeIPCConnection()
{
    std::ignore = applicationShouldTerminate(); // it only says whether the program stays
}

bool MessageSendingModule::applicationShouldTerminate()
{
    std::unique_ptr<NamedPort> closed; // beyond the lock: closing waits for the bus
    const std::lock_guard lock(m_mutex);
    if (m_currentlyReceivingData)
        closed = std::move(m_localPort);
    return !m_currentlyReceivingData;
}

void MessageSendingModule::setCurrentlyReceivingData()
{
    const std::lock_guard lock(m_mutex);
    m_currentlyReceivingData = true;
}

void MessageSendingModule::resetCurrentlyReceivingData()
{
    const std::lock_guard lock(m_mutex);
    m_currentlyReceivingData = false;
}
