// What the program finds beside itself once it is built: the property lists and the language tables.

#include <QFile>
#include <QHash>
#include <QTranslator>
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <memory>

namespace
{
const QString resources = QStringLiteral(CORVANE_RESOURCES "/");

/// The texts of a flat property list; a value of another type is a fault of the file.
QHash<QString, QString> texts(const QString &name)
{
    QFile file(resources + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    const QByteArray bytes = file.readAll();
    plist_t root = nullptr;
    plist_from_memory(bytes.constData(), uint32_t(bytes.size()), &root);
    const std::unique_ptr<void, decltype(&plist_free)> owner(root, &plist_free);
    QHash<QString, QString> result;
    if (plist_get_node_type(root) != PLIST_DICT) {
        ADD_FAILURE() << qPrintable(name) << " is no dictionary";
        return result;
    }
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(root, &iterator);
    char *key = nullptr;
    plist_t value = nullptr;
    for (plist_dict_next_item(root, iterator, &key, &value); key;
         plist_dict_next_item(root, iterator, &key, &value)) {
        EXPECT_EQ(plist_get_node_type(value), PLIST_STRING) << key;
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(value, &length);
        result.insert(QString::fromUtf8(key), QString::fromUtf8(text, qsizetype(length)));
        std::free(key);
    }
    std::free(iterator);
    return result;
}
} // namespace

TEST(ResourceTables, HoldWhatOtherProgramsRelyOn)
{
    const struct {
        const char *file, *key, *value;
    } rows[] = {
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
    for (const auto &row : rows) {
        SCOPED_TRACE(row.key);
        const QHash<QString, QString> table = texts(QString::fromUtf8(row.file));
        EXPECT_EQ(table.value(QString::fromUtf8(row.key)), QString::fromUtf8(row.value));
    }
}

TEST(ResourceTables, ThePrivateKeyLiesInTheFolderOfTheAccount)
{
    const QHash<QString, QString> table = texts(QStringLiteral("Localizable.plist"));
    // Its name is also put together from the root folder and the account name, with nothing between the two.
    EXPECT_EQ(table.value(QStringLiteral("EncKeyPath")),
              table.value(QStringLiteral("ApplicationRootFolderPath")) + QStringLiteral("%@/K3M7Q2T9V4X6B1D8"));
}

TEST(ResourceTables, TheProxyFormWritesTheFileThatTheConnectionsRead)
{
    const QHash<QString, QString> table = texts(QStringLiteral("Localizable.plist"));
    QString edited = table.value(QStringLiteral("ProxySettingFilePath"));
    EXPECT_EQ(edited.replace(QStringLiteral("%@"), QStringLiteral("setting.plist")),
              table.value(QStringLiteral("ProxySetting")));
}

TEST(LanguageTables, AnswerWithTheSentenceOfTheLanguage)
{
    const struct {
        const char *name, *language, *key, *text;
    } rows[] = {
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
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.name << ", " << row.language);
        QTranslator table;
        ASSERT_TRUE(
            table.load(resources + QString::fromUtf8(row.language) + QStringLiteral(".lproj/Localizable.qm")));
        EXPECT_EQ(table.translate("Localizable", row.key), QString::fromUtf8(row.text));
    }
}

TEST(LanguageTables, KnowEveryMessageOfTheDaemons)
{
    const QHash<QString, QString> messages = texts(QStringLiteral("MonitorMessages.plist"));
    EXPECT_GT(messages.size(), 50);
    for (const char *language : {"en", "es", "ja"}) {
        SCOPED_TRACE(language);
        QTranslator table;
        ASSERT_TRUE(
            table.load(resources + QString::fromUtf8(language) + QStringLiteral(".lproj/Localizable.qm")));
        for (auto message = messages.cbegin(); message != messages.cend(); ++message)
            EXPECT_FALSE(table.translate("Localizable", message->toUtf8().constData()).isEmpty())
                << qPrintable(message.key());
    }
}
