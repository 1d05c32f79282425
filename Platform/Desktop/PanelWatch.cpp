#include "Platform/Desktop/PanelWatch.h"

#include "Platform/Desktop/XcbReply.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QGuiApplication>

#include <utility>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds AnswerLimit{500};
constexpr std::chrono::milliseconds PatientLimit{5000}; ///< where nobody waits for the answer

const QString WatcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString WatcherPath = u"/StatusNotifierWatcher"_s;
} // namespace

/// The panels that take windows: whoever owns a certain selection of the X server. Source: freedesktop.org
/// System Tray Protocol Specification.
class PanelWatch::Embedders
{
public:
    Embedders()
    {
        const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        m_connection = x11 ? x11->connection() : nullptr;
        if (!m_connection)
            return;
        static constexpr char Selection[] = "_NET_SYSTEM_TRAY_S0"; // Qt has one X screen
        static constexpr char Manager[] = "MANAGER";
        const auto selection = xcb_intern_atom(m_connection, 0, sizeof Selection - 1, Selection);
        const auto manager = xcb_intern_atom(m_connection, 0, sizeof Manager - 1, Manager);
        m_selection = atomIn(selection);
        m_manager = atomIn(manager);
    }

    /// Where there is no X server, only Wayland's desktops are known to take no windows.
    [[nodiscard]] bool isThere() const
    {
        if (!m_connection)
            return !QGuiApplication::platformName().startsWith("wayland"_L1);
        const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
            m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr));
        return owner && owner->owner != XCB_WINDOW_NONE;
    }

    /// Whether the event tells that one has come.
    [[nodiscard]] bool isArrival(const xcb_generic_event_t &event) const
    {
        if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            return false;
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        return message.type == m_manager && message.data.data32[1] == m_selection;
    }

private:
    [[nodiscard]] xcb_atom_t atomIn(xcb_intern_atom_cookie_t cookie) const
    {
        const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    xcb_connection_t *m_connection = nullptr;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    xcb_atom_t m_manager = XCB_ATOM_NONE;
};

PanelWatch::PanelWatch(BusLink &bus) : m_bus(bus), m_embedders(std::make_unique<Embedders>())
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &PanelWatch::ask);
    connect(&m_bus, &BusLink::connected, this, &PanelWatch::connectToBus);
    connectToBus();
    QCoreApplication::instance()->installNativeEventFilter(this);
}

PanelWatch::~PanelWatch()
{
    if (auto *application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
    if (const auto connection = m_bus.connection())
        connection->unsubscribeFor(this);
}

void PanelWatch::connectToBus()
{
    const auto connection = m_bus.connection();
    if (!connection)
        return;
    connection->subscribe({.path = u"/org/freedesktop/DBus"_s,
                           .interface = u"org.freedesktop.DBus"_s,
                           .name = u"NameOwnerChanged"_s,
                           .firstArguments = {WatcherName},
                           .signature = {}},
                          this, SLOT(ask()));
    for (const char *const change : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        connection->subscribe({.path = WatcherPath,
                               .interface = WatcherName,
                               .name = QLatin1StringView(change),
                               .firstArguments = {},
                               .signature = {}},
                              this, SLOT(ask()));
    m_watcher = Watcher::Absent; // what it was on another bus says nothing
    m_nextRetry = FirstRetry;
    ask();
}

void PanelWatch::ask()
{
    m_retry.stop();
    const auto connection = m_bus.connection();
    if (!connection) {
        Q_EMIT changed();
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(WatcherName, WatcherPath,
                                                           u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setArguments({WatcherName, u"IsStatusNotifierHostRegistered"_s});
    question.setAutoStartService(false);
    const auto limit = m_watcher == Watcher::Silent ? PatientLimit : AnswerLimit;
    m_question = connection->bus().asyncCall(question, static_cast<int>(limit.count()));
    auto *call = new QDBusPendingCallWatcher(*m_question, this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        if (m_question && !m_question->isFinished()) // one more was asked since
            return;
        if (m_question)
            takeAnswer();
        Q_EMIT changed();
    });
}

PanelWatch::Watcher PanelWatch::watcherIn(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage) {
        const QVariant value = reply.arguments().value(0);
        return value.value<QDBusVariant>().variant().toBool() ? Watcher::WithHost : Watcher::WithoutHost;
    }
    const QString error = reply.errorName().section(u'.', -1);
    // Buses differ in what they say of a name without an owner.
    if (error == u"NameHasNoOwner" || error == u"ServiceUnknown")
        return Watcher::Absent;
    // The bus itself refuses where the queue of one that takes nothing is full.
    for (const char *const name : {"NoReply", "Timeout", "TimedOut", "LimitsExceeded", "Disconnected"}) {
        if (error == QLatin1StringView(name))
            return Watcher::Silent;
    }
    return Watcher::WithoutHost; // it answers, and may be ready later
}

void PanelWatch::takeAnswer()
{
    const QDBusMessage reply = m_question->reply();
    m_question.reset();
    m_watcher = watcherIn(reply);
    if (reply.type() == QDBusMessage::ReplyMessage || m_watcher == Watcher::Absent)
        m_nextRetry = FirstRetry;
    else
        m_retry.start(std::exchange(m_nextRetry, BusLink::RetryPace));
}

PanelWatch::Host PanelWatch::host()
{
    if (m_question && m_watcher != Watcher::Silent) {
        m_question->waitForFinished();
        takeAnswer();
    }
    if (m_bus.connection() && m_watcher == Watcher::Silent)
        return Host::Unknown;
    if (m_bus.connection() && m_watcher == Watcher::WithHost)
        return Host::Notifier;
    return m_embedders->isThere() ? Host::Embedding : Host::None;
}

bool PanelWatch::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType == "xcb_generic_event_t" &&
        m_embedders->isArrival(*static_cast<const xcb_generic_event_t *>(message)))
        QTimer::singleShot(Grace, this, &PanelWatch::ask); // a watcher may be silent by now
    return false;
}
