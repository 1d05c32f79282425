// Years of day files through the log store: until the first page stands in a table, beside bare expat over the
// same files and as many rows in the same table; until all of them are in a list, beside bare expat, with the
// longest pause of the main loop meanwhile; and until all records are deleted, beside removing and beside
// replacing as many files. What is compared takes turns.
#include "Benchmarks/LogYears.h"
#include "Classes/ACTIVITY_LOGS/LogManager.h"
#include "Platform/AtomicFile.h"
#include "Utility/Paths/PathTable.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <time.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Runs = 7;

double milliseconds(clockid_t clock)
{
    timespec now = {};
    ::clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// Knows for how long one event has kept the main loop, on the clock and in time of the processor: on a busy
/// machine the two differ.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const double began = milliseconds(CLOCK_MONOTONIC);
        const double worked = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        const bool result = QApplication::notify(receiver, event);
        longest = std::max(longest, milliseconds(CLOCK_MONOTONIC) - began);
        longestWork = std::max(longestWork, milliseconds(CLOCK_THREAD_CPUTIME_ID) - worked);
        return result;
    }

    double longest = 0;
    double longestWork = 0;
};

/// Rows of a list as they are.
class Rows : public QAbstractTableModel
{
public:
    void append(const LogNodes &nodes) { m_nodes.insert(m_nodes.end(), nodes.begin(), nodes.end()); }
    void show()
    {
        beginResetModel();
        endResetModel();
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : int(m_nodes.size());
    }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 5; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        const LogNode &node = *m_nodes[std::size_t(index.row())];
        const QString *const texts[] = {&node.optype, &node.datetime, &node.duration, &node.status,
                                        &node.files};
        return *texts[index.column()];
    }
    [[nodiscard]] const LogNodes &nodes() const { return m_nodes; }

private:
    LogNodes m_nodes;
};

/// A table on the screen, filled and painted at once.
void paint(Rows &rows)
{
    QTableView table;
    table.setModel(&rows);
    table.resize(900, 600);
    rows.show();
    table.show();
    table.grab();
}

class Owner : public LogMaster
{
public:
    void xmlParsed(const std::optional<LogNodes> &list) override
    {
        ++store.currentParseCount;
        if (!list || list->empty())
            return;
        rows.append(*list);
        if (store.isParsed)
            store.mLogData.insert(list->front()->dayKey, *list);
    }
    void readEnded(LogReadEnd) override { isDone = true; }
    [[nodiscard]] bool isDeleteFromWeb() const override { return false; }
    void setDeleteFromWeb(bool) override {}

    void wait()
    {
        while (!std::exchange(isDone, false))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    SystemClock clock;
    Rows rows;
    LogManager store{*this, clock};
    bool isDone = false;
};

QString fileName(int back, const char *ending)
{
    return LogYears::Today.addDays(-back).toString(u"MM-dd-yyyy") + QString::fromLatin1(ending) + u".xml"_s;
}

/// The files of the last days, newest first.
QStringList filesOf(int days, const QString &folder)
{
    QStringList files;
    for (int back = 0; back < days; ++back) {
        for (const char *ending : LogYears::Endings)
            files.append(folder + u'/' + fileName(back, ending));
    }
    return files;
}

void writeYears(const QString &folder)
{
    static const std::vector<QByteArray> contents = [] {
        std::vector<QByteArray> made;
        const QString logs = pathValue("SessionLogsNewFolderPath"_L1, {}) + u"/Backup"_s;
        for (int back = 0; back < LogYears::Days; ++back) {
            for (const char *ending : LogYears::Endings)
                made.push_back(
                    LogYears::dayFile(LogYears::Today.addDays(-back), ending, LogYears::RecordsAFile, logs));
        }
        return made;
    }();
    QDir().mkpath(folder);
    std::size_t at = 0;
    for (const QString &path : filesOf(LogYears::Days, folder)) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(contents[at++]) < 0)
            qFatal("no room for the files");
    }
}

/// Reads the files and parses them with the bare parser.
qint64 bareExpat(const QStringList &files)
{
    qint64 seen = 0;
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("a file is missing");
        if (!LogYears::parseWithBareExpat(file.readAll(), seen))
            qFatal("a file is damaged");
    }
    return seen;
}

/// Times of several runs, in milliseconds.
class Times
{
public:
    template<class Work>
    void measure(Work work)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        work();
        add(double(elapsed.nsecsElapsed()) / 1e6);
    }
    void add(double ms) { m_runs.push_back(ms); }
    [[nodiscard]] double median()
    {
        std::sort(m_runs.begin(), m_runs.end());
        return m_runs[m_runs.size() / 2];
    }
    [[nodiscard]] double longest() const { return *std::max_element(m_runs.begin(), m_runs.end()); }

private:
    std::vector<double> m_runs;
};

void firstPage(const QString &folder)
{
    Times ours, bare;
    for (int run = 0; run < Runs; ++run) {
        Owner owner;
        ours.measure([&] {
            owner.store.fetchAllLogs();
            owner.wait();
            paint(owner.rows);
        });
        Rows rows;
        rows.append(owner.rows.nodes());
        bare.measure([&] {
            bareExpat(filesOf(LogManager::logsPerPage, folder));
            paint(rows);
        });
    }
    std::printf("first page of %d days  %8.1f ms, bare expat and the same table %.1f ms: %.2f times\n",
                LogYears::Days, ours.median(), bare.median(), ours.median() / bare.median());
}

void allFiles(const QString &folder, Application &app)
{
    Times ours, bare, pauses, work;
    std::size_t records = 0;
    for (int run = 0; run < Runs; ++run) {
        Owner owner;
        ours.measure([&] {
            app.longest = app.longestWork = 0;
            owner.store.fetchAndDeleteAllLogs();
            owner.wait();
            pauses.add(app.longest);
            work.add(app.longestWork);
        });
        records = owner.rows.nodes().size();
        bare.measure([&] { bareExpat(filesOf(LogYears::Days, folder)); });
    }
    std::printf("all %d files           %8.1f ms, bare expat %.1f ms: %.2f times\n", 3 * LogYears::Days,
                ours.median(), bare.median(), ours.median() / bare.median());
    std::printf(
        "  %zu records; longest pause of the main loop: median %.1f ms, worst %.1f ms; of its own work: "
        "median %.1f ms, worst %.1f ms\n",
        records, pauses.median(), pauses.longest(), work.median(), work.longest());
}

void deleteAll(const QString &folder)
{
    Times ours, calls, removing, replacing;
    const QStringList files = filesOf(LogYears::Days, folder);
    for (int run = 0; run < 3; ++run) {
        Owner owner;
        owner.store.fetchAndDeleteAllLogs();
        owner.wait();
        ours.measure([&] {
            calls.measure([&] {
                owner.store.deleteNodes(owner.rows.nodes(), [&](const LogNodes &kept) {
                    if (!kept.empty())
                        qFatal("records are left");
                    owner.isDone = true;
                });
            });
            owner.wait();
        });
        if (!QDir(folder).isEmpty())
            qFatal("files are left");
        writeYears(folder);
        replacing.measure([&] {
            for (const QString &file : files) {
                if (!AtomicFile::write(file, "<records>\n</records>\n"_ba))
                    qFatal("a file can't be written");
            }
        });
        removing.measure([&] {
            for (const QString &file : files) {
                if (!AtomicFile::remove(file))
                    qFatal("a file can't be removed");
            }
        });
        writeYears(folder);
    }
    std::printf(
        "delete all records     %8.1f ms, of which the call %.1f ms; removing the files %.1f ms: %.2f times; "
        "replacing them %.1f ms: %.2f times\n",
        ours.median(), calls.median(), removing.median(), ours.median() / removing.median(), replacing.median(),
        ours.median() / replacing.median());
}
} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    qputenv("HOME", QFile::encodeName(home.path()));
    Application app(argc, argv);
    const QString folder = pathValue("LogsDumpPath"_L1, {});
    writeYears(folder);
    firstPage(folder);
    allFiles(folder, app);
    deleteAll(folder);
    return 0;
}
