#pragma once

#include "Platform/SessionBus/NamedPort.h"

#include <QVariantList>

#include <chrono>
#include <memory>
#include <optional>

/// Gets what a peer sends.
class MessageSendingDelegate
{
public:
    virtual ~MessageSendingDelegate() = default;

    /// The array as the peer sent it, of any length and any types: four texts when the peer keeps to the form.
    /// Comes on the listening thread, and the peer waits for its end.
    virtual void didReceiveIPCMessage(const QVariantList &array) = 0;
};

/// The names of the two ports between the monitor and the sync daemon of one user on one machine.
struct SyncPortNames {
    QString monitor;    ///< this side
    QString syncDaemon; ///< the peer's
};
[[nodiscard]] SyncPortNames syncPortNames(const std::optional<QString> &machineId, const QString &userName);

/// A pair of named ports: one on which a peer's messages arrive, and the way to the peer's own. A message is an
/// array of four: the text (or a dictionary), its number in decimal digits, the name of this side's port and
/// that of the peer's.
///
/// Sending never waits and never fails visibly: what cannot be handed over is lost. All calls may come from any
/// thread. No thread runs before setupConnection().
class MessageSendingModule
{
public:
    struct Settings {
        std::chrono::milliseconds callLimit{3000}; ///< of each call to the peer
        std::chrono::milliseconds busRetryPace = BusLink::RetryPace;
    };

    /// `delegate` is held while it is told of a message, and no longer told once it has gone.
    explicit MessageSendingModule(std::weak_ptr<MessageSendingDelegate> delegate)
        : MessageSendingModule(std::move(delegate), Settings())
    {
    }
    MessageSendingModule(std::weak_ptr<MessageSendingDelegate> delegate, Settings settings);

    /// Ends both threads. A call to the peer that is under way is given up; the delegate may still be in a
    /// message that came before.
    ~MessageSendingModule();
    MessageSendingModule(const MessageSendingModule &) = delete;
    MessageSendingModule &operator=(const MessageSendingModule &) = delete;

    /// Takes the names and listens under the first. When this returns a peer can find the port, if there is a
    /// bus and nobody else has the name. The process ignores SIGPIPE from here on.
    void setupConnection(const QString &localName, const QString &targetName);

    /// Sends `message`, a text or a dictionary, from the sender thread behind what waits there; with
    /// `runInThread` from a thread that is started for it. Nothing is sent before setupConnection().
    void sendIPCMessage(const QVariant &message, int type, bool runInThread);

    /// What a peer calls; hands the array to the delegate.
    void didReceiveDataFromOtherProcess(const QVariantList &array) const;

    /// Closes the port of that name, whichever module of this process has it open.
    static void closeConnection(const QString &name);

    /// Closes the local port while data is being received; does nothing otherwise.
    void closeIPCConnection();
    /// As closeIPCConnection(); false when data was being received, so that the program stays.
    [[nodiscard]] bool applicationShouldTerminate();

    void setCurrentlyReceivingData();
    void resetCurrentlyReceivingData();

private:
    class Sender;

    void listenForRequests();

    const std::weak_ptr<MessageSendingDelegate> m_delegate;
    const Settings m_settings;
    const std::shared_ptr<Sender> m_sender; // shared with the threads that send

    mutable std::mutex m_mutex; // of what follows
    QString m_localhost;
    QString m_remotehost;
    bool m_currentlyReceivingData = false;
    std::unique_ptr<NamedPort> m_localPort;
};
