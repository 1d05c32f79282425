#include "Platform/UserDefaults.h"

#include "Platform/SharedList.h"

UserDefaults::UserDefaults(QString path)
    : m_path(std::move(path)),
      m_file(PropertyList::readDictionary(m_path, nullptr, Limits::SharedListBytes).value_or(QVariantMap()))
{
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard guard(m_lock);
    const auto set = m_set.find(key);
    return set != m_set.cend() ? set->second.value : m_file.value(key);
}

void UserDefaults::setValue(const QString &key, const QVariant &value)
{
    // The file as it is now: another program may have changed it since it was last read.
    setValue(key, value,
             PropertyList::readDictionary(m_path, nullptr, Limits::SharedListBytes)
                 .value_or(QVariantMap())
                 .value(key));
}

void UserDefaults::setValue(const QString &key, const QVariant &value, const QVariant &inFile)
{
    const std::lock_guard guard(m_lock);
    if (PropertyList::isSame(inFile, value)) {
        m_set.erase(key);
        m_file.insert(key, value);
        return;
    }
    m_set.insert_or_assign(key, Pending{value, inFile});
}

bool UserDefaults::isPending(const QString &key) const
{
    const std::lock_guard guard(m_lock);
    return m_set.contains(key);
}

FileResult UserDefaults::synchronize()
{
    const std::lock_guard guard(m_lock);
    QVariantMap merged;
    const auto lay = [&](QVariantMap &list) -> std::optional<QString> {
        for (const auto &[key, pending] : m_set) {
            if (PropertyList::isSame(list.value(key), pending.inFile))
                list.insert(key, pending.value);
        }
        merged = list;
        return std::nullopt;
    };
    auto result = SharedList::update(m_path, SharedList::Missing::Begin, PropertyList::Format::Binary, lay);
    if (result) {
        m_file = merged;
        m_set.clear();
    }
    return result;
}
