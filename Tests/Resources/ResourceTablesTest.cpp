// What the program finds beside itself once it is built: the property lists and the language tables.

#include "Platform/PropertyList.h"

#include <QTranslator>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString resources = QStringLiteral(CORVANE_RESOURCES "/");

/// A flat property list of texts; a value of another type is a fault of the file.
QVariantMap texts(const QString &name)
{
    const auto list = PropertyList::readDictionary(resources + name).value_or(QVariantMap());
    EXPECT_FALSE(list.isEmpty()) << qPrintable(name);
    for (auto entry = list.cbegin(); entry != list.cend(); ++entry)
        EXPECT_EQ(entry->typeId(), QMetaType::QString) << qPrintable(entry.key());
    return list;
}
} // namespace

TEST(ResourceTables, HoldWhatOtherProgramsRelyOn)
{
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {"Info.plist", "CFBundleIdentifier", "com.halvernet.CorvaneMonitor"},
        {"Info.plist", "CFBundleShortVersionString", "9.2.1"},
        {"Localizable.plist", "TCPPortFile", "~/.local/share/Corvane/TCPPort.plist"},
        {"Localizable.plist", "LastUserLoginDetailsFilePath",
         "~/.local/share/Corvane/LastUserLoginDetails.plist"},
        {"Localizable.plist", "UserDetailsPath", "~/.local/share/Corvane/%@/UserDetails.plist"},
        {"Localizable.plist", "RemoteManageInfoPath", "%@/.local/share/Corvane/RemoteManageInfo.plist"},
        {"Localizable.plist", "EnableDisableSync", "EnableDisableSync"},
        {"MonitorMessages.plist", "T1001", "All files are up to date"},
        {"Deployment.plist", "ServerTrust", "evaluated"},
    };
    for (const auto &[file, key, value] : rows) {
        SCOPED_TRACE(key);
        const QVariantMap table = texts(QString::fromUtf8(file));
        EXPECT_EQ(table.value(QString::fromUtf8(key)), QString::fromUtf8(value));
    }
}

TEST(ResourceTables, ThePrivateKeyLiesInTheFolderOfTheAccount)
{
    const QVariantMap table = texts(u"Localizable.plist"_s);
    // Its name is also put together from the root folder and the account name, with nothing between the two.
    EXPECT_EQ(table.value(u"EncKeyPath"_s),
              table.value(u"ApplicationRootFolderPath"_s).toString() + u"%@/K3M7Q2T9V4X6B1D8"_s);
}

TEST(ResourceTables, TheProxyFormWritesTheFileThatTheConnectionsRead)
{
    const QVariantMap table = texts(u"Localizable.plist"_s);
    QString edited = table.value(u"ProxySettingFilePath"_s).toString();
    EXPECT_EQ(edited.replace(u"%@"_s, u"setting.plist"_s), table.value(u"ProxySetting"_s));
}

TEST(LanguageTables, AnswerWithTheSentenceOfTheLanguage)
{
    const std::tuple<const char *, const char *, const char *, const char *> rows[] = {
        {"English is itself", "en", "Paused", "Paused"},
        {"plain", "es", "Paused", "En pausa"},
        {"plain", "ja", "Paused", "一時停止中"},
        {"with a value", "es", "Your next scheduled job will start on %@",
         "Su próxima tarea programada comenzará el %@"},
        {"with a value", "ja", "Your next scheduled job will start on %@", "次のスケジュールジョブの開始: %@"},
        {"two lines", "es", "Backup: %@\nCloud Drive: %@", "Copia de seguridad: %@\nCloud Drive: %@"},
        {"two lines", "ja", "Backup: %@\nCloud Drive: %@", "バックアップ: %@\nCloud Drive: %@"},
        {"blank before a line feed", "ja", "%@ \nYour account has been cancelled",
         "%@ \nお使いのアカウントは解約されました"},
        {"leading blank", "es", " Pause", " Pausar"},
        {"unknown", "es", "Nobody says this", ""},
    };
    for (const auto &[name, language, key, text] : rows) {
        SCOPED_TRACE(testing::Message() << name << ", " << language);
        QTranslator table;
        ASSERT_TRUE(table.load(resources + QString::fromUtf8(language) + u".lproj/Localizable.qm"_s));
        EXPECT_EQ(table.translate("Localizable", key), QString::fromUtf8(text));
    }
}
