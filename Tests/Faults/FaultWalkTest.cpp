// Every writer of the program, with each of its calls failing in turn, from the first to the last: whatever the
// fault, each file is afterwards as it was before, or as it should have become.

#include "Classes/Progress/ThrottleStore.h"
#include "Platform/SingleInstance.h"
#include "Source/Logger/TraceFile.h"
#include "Tests/Controller/MonitorFixture.h"
#include "Tests/Faults/FaultLibrary.h"
#include "Tests/Support/ChildProgram.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/LoginItemRegistry.h"

#include <QCoreApplication>
#include <QDirIterator>

#include <cerrno>
#include <map>

using namespace Qt::StringLiterals;

namespace
{
using Files = std::map<QString, QByteArray>;
constexpr int MostCalls = 300;
constexpr char WriterVariable[] = "CORVANE_FAULT_WRITER";
constexpr char NumberVariable[] = "CORVANE_FAULT_NUMBER";
const QString Leftover = u".corvane-new-"_s;

/// A monitor at work, opened up for the walk.
class World : public MonitorFixture
{
public:
    World()
    {
        home.write(path("DeamonPreferencePath"), Throttle);
        // Where no day was ever recorded a thread of its own would write, too, and the calls be counted
        // together.
        home.write(path("LogsDumpPath") + u"/01-01-2020.xml"_s, "<records/>");
    }
    void TestBody() override {}

    using MonitorFixture::controller;
    using MonitorFixture::home;
    using MonitorFixture::start;
    void agree() { answer = 1; }
    [[nodiscard]] QString preferences() const { return home.path(u"Library/Preferences/p.plist"_s); }

    static constexpr char Throttle[] =
        "<plist><dict><key>mona</key><dict><key>Rate</key><string>1</string></dict></dict></plist>";
};

struct Writer {
    const char *name;
    std::function<void(World &)> prepare;
    std::function<void(World &)> act;
};

void writeLanguage(World &world)
{
    UserDefaults defaults(world.preferences());
    LanguageManager(Bundle::main(), defaults).updateLanguage(u"es"_s);
}

void nothing(World &)
{
}

const std::vector<Writer> &writers()
{
    const auto aFile = [](World &world) {
        EXPECT_TRUE(AtomicFile::write(world.home.path(u"big"_s), QByteArray(20'000, 'o')));
    };
    const auto syncs = [](World &world) {
        world.home.writeList(path("LoggedSyncDetailsUserPath"),
                             QVariantMap{{u"Pause"_s, u"0"_s}, {u"Re-initialize"_s, u"0"_s}});
        world.controller.sync().enableCorvaneSync();
    };
    static const std::vector<Writer> all{
        {"a file of several pages", aFile,
         [](World &world) {
             std::ignore = AtomicFile::write(world.home.path(u"big"_s), QByteArray(40'000, 'n'));
         }},
        {"a file in folders that are missing", nothing,
         [](World &world) { std::ignore = AtomicFile::write(world.home.path(u"a/b/c"_s), "new"); }},
        {"the switch file", nothing, [](World &world) { world.controller.disableScheduleSubMenu(); }},
        {"a stopped job", [](World &world) { world.agree(); },
         [](World &world) { world.controller.jobReports().stopBtnSubMenuActn(); }},
        {"the sync line", syncs,
         [](World &world) { world.controller.board().setStatusMenuToolTip(std::nullopt, u"Uploading"_s); }},
        {"the marker of a cancelled account", syncs,
         [](World &world) {
             world.controller.board().setStatusMenuToolTip(u"x"_s, u"The account has been cancelled"_s);
         }},
        {"a language among other preferences",
         [](World &world) {
             world.home.writeList(world.preferences(), QVariantMap{{u"logsFrom"_s, 7LL}});
         },
         writeLanguage},
        {"the first language", nothing, writeLanguage},
        {"the throttle", nothing,
         [](World &) {
             ThrottleStore::savePlistData(SettingCategory::ThrottleSettings, User, {{u"Rate"_s, u"2"_s}});
         }},
        {"a login item", nothing,
         [](World &) { LoginItemRegistry::addLoginItemWithPath(u"/bin/sh"_s, LoginItemRegistry::HideIt::No); }},
        {"a login item that goes",
         [](World &) { LoginItemRegistry::addLoginItemWithPath(u"/bin/sh"_s, LoginItemRegistry::HideIt::No); },
         [](World &) { LoginItemRegistry::removeLoginItemWithPath(u"/bin/sh"_s); }},
        {"a launch request", [](World &world) { world.home.write(path("MonitorLaunchPath"), "x"); },
         [](World &world) { world.controller.applicationWasActivated(); }},
        {"a trace that is too long",
         [](World &world) { world.home.write(u"long.log"_s, QByteArray(512'001, 'x')); },
         [](World &world) { TraceFile::clearLogs(world.home.path(u"long.log"_s)); }},
        {"the lock of the one monitor", nothing,
         [](World &world) {
             std::ignore = SingleInstance(world.home.path(u"deep/lock"_s)).claim(std::chrono::milliseconds(0));
         }},
    };
    return all;
}

/// All files of a home but the traces, which are only added to; `leftovers` receives the names of what a write
/// left behind.
Files filesOf(const QString &home, QStringList &leftovers)
{
    Files files;
    const auto filters = QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot;
    QDirIterator all(home, filters, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString file = all.next();
        if (all.fileName().contains(Leftover))
            leftovers.append(file);
        else if (!file.contains(u"/Logs/"_s))
            files[QDir(home).relativeFilePath(file)] =
                AtomicFile::read(file, 1 << 20).value_or(QByteArray("unreadable"));
    }
    // Another port in each world; and the path of the process's own preferences is that of its first world.
    files.erase(u".local/share/Corvane/TCPPort.plist"_s);
    files.erase(u"Library/Preferences/com.halvernet.Corvane.plist"_s);
    return files;
}

/// Each file has to be as in `before` or as in `after`.
void expectOldOrNew(const Files &found, const Files &before, const Files &after)
{
    const auto in = [](const Files &files, const QString &name) {
        const auto at = files.find(name);
        return at == files.end() ? std::nullopt : std::optional(at->second);
    };
    Files names = before;
    names.insert(after.begin(), after.end());
    names.insert(found.begin(), found.end());
    for (const auto &[name, bytes] : names) {
        const auto now = in(found, name);
        EXPECT_TRUE(now == in(before, name) || now == in(after, name))
            << name.toStdString() << ": " << (now ? now->left(200).toStdString() : "gone");
    }
}

/// One world: what was there before, what is there after, and how many calls that took.
struct Walk {
    Files before;
    Files after;
    QStringList leftovers;
    int calls = 0;
};

Walk walk(const Writer &writer, int number, int error)
{
    Walk done;
    World world;
    world.start();
    writer.prepare(world);
    const QString home = world.home.path(QString());
    done.before = filesOf(home, done.leftovers);
    faultsArm(qPrintable(QDir::cleanPath(home)), number, error);
    writer.act(world);
    done.calls = faultsDisarm();
    done.after = filesOf(home, done.leftovers);
    return done;
}

/// Walks in another process, whose `number`th call ends it. False when it came to the end.
bool walkAndDie(int writer, int number, const QString &temporary)
{
    qputenv(WriterVariable, QByteArray::number(writer));
    qputenv(NumberVariable, QByteArray::number(number));
    qputenv("TMPDIR", temporary.toLocal8Bit());
    ChildProgram child;
    EXPECT_TRUE(child.start(QCoreApplication::applicationFilePath(),
                            {u"--gtest_filter=FaultWalk.InAProcessThatEnds"_s}));
    QByteArray printed;
    for (QByteArray part; !(part = child.read(60'000)).isEmpty();)
        printed += part;
    child.finish();
    for (const char *variable : {WriterVariable, NumberVariable, "TMPDIR"})
        qunsetenv(variable);
    return !printed.contains("came to the end");
}
} // namespace

TEST(FaultWalk, StandsBeforeEveryCall)
{
    const TemporaryHome home;
    for (const auto &[what, calls] : {std::pair("a new file", 6), std::pair("one with a mode to be kept", 7)}) {
        faultsArm(qPrintable(QDir::cleanPath(home.path(QString()))), 0, 0);
        ASSERT_TRUE(AtomicFile::write(home.path(u"plain"_s), "bytes"));
        // The folder, the file, its bytes, two flushes, the rename; and a look for leftovers of others.
        EXPECT_EQ(faultsDisarm(), calls + 1) << what;
    }
}

TEST(FaultWalk, AnErrorOfAnyCallLosesNothing)
{
    for (const Writer &writer : writers()) {
        const Walk whole = walk(writer, 0, 0);
        EXPECT_TRUE(whole.before != whole.after) << writer.name << " writes nothing";
        for (const int error : {ENOSPC, EIO}) {
            for (int number = 1; number <= MostCalls; ++number) {
                SCOPED_TRACE(std::string(writer.name) + ", call " + std::to_string(number) + ": " +
                             std::strerror(error));
                const Walk broken = walk(writer, number, error);
                expectOldOrNew(broken.after, whole.before, whole.after);
                EXPECT_EQ(broken.leftovers, QStringList());
                ASSERT_LT(number, MostCalls);
                if (broken.calls < number)
                    break;
            }
        }
    }
}

TEST(FaultWalk, TheEndOfTheProcessInAnyCallLosesNothing)
{
    for (std::size_t index = 0; index < writers().size(); ++index) {
        const Writer &writer = writers()[index];
        const Walk whole = walk(writer, 0, 0);
        for (int number = 1; number <= MostCalls; ++number) {
            SCOPED_TRACE(std::string(writer.name) + ", ended in call " + std::to_string(number));
            const QTemporaryDir temporary;
            if (!walkAndDie(int(index), number, temporary.path()))
                break;
            QDirIterator homes(temporary.path(), {u".local"_s}, QDir::Dirs | QDir::Hidden,
                               QDirIterator::Subdirectories);
            ASSERT_TRUE(homes.hasNext());
            QStringList leftovers;
            expectOldOrNew(filesOf(QFileInfo(homes.next()).path(), leftovers), whole.before, whole.after);
            ASSERT_LE(leftovers.size(), 1);
            if (leftovers.isEmpty())
                continue;
            // The next write of that file takes it away.
            const QFileInfo leftover(leftovers.first());
            const QString name = leftover.fileName().section(Leftover, 0, 0).sliced(1);
            ASSERT_TRUE(AtomicFile::write(leftover.path() + u'/' + name, "next"));
            EXPECT_FALSE(QFileInfo::exists(leftovers.first()));
        }
    }
}

TEST(FaultWalk, InAProcessThatEnds)
{
    if (!qEnvironmentVariableIsSet(WriterVariable))
        GTEST_SKIP() << "only as another test asks for it";
    const Writer &writer = writers().at(std::size_t(qEnvironmentVariableIntValue(WriterVariable)));
    walk(writer, qEnvironmentVariableIntValue(NumberVariable), FaultEndsProcess);
    std::puts("came to the end");
}
