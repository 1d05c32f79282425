#include "Utility/QNUtility.h"

#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/KeptFiles.h"
#include "Platform/ProcessList.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/UserRecords.h"

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
std::mutex displayLanguageLock;
QString displayLanguage;

QString preferencesFolder()
{
    const auto user = consoleUser();
    const QString home = user ? homeDirectoryForUser(*user) : QString();
    return (home.isEmpty() ? homeDirectory() : home) + u"/Library/Preferences"_s;
}
} // namespace

QString QNUtility::preferencesPlistPath()
{
    return preferencesPlistPath(Bundle::main().identifier(), preferencesFolder());
}

QString QNUtility::preferencesPlistPath(const std::optional<QString> &bundleIdentifier, const QString &folder)
{
    QString name = bundleIdentifier.value_or(QString());
    const QString word = u"Monitor"_s;
    if (const qsizetype at = name.indexOf(word); at >= 0)
        name.remove(at, word.size());
    name += u".plist"_s;
    if (QFileInfo::exists(folder + u'/' + name))
        return folder + u'/' + name;
    const QStringList entries = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return folder + u'/' + entry;
    }
    return folder + u"/com.halvernet.Corvane.plist"_s;
}

QString QNUtility::globalPreferencesPath()
{
    return preferencesFolder() + u"/.GlobalPreferences.plist"_s;
}

std::optional<QVariantMap> QNUtility::isAnyUserDeletedForProfile(const QString &loginName)
{
    const QString path = pathValue("RemoteManageInfoPath"_L1, {homeDirectoryForUser(loginName)});
    if (!QFileInfo::exists(path))
        return std::nullopt;
    auto record = PropertyList::readDictionary(path);
    if (!record)
        QNLogger::logMonitorTrace(u"isAnyUserDeletedForProfile(for:) Unable to read plist data."_s);
    return record;
}

bool QNUtility::isCurrentPlanPartner()
{
    const auto record = UserRecords::getActiveUserDetails();
    return record && PropertyList::textValue(*record, u"Plan"_s) == u"partner"_s;
}

std::optional<QString> QNUtility::machineID()
{
    const auto machine = PropertyList::readDictionary(pathValue("RootMachineInfoPath"_L1, {}));
    if (auto id = machine ? PropertyList::textValue(*machine, u"machineId"_s) : std::nullopt)
        return id;
    const QByteArray system = QSysInfo::machineUniqueId();
    return system.isEmpty() ? std::nullopt : std::optional(QString::fromLatin1(system));
}

QString QNUtility::getTQLSrvPort()
{
    const QString user = UserRecords::getLastLoggedInUser().value_or(QString());
    const auto details = PropertyList::readDictionary(pathValue("UserDetailsPath"_L1, {user}));
    const auto port = details ? PropertyList::textValue(*details, u"tqlsrvrport"_s) : std::nullopt;
    return port.value_or(u"443"_s);
}

bool QNUtility::isThinClient()
{
    const auto facts = KeptFiles::dictionary(pathValue("ThinClientFilePath"_L1, {}));
    return facts && PropertyList::boolValue(*facts, u"IsThinClient"_s).value_or(false);
}

QString QNUtility::getUserAgent()
{
    const auto version = Bundle::main().version();
    return version ? u"Corvane Mac:"_s + *version : u"Corvane Mac"_s;
}

QString QNUtility::macOSVersion()
{
    return QSysInfo::prettyProductName();
}

QStringList QNUtility::getBSDProcessList()
{
    return runningExecutables();
}

bool QNUtility::isDirectory(const QString &path)
{
    return QFileInfo(path).isDir();
}

bool QNUtility::removeFile(const QString &path)
{
    return removeOrTrace(path);
}

bool QNUtility::isLocalisedString(const std::optional<QString> &text, const std::optional<QString> &key)
{
    const auto language = languageOfSentence(text.value_or(QString()), key.value_or(QString()));
    if (!language)
        return false;
    setViewLogDisplayLanguage(*language);
    return true;
}

QString QNUtility::viewLogDisplayLanguage()
{
    const std::lock_guard guard(displayLanguageLock);
    return displayLanguage;
}

void QNUtility::setViewLogDisplayLanguage(const QString &language)
{
    const std::lock_guard guard(displayLanguageLock);
    displayLanguage = language;
}
