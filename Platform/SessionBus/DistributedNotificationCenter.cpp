#include "Platform/SessionBus/DistributedNotificationCenter.h"

#include "Platform/SessionBus/BusValue.h"

#include <algorithm>
#include <map>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds FlushLimit{250};

const QString Path = u"/com/halvernet/Corvane/DistributedNotifications"_s;
const QString Interface = u"com.halvernet.Corvane.DistributedNotifications"_s;
const QString Signal = u"Posted"_s;
const QString Signature = u"ssa{sv}"_s;

BusConnection::Signal postsOf(const QString &name)
{
    return {
        .path = Path, .interface = Interface, .name = Signal, .firstArguments = {name}, .signature = Signature};
}
} // namespace

/// The observers by name. The bus is asked for the observed names alone, so that no other wakes the process.
class DistributedNotificationCenter::Book : public QObject
{
    Q_OBJECT

public:
    using Entry = std::shared_ptr<const Handler>;

    void add(const QString &name, const Entry &entry, BusConnection *connection)
    {
        std::vector<Entry> &entries = m_observers[name];
        entries.push_back(entry);
        if (entries.size() == 1 && connection)
            subscribe(*connection, name);
    }

    void remove(const QString &name, const Handler *handler, BusConnection *connection)
    {
        const auto found = m_observers.find(name);
        if (found == m_observers.end())
            return;
        std::erase_if(found->second, [handler](const Entry &entry) { return entry.get() == handler; });
        if (!found->second.empty())
            return;
        m_observers.erase(found);
        if (connection)
            connection->unsubscribe(postsOf(name), this, SLOT(posted(QDBusMessage)));
    }

    void subscribeAll(BusConnection &connection)
    {
        for (const auto &[name, entries] : m_observers)
            subscribe(connection, name);
    }

private Q_SLOTS:
    void posted(const QDBusMessage &message)
    {
        if (message.signature() != Signature)
            return;
        const QVariantList arguments = message.arguments();
        const auto details = BusValue::plain(arguments.at(2));
        const auto found = m_observers.find(arguments.at(0).toString());
        if (!details || found == m_observers.end())
            return;
        const QString object = BusValue::plain(arguments.at(1)).value_or(QVariant()).toString();
        const QVariantMap userInfo = BusValue::notificationDetails(details->toMap());
        // A copy, weak: a handler may end observations, its own and those that come after it, or the whole
        // centre.
        const std::vector<std::weak_ptr<const Handler>> observers(found->second.begin(), found->second.end());
        for (const auto &observer : observers) {
            if (const Entry entry = observer.lock())
                (*entry)(object, userInfo);
        }
    }

private:
    void subscribe(BusConnection &connection, const QString &name)
    {
        connection.subscribe(postsOf(name), this, SLOT(posted(QDBusMessage)));
    }

    std::map<QString, std::vector<Entry>> m_observers;
};

DistributedNotificationCenter::DistributedNotificationCenter(std::chrono::milliseconds retryPace)
    : m_link(retryPace), m_book(std::make_shared<Book>())
{
    QObject::connect(&m_link, &BusLink::connected, m_book.get(), [this] {
        m_book->subscribeAll(*m_link.connection());
        if (m_returned)
            m_returned();
    });
    m_link.start();
}

DistributedNotificationCenter::~DistributedNotificationCenter()
{
    m_link.stop(); // while the receiver of its signals still stands
}

DistributedNotificationCenter::Observation DistributedNotificationCenter::observe(const QString &name,
                                                                                  Handler handler)
{
    const auto entry = std::make_shared<const Handler>(std::move(handler));
    m_book->add(name, entry, m_link.connection().get());
    return {entry.get(), [this, name, book = std::weak_ptr(m_book)](const void *observed) {
                if (const auto stillThere = book.lock())
                    stillThere->remove(name, static_cast<const Handler *>(observed), m_link.connection().get());
            }};
}

void DistributedNotificationCenter::post(const QString &name, const QString &object,
                                         const QVariantMap &userInfo) const
{
    const auto connection = m_link.connection();
    if (!connection)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(Path, Interface, Signal);
    signal << name << object << BusValue::notificationDetails(userInfo);
    if (connection->bus().send(signal))
        connection->flush(FlushLimit);
}

bool DistributedNotificationCenter::isConnected() const
{
    const auto connection = m_link.connection();
    return connection && connection->isOpen();
}

#include "DistributedNotificationCenter.moc"
