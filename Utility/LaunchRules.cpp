#include "Utility/LaunchRules.h"

#include "Platform/PropertyList.h"
#include "Utility/Paths/PathTable.h"

#include <QDir>

#include <cmath>

namespace
{
/// Whether an integer is other than 0, as other programs store one: a number, a switch, or its decimal text.
bool isNonZero(const QVariantMap &dictionary, const QString &key)
{
    if (const auto number = PropertyList::intValue(dictionary, key))
        return *number != 0;
    if (const auto flag = PropertyList::boolValue(dictionary, key))
        return *flag;
    const QVariant value = dictionary.value(key);
    if (value.metaType() == QMetaType::fromType<double>())
        return std::abs(value.toDouble()) >= 1; // its fraction is cut off
    return PropertyList::textValue(dictionary, key).value_or(QString()).trimmed().toLongLong() != 0;
}
} // namespace

QString LaunchRules::rootFile(const QString &name)
{
    return pathValue(QLatin1String("ApplicationRootFolderPath"), {}) + u'/' + name;
}

LaunchRules::Redirection LaunchRules::launchRedirection(const QString &text, const QString &signedOutName)
{
    if (text == signedOutName)
        return Redirection::ResetThenPreferences;
    if (text == QLatin1String("sendErrorReport"))
        return Redirection::ErrorReport;
    if (text == QLatin1String("ActivityLogs"))
        return Redirection::ActivityLogs;
    return Redirection::Preferences;
}

LaunchRules::Redirection LaunchRules::preferencesRequest(const QString &object)
{
    return object == QLatin1String("sendErrorReport") ? Redirection::ErrorReport : Redirection::Preferences;
}

std::optional<LaunchRules::ViewRequest> LaunchRules::viewRequest(const QString &launchRedirectionType)
{
    static const struct {
        QLatin1String type;
        QLatin1String notification;
    } rows[] = {
        {QLatin1String("ActivityLogs"), QLatin1String("LaunchActivityLogs")},
        {QLatin1String("ViewScheduleJobs"), QLatin1String("LaunchViewScheduleJobs")},
        {QLatin1String("Settings"), QLatin1String("LaunchSettings")},
    };
    for (const auto &row : rows) {
        if (launchRedirectionType == row.type)
            return ViewRequest{row.notification, {{QStringLiteral("CVLaunchType"), launchRedirectionType}}};
    }
    return std::nullopt;
}

bool LaunchRules::versionRunsAutomaticUpdates(const std::optional<QString> &bundleVersion)
{
    return bundleVersion && !bundleVersion->endsWith(QLatin1String("00"));
}

LaunchRules::LoginItem LaunchRules::loginItem(const std::optional<QVariantMap> &settings,
                                              const std::optional<QString> &user)
{
    if (!settings || !user || user->isEmpty())
        return LoginItem::Leave;
    const QVariant ownSettings = settings->value(*user);
    if (ownSettings.typeId() != QMetaType::QVariantMap)
        return LoginItem::Leave;
    return isNonZero(ownSettings.toMap(), QStringLiteral("launchOnStartup")) ? LoginItem::Add
                                                                             : LoginItem::Remove;
}

QString LaunchRules::updateFolder(const QString &rootFolder, const QString &applicationName)
{
    return QDir::cleanPath(rootFolder + u'/' + applicationName);
}

bool LaunchRules::removesUpdateFolder(const UpdateLeftover &leftover)
{
    const QString root = QDir::cleanPath(leftover.rootFolder);
    const bool isInside = QDir::cleanPath(leftover.folder).startsWith(root + u'/');
    return !leftover.checkFileExists && leftover.folderExists && !root.isEmpty() && isInside;
}
