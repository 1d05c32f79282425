#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
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
class Language : public testing::Test
{
protected:
    TemporaryHome home;
    QString file = home.path(u"preferences.plist"_s);
    UserDefaults defaults{file};
    LanguageManager manager{Bundle::main(), defaults};
};
} // namespace

TEST_F(Language, OfTheFirstStart)
{
    const QVariantMap older{{u"logsFrom"_s, 7LL}};
    const std::tuple<const char *, std::optional<QVariantMap>, QString, QString> rows[] = {
        {"first run, spoken", std::nullopt, u"es"_s, u"es"_s},
        {"first run, not spoken", std::nullopt, u"fr"_s, u"en"_s},
        {"preferences without a language", QVariantMap{{u"onlyonce"_s, true}}, u"ja"_s, u"ja"_s},
        {"an older installation", older, u"ja"_s, u"en"_s},
        {"stored", languages(QVariantList{u"ja"_s}), u"es"_s, u"ja"_s},
        {"stored, not spoken", languages(QVariantList{u"de"_s}), u"es"_s, u"en"_s},
        {"empty list", languages(QVariantList()), u"ja"_s, u"en"_s},
        {"list of numbers", languages(QVariantList{1LL}), u"ja"_s, u"en"_s},
        {"no list", languages(u"ja"_s), u"ja"_s, u"en"_s},
    };
    for (const auto &[name, stored, system, expected] : rows)
        EXPECT_EQ(initialLanguage(stored, system), expected) << name;
}

TEST_F(Language, TheSystemsLanguageComesFromTheGlobalDomainFirst)
{
    home.writeList(QNUtility::globalPreferencesPath(), languages(QVariantList{u"pt-BR"_s, u"es"_s}));
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguage(), u"pt-BR"_s);
    EXPECT_EQ(SystemLanguageHelper::getSystemPrimaryLanguageCode(), u"pt"_s);
    for (const auto &[tag, code] : {std::pair{u"es-419"_s, u"es"_s}, {u"ja"_s, u"ja"_s}, {u"-US"_s, u"en"_s}})
        EXPECT_EQ(SystemLanguageHelper::languageCode(tag), code);
}

TEST_F(Language, IsStoredAmongWhatOtherProgramsKeep)
{
    home.writeList(file, QVariantMap{{u"logsFrom"_s, 7LL}});
    EXPECT_EQ(manager.currentLanguage(), u"en"_s);
    home.writeList(file, QVariantMap{{u"logsFrom"_s, 30LL}}); // another program writes meanwhile
    manager.updateLanguage(u"ES"_s);
    EXPECT_EQ(manager.currentLanguage(), u"es"_s);
    EXPECT_EQ(manager.supportedLanguage(), SupportedLanguage::es);
    EXPECT_EQ(PropertyList::readDictionary(file),
              (QVariantMap{{u"logsFrom"_s, 30LL}, {u"AppleLanguages"_s, QVariantList{u"es"_s}}}));
    manager.updateLanguage(u"de"_s);
    EXPECT_EQ(manager.currentLanguage(), u"es"_s) << "nobody speaks it here";
    manager.setCurrentLanguage(u"DE"_s);
    EXPECT_EQ(manager.currentLanguage(), u"de"_s);
    EXPECT_EQ(manager.supportedLanguage(), std::nullopt);
    EXPECT_EQ(manager.getPersistedAppLanguage(), u"en"_s);
}

TEST_F(Language, ADamagedPreferencesFileIsNotLost)
{
    home.write(file, "bplist00 cut");
    manager.setCurrentLanguage(u"ja"_s);
    manager.loadCurrentLanguage();
    EXPECT_EQ(manager.currentLanguage(), u"ja"_s) << "for this process it stands";
    EXPECT_FALSE(manager.save());
    EXPECT_EQ(home.read(file), "bplist00 cut");
    // What another program has chosen since then is newer.
    home.writeList(file, languages(QVariantList{u"es"_s}));
    EXPECT_TRUE(manager.save());
    manager.loadCurrentLanguage();
    EXPECT_EQ(manager.currentLanguage(), u"es"_s);
}

TEST_F(Language, IsStoredInAHomeWithoutTheFolder)
{
    UserDefaults own(QNUtility::preferencesPlistPath());
    LanguageManager(Bundle::main(), own).updateLanguage(u"es"_s);
    EXPECT_EQ(PropertyList::readDictionary(QNUtility::preferencesPlistPath()),
              languages(QVariantList{u"es"_s}));

    home.write(u"Other"_s, "in the way");
    UserDefaults unwritable(home.path(u"Other/p.plist"_s));
    LanguageManager other(Bundle::main(), unwritable);
    other.updateLanguage(u"ja"_s);
    EXPECT_EQ(other.currentLanguage(), u"ja"_s) << "for this process it stands";
    EXPECT_TRUE(home.read(standardizedPath(pathValue("MonitorTraceFilePath"_L1)))
                    .contains("Other/p.plist could not be written: Not a directory"));
}

TEST_F(Language, SentencesAreTheirOwnKeys)
{
    const QString paused = u"Paused"_s, table = u"Localizable"_s;
    EXPECT_EQ(manager.localizedString(paused), paused);
    manager.setCurrentLanguage(u"es"_s);
    const QString spanish = manager.localizedString(paused);
    EXPECT_NE(spanish, paused);
    EXPECT_EQ(manager.localizedString(u"no such sentence"_s), u"no such sentence"_s);
    manager.setCurrentLanguage(u"xx"_s);
    EXPECT_EQ(manager.localizedString(paused), paused);
    EXPECT_EQ(manager.localized(paused, u"es"_s, table), spanish);
    EXPECT_EQ(manager.localized(paused, u"es"_s, u"NoSuchTable"_s), paused);
    EXPECT_EQ(manager.localized(paused, u"../es"_s, table), paused);
}

TEST_F(Language, ASentenceIsKnownInEveryLanguage)
{
    const QString key = u"Paused"_s;
    const QString japanese = LanguageManager::shared().localized(key, u"ja"_s, u"Localizable"_s);
    EXPECT_TRUE(QNUtility::isLocalisedString(u"x "_s + japanese + u'y', key));
    EXPECT_EQ(QNUtility::viewLogDisplayLanguage(), u"ja"_s);
    for (const QString &text : {u"nothing of it"_s, QString()})
        EXPECT_FALSE(QNUtility::isLocalisedString(text, key));
    EXPECT_FALSE(QNUtility::isLocalisedString(key, std::nullopt));
}
