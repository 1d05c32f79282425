#include "Tests/Support/TemporaryHome.h"

#include "Platform/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

TemporaryHome::TemporaryHome() : m_oldHome(qgetenv("HOME"))
{
    qputenv("HOME", QFile::encodeName(m_folder.path()));
}

TemporaryHome::~TemporaryHome()
{
    qputenv("HOME", m_oldHome);
}

QString TemporaryHome::absolute(const QString &path) const
{
    return QDir::isAbsolutePath(path) ? path : m_folder.filePath(path);
}

void TemporaryHome::write(const QString &path, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(absolute(path)).path());
    QFile file(absolute(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

void TemporaryHome::writeList(const QString &path, const QVariant &list) const
{
    const auto bytes = PropertyList::serialize(list, PropertyList::Format::Xml);
    ASSERT_TRUE(bytes.has_value()) << path.toStdString();
    write(path, *bytes);
}

QByteArray TemporaryHome::read(const QString &path) const
{
    QFile file(absolute(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
