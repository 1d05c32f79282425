// What becomes of a log's bytes, which tabs it has, and what its links do.

#include "Classes/ACTIVITY_LOGS/LogLinks.h"
#include "Classes/ACTIVITY_LOGS/LogTextReader.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Kind = LogLink::Kind;

namespace
{
const LogTexts::Facts facts{u"Corvane"_s, u"Corvane"_s, u"corvane-daemon"_s,
                            LogTexts::faqAddress(u"https://example.com"_s)};

/// The text as a line, each link as "[its words|kind|target]".
QString marked(const LogText &text)
{
    QString line;
    for (const LogPiece &piece : text.pieces)
        line += piece.link ? u"[%1|%2|%3]"_s.arg(piece.text).arg(int(piece.link->kind)).arg(piece.link->target)
                           : piece.text;
    return line;
}

LogText textOf(const QByteArray &bytes, LogTab tab = LogTab::Details, bool isClipped = false)
{
    return LogTexts::text({bytes, isClipped, u"/logs/a fda.txt"_s, tab}, facts, LogTexts::ownSentences());
}
} // namespace

TEST(LogTextTest, EachSentenceThatOffersSomethingGetsItsLink)
{
    const struct {
        const char *name, *bytes;
        LogTab tab;
        const char *shown;
    } rows[] = {
        {"plain, markup and all", "a <b>b</b> Click here", LogTab::Details, "a <b>b</b> Click here"},
        {"both, twice", "Click here to edit the cut-off time. Click here to view excluded files / folders",
         LogTab::Details,
         "[Click here|2|] to edit the cut-off time. [Click here|1|] to view excluded files / folders"},
        {"a summary with one of them", "x\nClick here to edit the cut-off time.", LogTab::Summary,
         "x\n[Click here|2|] to edit the cut-off time."},
        {"Spanish", "Hora de inicio: 1\nHaga clic aquí para editar la hora límite.", LogTab::Upload,
         "Hora de inicio: 1\n[Haga clic aquí|2|] para editar la hora límite."},
        {"an English sentence in a Japanese log", "ユーザー名\nClick here to edit the cut-off time.",
         LogTab::Details, "ユーザー名\nClick here to edit the cut-off time."},
        {"the page",
         "Full Disk Access. To know more visit https://example.com/online-backup-mac-faq#pre-authorize",
         LogTab::Details,
         "Full Disk Access. [To know more, read "
         "FAQ.|3|https://example.com/online-backup-mac-faq#pre-authorize]"},
        {"another page stays", "Full Disk Access. To know more visit https://else", LogTab::Details,
         "Full Disk Access. To know more visit https://else"},
        {"a permission that is missing",
         "Some files / folders could not be backed up due to missing permissions.\n"
         "To enable access, add Corvane and corvane-daemon under Full Disk Access. To know more visit "
         "https://example.com/online-backup-mac-faq#pre-authorize.\nend",
         LogTab::Summary,
         "Some files / folders could not be backed up due to missing permissions. "
         "[Grant full disk access to Corvane.|4|]\nend"},
        {"only a summary offers it", "Some files / folders could not be backed up due to missing permissions.",
         LogTab::Details, "Some files / folders could not be backed up due to missing permissions."},
        {"no UTF-8", "a\xff", LogTab::Details, " "},
        {"ends of lines, marks and controls",
         "a\r\nb\rc\x01\xe2\x80\xae"
         "d\xef\xbf\xbc",
         LogTab::Details,
         "a\nb\nc\xef\xbf\xbd"
         "d\xef\xbf\xbd"},
        {"nothing", "", LogTab::Details, ""},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(marked(textOf(row.bytes, row.tab)), QString::fromUtf8(row.shown));
    });
    EXPECT_EQ(textOf("Nombre de usuario ユーザー名").language, u"es"_s);
    EXPECT_EQ(textOf("開始時刻").language, u"ja"_s);
    EXPECT_EQ(
        marked(textOf("Click here to edit the cut-off time.", LogTab::Details, true)),
        u"[Click here|2|] to edit the cut-off time.... \n [Log clipped]  [View entire log|0|/logs/a fda.txt]"_s);
    EXPECT_EQ(LogTexts::faqAddress(u"file:///etc"_s), QString());
}

TEST(LogTextTest, EveryLanguageHasItsLinks)
{
    const auto sentences = LogTexts::ownSentences();
    for (const auto &[language, head] :
         {std::pair{u"en"_s, u""_s}, {u"es"_s, u"Hora de inicio"_s}, {u"ja"_s, u"開始時刻"_s}}) {
        const auto inLanguage = [&](const char *key) { return sentences(key, language); };
        const QString summary =
            head + inLanguage("Click here to view excluded files / folders") +
            inLanguage("Click here to edit the cut-off time.") +
            inLanguage("Reason: Missing permission for one or more files / folders in the backup set "
                       "content.");
        std::vector<Kind> kinds;
        for (const LogPiece &piece : textOf(summary.toUtf8(), LogTab::Summary).pieces) {
            if (piece.link)
                kinds.push_back(piece.link->kind);
        }
        EXPECT_EQ(kinds, (std::vector{Kind::Preferences, Kind::Scheduler, Kind::DiskAccess}))
            << qPrintable(language);
        const QString sentence = inLanguage("To know more visit %@").replace(u"%@"_s, facts.faqAddress);
        const auto details = textOf((head + inLanguage("Full Disk Access") + sentence).toUtf8());
        EXPECT_EQ(details.pieces.back().link, (LogLink{Kind::Faq, facts.faqAddress})) << qPrintable(language);
    }
}

TEST(LogTextTest, ARecordHasTheTabsOfItsFilesAndALargeOneItsBeginning)
{
    const TemporaryHome home;
    const QString log = home.path(u"log"_s);
    const auto page = [&](bool isSync) {
        return LogTextReader::page(log, isSync, facts, LogTexts::ownSentences());
    };
    EXPECT_TRUE(page(true).tabs.empty());
    ASSERT_EQ(page(false).tabs.size(), 1U);
    EXPECT_EQ(page(false).tabs[0].text, LogText());
    home.write(log, QByteArray(10'240, 'x'));
    home.write(log + u".summary"_s, "short");
    home.write(log + u".sync-down"_s, QByteArray(10'239, 'x') + "é");
    ASSERT_EQ(::mkfifo(QFile::encodeName(log + u".sync-up"_s).constData(), 0600), 0);
    const LogPage whole = page(false);
    ASSERT_EQ(whole.tabs.size(), 2U);
    EXPECT_EQ(whole.tabs[0].tab, LogTab::Summary);
    EXPECT_EQ(whole.tabs[1].text.plain(), QString(10'240, u'x'));
    const LogPage sync = page(true);
    ASSERT_EQ(sync.tabs.size(), 2U) << "a pipe is a tab without text, and a list that isn't there none";
    EXPECT_EQ(sync.tabs[0].text.plain(), QString());
    EXPECT_EQ(sync.tabs[1].text.plain(), u" "_s) << "a character of two bytes is cut";
    home.write(log, QByteArray(10'241, 'x'));
    EXPECT_EQ(page(false).tabs[1].text.plain(),
              QString(10'240, u'x') + u"... \n [Log clipped]  View entire log"_s);
}

TEST(LogTextTest, OnlyTheLastReadComes)
{
    const TemporaryHome home;
    home.write(u"a"_s, "first");
    home.write(u"b"_s, "second");
    LogTextReader reader(facts, LogTexts::ownSentences());
    QStringList come;
    const auto keep = [&](const LogPage &page) { come.append(page.tabs[0].text.plain()); };
    reader.read(home.path(u"a"_s), false, keep);
    reader.read(home.path(u"b"_s), false, keep);
    ASSERT_TRUE(waitUntil([&] { return !come.isEmpty(); }));
    EXPECT_EQ(come, QStringList{u"second"_s});
}

TEST(LogTextTest, TheKindOfALinkDecidesWhateverItsPathHolds)
{
    struct Program : LogLinkRole {
        void initiateLaunchCorvaneApp(const QString &type) override { told = u"app "_s + type; }
        void presentFullDiskAccessWindow() override { told = u"disk access"_s; }
        void openUrl(const QUrl &address) override { told = u"web "_s + address.toString(); }
        void openPlainText(const QString &path) override { told = u"file "_s + path; }
        QString told;
    } program;
    const auto toldOf = [&](Kind kind, const QString &target = {}) {
        LogLinks::open({kind, target}, program);
        return program.told;
    };
    EXPECT_EQ(toldOf(Kind::EntireLog, u"/fda/scheduler"_s), u"file /fda/scheduler"_s);
    EXPECT_EQ(toldOf(Kind::Preferences), u"app Settings"_s);
    EXPECT_EQ(toldOf(Kind::Scheduler), u"app ViewScheduleJobs"_s);
    EXPECT_EQ(toldOf(Kind::Faq, u"https://a/b#c"_s), u"web https://a/b#c"_s);
    EXPECT_EQ(toldOf(Kind::DiskAccess), u"disk access"_s);
}
