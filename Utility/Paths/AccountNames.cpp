#include "Utility/Paths/AccountNames.h"

#include "Platform/Home.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

bool AccountNames::isPathComponent(const QString &name)
{
    const auto breaksPaths = [](QChar c) { return c == u'/' || c.category() == QChar::Other_Control; };
    return !name.isEmpty() && !name.startsWith(u'.') && name.isValidUtf16() &&
           QFile::encodeName(name).size() <= LongestBytes && std::ranges::none_of(name, breaksPaths);
}

QSet<QString> AccountNames::ownNames(const QHash<QString, QString> &table)
{
    QSet<QString> names{AutoLaunchCheckFile, UpdateCheckFile,
                        SilentInstallFile,   LaunchHelper,
                        LogsArchive,         ViewLogs,
                        ViewScheduledJobs,   RemoteInstall,
                        UpdateDate,          table.value(u"ApplicationName"_s)};
    const QString root = standardizedPath(table.value(u"ApplicationRootFolderPath"_s)) + u'/';
    for (QString value : table) {
        if (value.startsWith("%@/"_L1)) // a home directory
            value.replace(0, 2, u'~');
        const QString path = standardizedPath(value);
        const QString name = path.startsWith(root) ? path.sliced(root.size()).section(u'/', 0, 0) : QString();
        if (!name.isEmpty() && !name.contains("%@"_L1))
            names.insert(name);
    }
    return names;
}
