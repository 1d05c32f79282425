#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

/// A reference to another object of a keyed archive: an index into its "$objects".
struct PlistUid {
    quint64 index = 0;
    friend bool operator==(PlistUid a, PlistUid b) { return a.index == b.index; }
};
Q_DECLARE_METATYPE(PlistUid)

/// The two forms of a property list on disk.
enum class PlistForm { Binary, Xml };

/// The tree that a property list of either form holds: bool, qlonglong, double, QString, QByteArray, QDateTime,
/// PlistUid, QVariantList, QVariantMap. An invalid variant when the bytes are no property list.
[[nodiscard]] QVariant parsePropertyList(const QByteArray &bytes);

/// The bytes of a tree of the types above. Values of other types are left out.
[[nodiscard]] QByteArray propertyListBytes(const QVariant &tree, PlistForm form);

/// The property list in a file; invalid when it is missing, unreadable or no property list.
[[nodiscard]] QVariant readPropertyList(const QString &path);

/// The text of a file, UTF-8; empty when it cannot be read.
[[nodiscard]] QString readTextFile(const QString &path);

/// Puts `bytes` in the place of the file, whole or not at all, making its folder where needed. False on
/// failure.
[[nodiscard]] bool writeWholeFile(const QString &path, const QByteArray &bytes);

/// writeWholeFile() with the bytes of a property list.
[[nodiscard]] bool writePropertyList(const QString &path, const QVariantMap &tree,
                                     PlistForm form = PlistForm::Xml);
