// One refresh of the status menu, from plain inputs to the items: the rules alone, and with their answer
// applied to a menu that changes at every opening or stays as it is. And the whole refresh as an opening does
// it, with its files, on a machine with many accounts, jobs and processes.

#include "Platform/Home.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
MenuRules::MenuInputs busyState(bool jobRuns)
{
    MenuRules::MenuInputs in;
    in.appFullName = u"Corvane"_s;
    in.recordPresent = in.engineUser = in.operationRuns = true;
    in.scheduleBackupRunning = jobRuns;
    in.dedup = u"on"_s;
    in.accountType = u"false"_s;
    in.remote = {.hasUser = true, .mobileOnly = false, .word = u"1"_s};
    in.protectionWord = u"1"_s;
    in.switchText = jobRuns ? u"1"_s : u"0"_s;
    in.runningJob = jobRuns ? MenuRules::RunningJob::Backup : MenuRules::RunningJob::None;
    in.backupLine = jobRuns ? u"Scheduled Backup is in progress."_s : QString();
    in.cloudDrive = {.enabled = true,
                     .paused = !jobRuns,
                     .statusLine = u"Uploading a_rather_long_name.txt (3 of 120)\nmore"_s};
    return in;
}

void refresh(StatusMenu &menu, const MenuRules::MenuInputs &in)
{
    menu.apply(MenuRules::needsUpdate(in.appFullName, in.switchText));
    menu.apply(MenuRules::atOpening(in).items);
}

void rulesAlone(benchmark::State &state)
{
    const auto in = busyState(true);
    for (auto _ : state) {
        benchmark::DoNotOptimize(MenuRules::needsUpdate(in.appFullName, in.switchText));
        benchmark::DoNotOptimize(MenuRules::atOpening(in));
    }
}

void refreshOfAnUnchangedMenu(benchmark::State &state)
{
    StatusMenu menu([](MenuAction) {});
    const auto in = busyState(true);
    for (auto _ : state)
        refresh(menu, in);
}

void refreshOfAChangedMenu(benchmark::State &state)
{
    StatusMenu menu([](MenuAction) {});
    const MenuRules::MenuInputs states[] = {busyState(true), busyState(false)};
    std::size_t turn = 0;
    for (auto _ : state)
        refresh(menu, states[turn++ % 2]);
}

/// Processes of this user that only stand in the process list.
class IdleProcesses
{
public:
    explicit IdleProcesses(int count)
    {
        for (int i = 0; i < count; ++i) {
            const pid_t child = ::fork();
            if (child == 0) {
                ::pause();
                ::_exit(0);
            }
            m_children.push_back(child);
        }
    }
    ~IdleProcesses()
    {
        for (const pid_t child : m_children) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
        }
    }

private:
    std::vector<pid_t> m_children;
};

void writeBusyMachine(const TemporaryHome &home)
{
    const auto file = [](const char *key, const QString &user) {
        return pathValue(QLatin1StringView(key), {user});
    };
    QVariantMap running;
    ArchiveMaker maker;
    QList<PropertyListUid> records;
    for (int account = 0; account < 50; ++account) {
        const QString user = u"user%1@example.org"_s.arg(account);
        home.writeList(file("UserDetailsPath", user), QVariantMap{{u"tqlsrvrport"_s, u"443"_s}});
        home.write(file("AccountTypeFilePath", user), "false");
        running.insert(user, QVariantList{QVariantMap{{u"operationStartType"_s, 1}}});
        for (int job = 0; job < 4; ++job) {
            records.append(maker.record({{u"corvaneUserName"_s, user},
                                         {u"profileName"_s, *consoleUser()},
                                         {u"username"_s, user + u": "_s + *consoleUser()},
                                         {u"frequency"_s, 2},
                                         {u"status"_s, 0}}));
        }
    }
    home.write(file("SchedulerSettingsFile", {}), maker.schedules(records));
    home.writeList(file("CurrentJobs", {}), running);
    home.write(file("SchedulerStatusInfoPath", {}), "1");
    home.writeList(file("LastUserLoginDetailsFilePath", {}),
                   QVariantMap{{u"Username"_s, u"user0@example.org"_s}, {u"dedup"_s, u"on"_s}});
}

void wholeRefresh(benchmark::State &state)
{
    const TemporaryHome home;
    writeBusyMachine(home);
    const IdleProcesses processes(400);
    SystemClock clock;
    RecordingStatusItem item;
    DistributedNotificationCenter notifications;
    CorvaneMonitorController controller({.statusItem = item, .clock = clock, .notifications = notifications});
    controller.awakeFromNib();
    for (auto _ : state)
        controller.menuWillOpen();
}

BENCHMARK(wholeRefresh)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly();
BENCHMARK(rulesAlone);
BENCHMARK(refreshOfAnUnchangedMenu);
BENCHMARK(refreshOfAChangedMenu);
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
