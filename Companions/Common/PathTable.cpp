#include "Companions/Common/PathTable.h"

#include "Companions/Common/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Programs lie in bin/ or in a folder of their own below it.
constexpr int BundleSearchDepth = 3;

QString tableBesideProgram()
{
    QDir folder(QCoreApplication::applicationDirPath());
    for (int level = 0; level < BundleSearchDepth && folder.cdUp(); ++level) {
        const QString candidate = folder.filePath(u"share/corvane-monitor/Localizable.plist"_s);
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return {};
}
} // namespace

PathTable::PathTable(QVariantMap entries, QString folder)
    : m_entries(std::move(entries)), m_folder(std::move(folder))
{
}

std::optional<PathTable> PathTable::load(const QString &given)
{
    const QString path = given.isEmpty() ? tableBesideProgram() : given;
    const QVariant tree = readPropertyList(path);
    if (tree.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return PathTable(tree.toMap(), QFileInfo(path).absolutePath());
}

QString PathTable::value(const QString &key, const QStringList &arguments) const
{
    return filled(m_entries.value(key).toString(), arguments);
}

QString PathTable::filled(QString text, const QStringList &arguments)
{
    const QString placeholder = u"%@"_s;
    qsizetype from = 0;
    for (const QString &argument : arguments) {
        const qsizetype at = text.indexOf(placeholder, from);
        if (at < 0)
            break;
        text.replace(at, placeholder.size(), argument);
        from = at + argument.size();
    }
    return text;
}

QString PathTable::path(const QString &key, const QStringList &arguments) const
{
    QString text = value(key, arguments);
    if (text.startsWith(u'~'))
        text.replace(0, 1, QDir::homePath());
    return text;
}

QString loginName()
{
    const passwd *entry = getpwuid(getuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}
