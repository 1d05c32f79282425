#pragma once

#include <QString>
#include <QVariantList>
#include <QVariantMap>

/// A message of one of the daemons, as the rows of the dispatch table get it.
struct IpcMessage {
    /// Which way it came.
    enum class Origin { BackupDaemon, SyncDaemon };

    const QVariantList &array;
    const QString &text; ///< of its id
    QVariant second;     ///< its number as text, or its data
    Origin origin;

    [[nodiscard]] bool hasData() const { return second.typeId() == QMetaType::QVariantMap; }
    [[nodiscard]] QVariantMap data() const { return second.toMap(); }

    /// An array of a message for a trace, cut where that is long.
    [[nodiscard]] static QString describe(const QVariantList &array);
};
