#pragma once

#include "Platform/SessionBus/BusLink.h"

#include <QAbstractNativeEventFilter>
#include <QDBusPendingCall>

#include <memory>

/// Which kind of panel stands on the desktop to take a status item. The bus and the X server tell of a panel
/// that comes; only one that ought to answer and does not is asked again and again. Main thread only.
class PanelWatch : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    enum class Host {
        None,
        Embedding, ///< takes windows, by the system tray protocol
        Notifier,  ///< takes StatusNotifierItems
        Unknown,   ///< the watcher of StatusNotifierItems does not answer; who makes an item now waits for it
    };

    /// Asks for both kinds, and waits for neither. `bus` outlives the watch.
    explicit PanelWatch(BusLink &bus);
    ~PanelWatch() override;

    /// What stands there. Waits for an answer that is due, for half a second at most, and for no more answers
    /// of a watcher that was silent once.
    [[nodiscard]] Host host();
    /// Whether anybody on the bus keeps the list of StatusNotifierItems, be it for a panel that is yet to come;
    /// as of the last answer. True as well while there is no bus to tell.
    [[nodiscard]] bool mayHaveWatcher() const { return m_watcher != Watcher::Absent || !m_bus.connection(); }

    /// A panel that takes windows may take the other kind as well and say so a moment later.
    static constexpr std::chrono::milliseconds Grace{1000};

Q_SIGNALS:
    /// host() may be another; told after the grace for a panel that takes windows.
    void changed();

private Q_SLOTS:
    void ask();

private:
    class Embedders;
    enum class Watcher {
        Absent, ///< nobody owns its name
        WithoutHost,
        WithHost,
        Silent,
    };
    static constexpr std::chrono::milliseconds FirstRetry{1000};

    [[nodiscard]] static Watcher watcherIn(const QDBusMessage &reply);
    void connectToBus();
    void takeAnswer();
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

    BusLink &m_bus;
    std::optional<QDBusPendingCall> m_question;
    Watcher m_watcher = Watcher::Absent;
    QTimer m_retry;
    std::chrono::milliseconds m_nextRetry = FirstRetry;
    std::unique_ptr<Embedders> m_embedders;
};
