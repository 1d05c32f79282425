#pragma once

#include "Platform/FileResult.h"

#include <QString>
#include <QVariantMap>

#include <map>
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

    /// Sets a value for this process. What the file holds already leaves nothing to be written.
    void setValue(const QString &key, const QVariant &value);
    /// The same for a value that was worked out from what the file held: where another program has changed
    /// `inFile` since, the change is newer and stays.
    void setValue(const QString &key, const QVariant &value, const QVariant &inFile);

    /// Whether a value that was set here is still to be written.
    [[nodiscard]] bool isPending(const QString &key) const;

    /// Writes what was set into the file, among whatever others wrote there meanwhile, and takes their values
    /// over; a key that another program has changed since it was set here is newer there and stays. Where the
    /// file can't be written, or exists and is no dictionary, it is left alone, and what was set stands for
    /// this process until a later call can write it.
    FileResult synchronize();

private:
    struct Pending {
        QVariant value;
        QVariant inFile; ///< what the file held when it was set
    };

    QString m_path;
    mutable std::mutex m_lock;
    QVariantMap m_file; // as last read
    std::map<QString, Pending> m_set;
};
