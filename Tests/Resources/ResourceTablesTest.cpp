// What the program finds beside itself once it is built: the property lists and the language tables.

#include "Platform/PropertyList.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

#include <QTranslator>

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
    EXPECT_EQ(texts(u"Info.plist"_s).value(u"CFBundleIdentifier"_s), u"com.halvernet.CorvaneMonitor"_s);
    EXPECT_EQ(texts(u"MonitorMessages.plist"_s).value(u"T1001"_s), u"All files are up to date"_s);
    EXPECT_EQ(texts(u"Deployment.plist"_s).value(u"ServerTrust"_s), u"evaluated"_s);
    const QVariantMap table = texts(u"Localizable.plist"_s);
    EXPECT_EQ(table.value(u"TCPPortFile"_s), u"~/.local/share/Corvane/TCPPort.plist"_s);
    EXPECT_EQ(table.value(u"UserDetailsPath"_s), u"~/.local/share/Corvane/%@/UserDetails.plist"_s);
    EXPECT_EQ(table.value(u"RemoteManageInfoPath"_s), u"%@/.local/share/Corvane/RemoteManageInfo.plist"_s);
    EXPECT_EQ(table.value(u"EnableDisableSync"_s), u"EnableDisableSync"_s);
    // Its name is also put together from the root folder and the account name, with nothing between the two.
    EXPECT_EQ(table.value(u"EncKeyPath"_s),
              table.value(u"ApplicationRootFolderPath"_s).toString() + u"%@/K3M7Q2T9V4X6B1D8"_s);
    // The proxy form writes the file that the connections read.
    EXPECT_EQ(table.value(u"ProxySettingFilePath"_s).toString().replace(u"%@"_s, u"setting.plist"_s),
              table.value(u"ProxySetting"_s));
}

TEST(LanguageTables, AnswerWithTheSentenceOfTheLanguage)
{
    const struct {
        const char *name, *language, *key, *text;
    } rows[] = {
        {"English is itself", "en", "Paused", "Paused"},
        {"with a value", "ja", "Your next scheduled job will start on %@", "次のスケジュールジョブの開始: %@"},
        {"two lines", "es", "Backup: %@\nCloud Drive: %@", "Copia de seguridad: %@\nCloud Drive: %@"},
        {"blank before a line feed", "ja", "%@ \nYour account has been cancelled",
         "%@ \nお使いのアカウントは解約されました"},
        {"leading blank", "es", " Pause", " Pausar"},
        {"unknown", "es", "Nobody says this", ""},
    };
    forEachRow(rows, [](const auto &row) {
        QTranslator table;
        ASSERT_TRUE(table.load(resources + QString::fromUtf8(row.language) + u".lproj/Localizable.qm"_s));
        EXPECT_EQ(table.translate("Localizable", row.key), QString::fromUtf8(row.text));
    });
}
