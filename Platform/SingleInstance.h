#pragma once

#include <QString>

#include <chrono>

/// Keeps a second monitor of the same user and home from running beside the first. The claim is a lock on a
/// file that the kernel lets go with the process, however that ends; nothing has to be cleaned up.
class SingleInstance
{
public:
    enum class Answer {
        Only,      ///< the claim is this process's now, for as long as this object lives
        Taken,     ///< another process holds it
        Unguarded, ///< no lock file can be made or locked; go on without
    };

    explicit SingleInstance(QString lockFile);
    ~SingleInstance();
    SingleInstance(const SingleInstance &) = delete;

    /// Tries to take the claim, for as long as `patience` while another holds it; blocks the calling thread.
    [[nodiscard]] Answer claim(std::chrono::milliseconds patience);

    /// The lock file of this user and home: in the home's folder of the product, so that it is the same however
    /// and with whatever session the monitor is started.
    [[nodiscard]] static QString lockFile(const QString &productFolder);

private:
    [[nodiscard]] Answer tryOnce();

    QString m_lockFile;
    int m_descriptor = -1;
};
