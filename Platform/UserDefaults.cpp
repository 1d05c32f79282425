#include "Platform/UserDefaults.h"

#include "Platform/PropertyList.h"

#include <QFileInfo>

UserDefaults::UserDefaults(QString path)
    : m_path(std::move(path)), m_file(PropertyList::readDictionary(m_path).value_or(QVariantMap()))
{
}

QVariant UserDefaults::value(const QString &key) const
{
    const std::lock_guard guard(m_lock);
    const auto set = m_set.constFind(key);
    return set != m_set.cend() ? *set : m_file.value(key);
}

void UserDefaults::setValue(const QString &key, const QVariant &value)
{
    const std::lock_guard guard(m_lock);
    m_set.insert(key, value);
}

bool UserDefaults::synchronize()
{
    const std::lock_guard guard(m_lock);
    auto current = PropertyList::readDictionary(m_path);
    if (!current && QFileInfo::exists(m_path))
        return false;
    QVariantMap merged = current.value_or(QVariantMap());
    if (!m_set.isEmpty()) {
        merged.insert(m_set);
        if (merged != current && !PropertyList::write(m_path, merged, PropertyList::Format::Binary))
            return false;
    }
    m_file = merged;
    m_set.clear();
    return true;
}
