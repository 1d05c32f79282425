#pragma once

#include <QString>
#include <QVariantMap>

class QObject;

/// Posts a distributed notification: a signal on the session bus that every program of the product may hear.
/// Values of `userInfo` are QString, bool, int, QStringList or QVariantMap. False when there is no session bus.
bool postNotification(const QString &name, const QString &object = {}, const QVariantMap &userInfo = {});

/// Has `slot` of the receiver, written with SLOT(), called for every notification that is posted, with its
/// name, its object and its user info. False when there is no session bus.
bool hearNotifications(QObject *receiver, const char *slot);
