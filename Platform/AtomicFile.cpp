#include "Platform/AtomicFile.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

bool AtomicFile::write(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(false);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

std::optional<QByteArray> AtomicFile::read(const QString &path, qint64 limit)
{
    if (!QFileInfo(path).isFile()) // opening a pipe would wait for its writer
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > limit)
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError ||
        bytes.size() > limit) // it may have grown since its size was asked
        return std::nullopt;
    return bytes;
}

bool AtomicFile::writeText(const QString &path, const QString &text)
{
    return write(path, text.toUtf8());
}

std::optional<QString> AtomicFile::readText(const QString &path, qint64 limit)
{
    const auto bytes = read(path, limit);
    if (!bytes)
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(*bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}
