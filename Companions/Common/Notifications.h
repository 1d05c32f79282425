#pragma once

#include <QString>
#include <QVariantMap>

/// Posts a distributed notification: a signal on the session bus that every program of the product may hear.
/// Values of `userInfo` are QString, bool, int, QStringList or QVariantMap. False when there is no session bus.
bool postNotification(const QString &name, const QString &object = {}, const QVariantMap &userInfo = {});
