#include "Platform/PropertyList.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Language/LocalizedBundle.h"
#include "Utility/QNUtility.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
QVariantMap languages(const QVariant &list)
{
    return {{u"AppleLanguages"_s, list}};
}

/// A manager over a preferences file of its own.
struct Fixture {
    TemporaryHome home;
    QString file = home.path(u"preferences.plist"_s);

    [[nodiscard]] QVariantMap stored() const
    {
        return PropertyList::readDictionary(file).value_or(QVariantMap());
    }
};
} // namespace

TEST(Language, OfTheFirstStart)
{
    const QVariantMap older{{u"logsFrom"_s, 7LL}};
    const std::tuple<const char *, std::optional<QVariantMap>, QString, QString> rows[] = {
        {"first run, spoken", std::nullopt, u"es"_s, u"es"_s},
        {"first run, not spoken", std::nullopt, u"fr"_s, u"en"_s},
        {"preferences without a language", QVariantMap{{u"onlyonce"_s, true}}, u"ja"_s, u"ja"_s},
        {"an older installation", older, u"ja"_s, u"en"_s},
        {"stored", languages(QVariantList{u"ja"_s}), u"es"_s, u"ja"_s},
        {"stored, not spoken", languages(QVariantList{u"de"_s}), u"es"_s, u"en"_s},
        {"stored with a region", languages(QVariantList{u"es-MX"_s}), u"es"_s, u"en"_s},
        {"empty list", languages(QVariantList()), u"ja"_s, u"en"_s},
        {"list of numbers", languages(QVariantList{1LL}), u"ja"_s, u"en"_s},
        {"no list", languages(u"ja"_s), u"ja"_s, u"en"_s},
    };
    for (const auto &[name, stored, system, expected] : rows)
        EXPECT_EQ(initialLanguage(stored, system), expected) << name;
}

TEST(Language, CodeOfASystemTag)
{
    EXPECT_EQ(SystemLanguageHelper::languageCode(u"es-419"_s), u"es"_s);
    EXPECT_EQ(SystemLanguageHelper::languageCode(u"fr-CA"_s), u"fr"_s);
    EXPECT_EQ(SystemLanguageHelper::languageCode(u"ja"_s), u"ja"_s);
    EXPECT_EQ(SystemLanguageHelper::languageCode(u"-US"_s), u"en"_s);
}

TEST(Language, TheSystemsLanguageComesFromTheGlobalDomainFirst)
{
    const TemporaryHome home;
    home.writeList(QNUtility::globalPreferencesPath(), languages(QVariantList{u"pt-BR"_s, u"es"_s}));
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguage(), u"pt-BR"_s);
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguageCode(), u"pt"_s);
}

TEST(Language, IsStoredAmongWhatOtherProgramsKeep)
{
    Fixture fixture;
    fixture.home.writeList(fixture.file, QVariantMap{{u"logsFrom"_s, 7LL}, {u"other"_s, true}});
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    EXPECT_EQ(manager.currentLanguage(), u"en"_s);
    // Another program writes meanwhile.
    fixture.home.writeList(fixture.file, QVariantMap{{u"logsFrom"_s, 30LL}, {u"other"_s, true}});
    manager.updateLanguage(u"ES"_s);
    EXPECT_EQ(manager.currentLanguage(), u"es"_s);
    EXPECT_EQ(manager.supportedLanguage(), SupportedLanguage::es);
    EXPECT_EQ(
        fixture.stored(),
        (QVariantMap{{u"logsFrom"_s, 30LL}, {u"other"_s, true}, {u"AppleLanguages"_s, QVariantList{u"es"_s}}}));
    manager.updateLanguage(u"de"_s);
    EXPECT_EQ(manager.currentLanguage(), u"es"_s);
    manager.setCurrentLanguage(u"DE"_s);
    EXPECT_EQ(manager.currentLanguage(), u"de"_s);
    EXPECT_EQ(manager.supportedLanguage(), std::nullopt);
    EXPECT_EQ(manager.getPersistedAppLanguage(), u"en"_s);
    manager.loadCurrentLanguage();
    EXPECT_EQ(manager.currentLanguage(), u"en"_s);
}

TEST(Language, ADamagedPreferencesFileIsNotLost)
{
    Fixture fixture;
    fixture.home.write(fixture.file, "bplist00 cut");
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    manager.setCurrentLanguage(u"ja"_s);
    EXPECT_EQ(manager.currentLanguage(), u"ja"_s) << "for this process it stands";
    EXPECT_EQ(fixture.home.read(fixture.file), "bplist00 cut");
}

TEST(Language, SentencesAreTheirOwnKeys)
{
    Fixture fixture;
    UserDefaults defaults(fixture.file);
    LanguageManager manager(Bundle::main(), defaults);
    const QString paused = u"Paused"_s;
    EXPECT_EQ(manager.localizedString(paused), paused);
    manager.setCurrentLanguage(u"es"_s);
    const QString spanish = manager.localizedString(paused);
    EXPECT_NE(spanish, paused);
    EXPECT_EQ(manager.localizedString(u"no such sentence"_s), u"no such sentence"_s);
    manager.setCurrentLanguage(u"xx"_s);
    EXPECT_EQ(manager.localizedString(paused), paused);

    const QString table = u"Localizable"_s;
    EXPECT_EQ(manager.localized(paused, u"es"_s, table), spanish);
    EXPECT_EQ(manager.localized(paused, u"es"_s, u"NoSuchTable"_s), paused);
    EXPECT_EQ(manager.localized(paused, u"../es"_s, table), paused);
}

TEST(Language, PlainLookUpsObeyTheChoice)
{
    LocalizedBundle bundle(Bundle::main());
    EXPECT_EQ(bundle.localizedString(u"Paused"_s), u"Paused"_s);
    bundle.forceLanguage(u"ja"_s);
    const QString japanese = bundle.translate("AnyForm", "Paused", nullptr, -1);
    EXPECT_NE(japanese, u"Paused"_s);
    bundle.forceLanguage(u"fr"_s);
    EXPECT_EQ(bundle.localizedString(u"Paused"_s), japanese) << "no such folder: the last choice stays";
}

TEST(Language, ASentenceIsKnownInEveryLanguage)
{
    const TemporaryHome home;
    const QString key = u"Paused"_s;
    const QString japanese = LanguageManager::shared().localized(key, u"ja"_s, u"Localizable"_s);
    EXPECT_TRUE(QNUtility::isLocalisedString(u"x "_s + japanese + u'y', key));
    EXPECT_EQ(QNUtility::viewLogDisplayLanguage(), u"ja"_s);
    EXPECT_FALSE(QNUtility::isLocalisedString(u"nothing of it"_s, key));
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
                                                       u"Localizable"_s);
        };
        QString tip = in("Backup: %@\nCloud Drive: %@");
        const qsizetype slot = tip.lastIndexOf(u"%@"_s);
        tip.replace(slot, 2, in("All files are up to date"));
        EXPECT_TRUE(tip.contains(in("Cloud Drive: All files are up to date"))) << language.id.toStdString();
        EXPECT_NE(in("Cloud Drive: All files are up to date"), in("Cloud Drive: All files are synced"));
        // A full account is told from the beginning of its line.
        EXPECT_TRUE(in("You have exceeded the allocated").startsWith(in("You have exceeded the")))
            << language.id.toStdString();
    }
}
