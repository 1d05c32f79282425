#include "Platform/SessionBus/BusLink.h"

#include "Platform/BusAddress.h"
#include "Platform/SessionBus/BusProbe.h"

#include <utility>

using namespace Qt::StringLiterals;

/// The way back from the asking thread to a link that may be gone by then.
class BusLink::Home
{
public:
    explicit Home(BusLink *owner) : m_link(owner) {}

    void leave()
    {
        const std::lock_guard lock(m_mutex);
        m_link = nullptr;
    }
    void bring(bool answers)
    {
        const std::lock_guard lock(m_mutex);
        if (BusLink *const link = m_link)
            QMetaObject::invokeMethod(
                link, [link, answers] { link->takeAnswer(answers); }, Qt::QueuedConnection);
    }

private:
    std::mutex m_mutex;
    BusLink *m_link;
};

BusLink::BusLink(std::chrono::milliseconds retryPace) : m_home(std::make_shared<Home>(this))
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryPace);
    connect(&m_retry, &QTimer::timeout, this, &BusLink::askAgain);
}

BusLink::~BusLink()
{
    m_home->leave();
    stop();
}

void BusLink::start()
{
    m_wanted = true;
    connectTo(BusAddress::isWithheld() ? nullptr : BusConnection::open());
}

void BusLink::stop()
{
    m_wanted = false;
    m_retry.stop();
    setConnection(nullptr);
}

std::shared_ptr<BusConnection> BusLink::connection() const
{
    const std::lock_guard lock(m_mutex);
    return m_connection;
}

void BusLink::askAgain()
{
    const bool asked = BusProbe::askElsewhere(BusProbe::RetryLimit, [home = m_home](BusProbe::Answer answer) {
        home->bring(answer == BusProbe::Answer::Answers);
    });
    if (!asked)
        m_retry.start();
}

void BusLink::takeAnswer(bool answers)
{
    if (m_wanted)
        connectTo(answers ? BusConnection::openAnswering() : nullptr);
}

void BusLink::connectTo(std::shared_ptr<BusConnection> made)
{
    // The library tells of the end of a connection as if it were a signal from the bus.
    const bool watched = made && made->subscribe({.path = u"/org/freedesktop/DBus/Local"_s,
                                                  .interface = u"org.freedesktop.DBus.Local"_s,
                                                  .name = u"Disconnected"_s,
                                                  .firstArguments = {},
                                                  .signature = {}},
                                                 this, SLOT(busLost()));
    // A bus that went between the two steps has nobody to tell of it.
    if (!watched || !made->isOpen()) {
        if (made)
            made->unsubscribeAll();
        m_retry.start();
        return;
    }
    setConnection(std::move(made));
    Q_EMIT connected();
}

void BusLink::busLost()
{
    setConnection(nullptr);
    m_retry.start();
}

void BusLink::setConnection(std::shared_ptr<BusConnection> connection)
{
    {
        const std::lock_guard lock(m_mutex);
        m_connection.swap(connection);
    }
    if (connection)
        connection->unsubscribeAll();
}
