#include "Platform/PropertyList.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Language/LocalizedBundle.h"
#include "Utility/QNUtility.h"

#include <gtest/gtest.h>

namespace
{
QVariantMap languages(const QVariant &list)
{
    return {{QStringLiteral("AppleLanguages"), list}};
}

/// A manager over a preferences file of its own.
struct Fixture {
    TemporaryHome home;
    QString file = home.path(QStringLiteral("preferences.plist"));

    [[nodiscard]] QVariantMap stored() const
    {
        return PropertyList::readDictionary(file).value_or(QVariantMap());
    }
};
} // namespace

TEST(Language, OfTheFirstStart)
{
    const QVariantMap older{{QStringLiteral("logsFrom"), 7LL}};
    const struct {
        const char *name;
        std::optional<QVariantMap> stored;
        QString system, expected;
    } rows[] = {
        {"first run, spoken", std::nullopt, QStringLiteral("es"), QStringLiteral("es")},
        {"first run, not spoken", std::nullopt, QStringLiteral("fr"), QStringLiteral("en")},
        {"preferences without a language", QVariantMap{{QStringLiteral("onlyonce"), true}},
         QStringLiteral("ja"), QStringLiteral("ja")},
        {"an older installation", older, QStringLiteral("ja"), QStringLiteral("en")},
        {"stored", languages(QVariantList{QStringLiteral("ja")}), QStringLiteral("es"), QStringLiteral("ja")},
        {"stored, not spoken", languages(QVariantList{QStringLiteral("de")}), QStringLiteral("es"),
         QStringLiteral("en")},
        {"stored with a region", languages(QVariantList{QStringLiteral("es-MX")}), QStringLiteral("es"),
         QStringLiteral("en")},
        {"empty list", languages(QVariantList()), QStringLiteral("ja"), QStringLiteral("en")},
        {"list of numbers", languages(QVariantList{1LL}), QStringLiteral("ja"), QStringLiteral("en")},
        {"no list", languages(QStringLiteral("ja")), QStringLiteral("ja"), QStringLiteral("en")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(initialLanguage(row.stored, row.system), row.expected);
    }
}

TEST(Language, CodeOfASystemTag)
{
    EXPECT_EQ(SystemLanguageHelper::languageCode(QStringLiteral("es-419")), QStringLiteral("es"));
    EXPECT_EQ(SystemLanguageHelper::languageCode(QStringLiteral("fr-CA")), QStringLiteral("fr"));
    EXPECT_EQ(SystemLanguageHelper::languageCode(QStringLiteral("ja")), QStringLiteral("ja"));
    EXPECT_EQ(SystemLanguageHelper::languageCode(QStringLiteral("-US")), QStringLiteral("en"));
}

TEST(Language, TheSystemsLanguageComesFromTheGlobalDomainFirst)
{
    const TemporaryHome home;
    home.writeList(QNUtility::globalPreferencesPath(),
                   languages(QVariantList{QStringLiteral("pt-BR"), QStringLiteral("es")}));
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguage(), QStringLiteral("pt-BR"));
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguageCode(), QStringLiteral("pt"));
}

TEST(Language, IsStoredAmongWhatOtherProgramsKeep)
{
    Fixture fixture;
    fixture.home.writeList(fixture.file,
                           QVariantMap{{QStringLiteral("logsFrom"), 7LL}, {QStringLiteral("other"), true}});
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("en"));
    // Another program writes meanwhile.
    fixture.home.writeList(fixture.file,
                           QVariantMap{{QStringLiteral("logsFrom"), 30LL}, {QStringLiteral("other"), true}});
    manager.updateLanguage(QStringLiteral("ES"));
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("es"));
    EXPECT_EQ(manager.supportedLanguage(), SupportedLanguage::es);
    EXPECT_EQ(fixture.stored(),
              (QVariantMap{{QStringLiteral("logsFrom"), 30LL},
                           {QStringLiteral("other"), true},
                           {QStringLiteral("AppleLanguages"), QVariantList{QStringLiteral("es")}}}));
    manager.updateLanguage(QStringLiteral("de"));
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("es"));
    manager.setCurrentLanguage(QStringLiteral("DE"));
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("de"));
    EXPECT_EQ(manager.supportedLanguage(), std::nullopt);
    EXPECT_EQ(manager.getPersistedAppLanguage(), QStringLiteral("en"));
    manager.loadCurrentLanguage();
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("en"));
}

TEST(Language, ADamagedPreferencesFileIsNotLost)
{
    Fixture fixture;
    fixture.home.write(fixture.file, "bplist00 cut");
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    manager.setCurrentLanguage(QStringLiteral("ja"));
    EXPECT_EQ(manager.currentLanguage(), QStringLiteral("ja")) << "for this process it stands";
    EXPECT_EQ(fixture.home.read(fixture.file), "bplist00 cut");
}

TEST(Language, SentencesAreTheirOwnKeys)
{
    Fixture fixture;
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    const QString paused = QStringLiteral("Paused");
    EXPECT_EQ(manager.localizedString(paused), paused);
    manager.setCurrentLanguage(QStringLiteral("es"));
    const QString spanish = manager.localizedString(paused);
    EXPECT_NE(spanish, paused);
    EXPECT_EQ(manager.localizedString(QStringLiteral("no such sentence")), QStringLiteral("no such sentence"));
    manager.setCurrentLanguage(QStringLiteral("xx"));
    EXPECT_EQ(manager.localizedString(paused), paused);

    const QString table = QStringLiteral("Localizable");
    EXPECT_EQ(manager.localized(paused, QStringLiteral("es"), table), spanish);
    EXPECT_EQ(manager.localized(paused, QStringLiteral("es"), QStringLiteral("NoSuchTable")), paused);
    EXPECT_EQ(manager.localized(paused, QStringLiteral("../es"), table), paused);
}

TEST(Language, PlainLookUpsObeyTheChoice)
{
    LocalizedBundle bundle(Bundle::main());
    EXPECT_EQ(bundle.localizedString(QStringLiteral("Paused")), QStringLiteral("Paused"));
    bundle.forceLanguage(QStringLiteral("ja"));
    const QString japanese = bundle.translate("AnyForm", "Paused", nullptr, -1);
    EXPECT_NE(japanese, QStringLiteral("Paused"));
    bundle.forceLanguage(QStringLiteral("fr"));
    EXPECT_EQ(bundle.localizedString(QStringLiteral("Paused")), japanese)
        << "no such folder: the last choice stays";
}

TEST(Language, ASentenceIsKnownInEveryLanguage)
{
    const TemporaryHome home;
    const QString key = QStringLiteral("Paused");
    const QString japanese =
        LanguageManager::shared().localized(key, QStringLiteral("ja"), QStringLiteral("Localizable"));
    EXPECT_TRUE(QNUtility::isLocalisedString(QStringLiteral("x ") + japanese + u'y', key));
    EXPECT_EQ(QNUtility::viewLogDisplayLanguage(), QStringLiteral("ja"));
    EXPECT_FALSE(QNUtility::isLocalisedString(QStringLiteral("nothing of it"), key));
    EXPECT_FALSE(QNUtility::isLocalisedString(QString(), key));
    EXPECT_FALSE(QNUtility::isLocalisedString(key, std::nullopt));
}

// The tool tip swaps one sentence for another inside a text that was put together from a template and a line:
// that only works while the three are translated alike.
TEST(Language, TheUpToDateLineIsFoundInTheFinishedToolTip)
{
    for (const AppLanguage &language : AppLanguage::supported()) {
        const auto in = [&](const char *sentence) {
            return LanguageManager::shared().localized(QString::fromLatin1(sentence), language.id,
                                                       QStringLiteral("Localizable"));
        };
        QString tip = in("Backup: %@\nCloud Drive: %@");
        const qsizetype slot = tip.lastIndexOf(QStringLiteral("%@"));
        tip.replace(slot, 2, in("All files are up to date"));
        EXPECT_TRUE(tip.contains(in("Cloud Drive: All files are up to date"))) << language.id.toStdString();
        EXPECT_NE(in("Cloud Drive: All files are up to date"), in("Cloud Drive: All files are synced"));
        // A full account is told from the beginning of its line.
        EXPECT_TRUE(in("You have exceeded the allocated").startsWith(in("You have exceeded the")))
            << language.id.toStdString();
    }
}
