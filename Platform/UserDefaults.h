#pragma once

#include <QString>
#include <QVariantMap>

#include <mutex>

/// The settings that the product's programs share: one property list, of which each program holds a copy. What
/// is set here stands at once for this process, and for the others after synchronize(). Safe from any thread.
class UserDefaults
{
public:
    explicit UserDefaults(QString path);

    [[nodiscard]] const QString &path() const { return m_path; }

    /// The value under `key`, invalid where there is none.
    [[nodiscard]] QVariant value(const QString &key) const;

    /// Sets a value for this process.
    void setValue(const QString &key, const QVariant &value);

    /// Writes what was set into the file, among whatever others wrote there meanwhile, and takes their values
    /// over. False when the file could not be written, or exists and is no dictionary: it is then left alone,
    /// and what was set stands for this process only.
    bool synchronize();

private:
    QString m_path;
    mutable std::mutex m_lock;
    QVariantMap m_file; // as last read
    QVariantMap m_set;  // set here and not yet written
};
