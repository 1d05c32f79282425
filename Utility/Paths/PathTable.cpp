#include "Utility/Paths/PathTable.h"

#include "Extensions/TextFormat.h"
#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Utility/Paths/AccountNames.h"

using namespace Qt::StringLiterals;

PathTable::PathTable(Loader load) : m_load(std::move(load))
{
}

std::shared_ptr<const PathTable::Content> PathTable::content() const
{
    if (m_loaded.load(std::memory_order_acquire))
        return m_content;
    const std::lock_guard lock(m_loading);
    if (!m_content) {
        if (auto loaded = m_load()) {
            auto names = AccountNames::ownNames(*loaded);
            m_content = std::make_shared<const Content>(Content{std::move(*loaded), std::move(names)});
        }
        m_loaded.store(m_content != nullptr, std::memory_order_release);
    }
    return m_content;
}

QString PathTable::value(const QString &key, EUserType userType) const
{
    if (userType == EUserType::Dedup && key == u"ExecuterPathTQL")
        return value(u"ExecuterPathDedupTQL"_s, userType);
    const auto table = content();
    return table ? table->entries.value(key, key) : key;
}

bool PathTable::hasFiles(const QString &account) const
{
    const auto table = content();
    return table && AccountNames::isPathComponent(account) && !table->ownNames.contains(account);
}

namespace
{
std::optional<PathTable::Entries> loadBundleTable()
{
    const auto dictionary = PropertyList::readDictionary(Bundle::main().resource(u"Localizable.plist"_s));
    if (!dictionary)
        return std::nullopt;
    PathTable::Entries entries;
    for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry) {
        if (entry.value().metaType() == QMetaType::fromType<QString>())
            entries.insert(entry.key(), entry.value().toString());
    }
    // Known only once the bundle stands somewhere.
    entries.insert(u"MonitorExecPath"_s, Bundle::main().executablePath());
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

QString pathValue(QLatin1StringView key)
{
    return bundleTable().value(key, QNUtility::userType);
}

QString pathValue(QLatin1StringView key, const QStringList &arguments)
{
    // The one's placeholder is a home directory, the other's a file's name.
    const bool namesAccount = key != "RemoteManageInfoPath"_L1 && key != "ProxySettingFilePath"_L1;
    return namesAccount ? accountPath(pathValue(key), arguments)
                        : standardizedPath(formatted(pathValue(key), arguments));
}

QString accountPath(const QString &format, const QStringList &arguments)
{
    const bool hasPlaceholder = format.contains("%@"_L1) || format.contains("$@"_L1);
    if (hasPlaceholder && !arguments.isEmpty() && !bundleTable().hasFiles(arguments.last()))
        return {};
    return standardizedPath(formatted(format, arguments));
}
