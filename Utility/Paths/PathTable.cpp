#include "Utility/Paths/PathTable.h"

#include "Extensions/TextFormat.h"
#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"

namespace QNUtility
{
std::atomic<EUserType> userType = EUserType::Dedup;
} // namespace QNUtility

PathTable::PathTable(Loader load) : m_load(std::move(load))
{
}

std::shared_ptr<const PathTable::Entries> PathTable::entries() const
{
    if (m_loaded.load(std::memory_order_acquire))
        return m_entries;
    const std::lock_guard lock(m_loading);
    if (!m_entries) {
        if (auto loaded = m_load())
            m_entries = std::make_shared<const Entries>(std::move(*loaded));
        m_loaded.store(m_entries != nullptr, std::memory_order_release);
    }
    return m_entries;
}

QString PathTable::value(const QString &key, EUserType userType) const
{
    if (userType == EUserType::Dedup && key == u"ExecuterPathTQL")
        return value(QStringLiteral("ExecuterPathDedupTQL"), userType);
    const auto table = entries();
    return table ? table->value(key, key) : key;
}

namespace
{
std::optional<PathTable::Entries> loadBundleTable()
{
    const auto dictionary =
        PropertyList::readDictionary(Bundle::main().resource(QStringLiteral("Localizable.plist")));
    if (!dictionary)
        return std::nullopt;
    PathTable::Entries entries;
    for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry) {
        if (entry.value().metaType() == QMetaType::fromType<QString>())
            entries.insert(entry.key(), entry.value().toString());
    }
    // Known only once the bundle stands somewhere.
    entries.insert(QStringLiteral("MonitorExecPath"), Bundle::main().executablePath());
    return entries;
}

const PathTable &bundleTable()
{
    static const PathTable table(loadBundleTable);
    return table;
}
} // namespace

std::optional<QString> qnLocalizedString(const std::optional<QString> &key)
{
    if (!key)
        return std::nullopt;
    return bundleTable().value(*key, QNUtility::userType);
}

QString pathValue(QLatin1String key)
{
    return bundleTable().value(key, QNUtility::userType);
}

QString pathValue(QLatin1String key, const QStringList &arguments)
{
    return standardizedPath(formatted(pathValue(key), arguments));
}
