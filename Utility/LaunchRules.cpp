#include "Utility/LaunchRules.h"

#include "Platform/PropertyList.h"
#include "Utility/Paths/PathTable.h"

#include <QDir>

#include <cmath>

using namespace Qt::StringLiterals;

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
    return pathValue("ApplicationRootFolderPath"_L1, {}) + u'/' + name;
}

LaunchRules::Redirection LaunchRules::launchRedirection(const QString &text, const QString &signedOutName)
{
    if (text == signedOutName)
        return Redirection::ResetThenPreferences;
    if (text == "sendErrorReport"_L1)
        return Redirection::ErrorReport;
    if (text == "ActivityLogs"_L1)
        return Redirection::ActivityLogs;
    return Redirection::Preferences;
}

LaunchRules::Redirection LaunchRules::preferencesRequest(const QString &object)
{
    return object == "sendErrorReport"_L1 ? Redirection::ErrorReport : Redirection::Preferences;
}

std::optional<LaunchRules::ViewRequest> LaunchRules::viewRequest(const QString &launchRedirectionType)
{
    static const struct {
        QLatin1StringView type;
        QLatin1StringView notification;
    } rows[] = {
        {"ActivityLogs"_L1, "LaunchActivityLogs"_L1},
        {"ViewScheduleJobs"_L1, "LaunchViewScheduleJobs"_L1},
        {"Settings"_L1, "LaunchSettings"_L1},
    };
    for (const auto &row : rows) {
        if (launchRedirectionType == row.type)
            return ViewRequest{row.notification, {{u"CVLaunchType"_s, launchRedirectionType}}};
    }
    return std::nullopt;
}

bool LaunchRules::versionRunsAutomaticUpdates(const std::optional<QString> &bundleVersion)
{
    return bundleVersion && !bundleVersion->endsWith("00"_L1);
}

LaunchRules::LoginItem LaunchRules::loginItem(const std::optional<QVariantMap> &settings,
                                              const std::optional<QString> &user)
{
    if (!settings || !user || user->isEmpty())
        return LoginItem::Leave;
    const QVariant ownSettings = settings->value(*user);
    if (ownSettings.typeId() != QMetaType::QVariantMap)
        return LoginItem::Leave;
    return isNonZero(ownSettings.toMap(), u"launchOnStartup"_s) ? LoginItem::Add : LoginItem::Remove;
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
