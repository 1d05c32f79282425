#include "Source/Controller/IpcMessage.h"

#include <QJsonDocument>

QString IpcMessage::describe(const QVariantList &array)
{
    constexpr qsizetype LongestTrace = 2000; // a trace file holds half a megabyte in all
    return QString::fromUtf8(QJsonDocument::fromVariant(array).toJson(QJsonDocument::Compact))
        .left(LongestTrace);
}
