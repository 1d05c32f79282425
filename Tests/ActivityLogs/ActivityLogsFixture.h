#pragma once

#include "Classes/ACTIVITY_LOGS/ActivityLogsView.h"
#include "Classes/ACTIVITY_LOGS/CVActivityLogsWindowController.h"
#include "Platform/UserDefaults.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

/// A program around the viewer that answers as it is told, and remembers what it was asked.
class FakeLogsRole : public ActivityLogsRole
{
public:
    [[nodiscard]] std::optional<QString> lastLoggedInUser() const override { return user; }
    bool ask(const LogQuestion &question) override
    {
        questions.append(question.text);
        if (whileAsking)
            whileAsking();
        return answer;
    }
    void inProgressLogsWereRemoved() override { done.append(QStringLiteral("in progress")); }
    void initiateLaunchCorvaneApp(const QString &view) override { done.append(view); }
    void presentFullDiskAccessWindow() override { done.append(QStringLiteral("disk access")); }
    void openUrl(const QUrl &address) override { done.append(address.toString()); }
    void openPlainText(const QString &path) override { done.append(path); }

    QString user = QStringLiteral("ana");
    bool answer = true;
    std::function<void()> whileAsking;
    QStringList questions;
    QStringList done;
};

/// The window over a home with day files.
class ActivityLogsFixture : public testing::Test
{
protected:
    ActivityLogsFixture() { controller().mainController = &role; }

    static QString dayKey(QDate day) { return day.toString(QStringLiteral("MM-dd-yyyy")); }
    [[nodiscard]] QDate today() const { return clock.now().date(); }

    static QByteArray record(const QByteArray &datetime, const QByteArray &status = "Success",
                             const QByteArray &optype = "1", const QByteArray &user = "ana",
                             const QByteArray &logfile = {})
    {
        return "<record><datetime>" + datetime + "</datetime><uname>" + user +
               "</uname><files>12</files><status>" + status + "</status><duration>00:01:00</duration><optype>" +
               optype + "</optype><logfile>" + logfile + "</logfile></record>";
    }
    /// A day's file with these records, in file order.
    void day(QDate date, const QByteArray &records) const
    {
        home.write(pathValue(QLatin1StringView("LogsDumpPath"), {}) + u'/' + dayKey(date) +
                       QStringLiteral(".xml"),
                   "<records>" + records + "</records>");
    }
    /// As many days before today, each with as many records, the later ones of a day last.
    void days(int count, int records) const
    {
        for (int back = 0; back < count; ++back) {
            const QDate date = today().addDays(-back);
            QByteArray all;
            for (int i = 0; i < records; ++i)
                all += record(dayKey(date).toLatin1() + " 10:" + QByteArray::number(i).rightJustified(2, '0') +
                              ":00");
            day(date, all);
        }
    }
    [[nodiscard]] QByteArray file(QDate date) const
    {
        return home.read(pathValue(QLatin1StringView("LogsDumpPath"), {}) + u'/' + dayKey(date) +
                         QStringLiteral(".xml"));
    }

    CVActivityLogsViewController &controller() { return window.viewController(); }
    ActivityLogsView &view()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<ActivityLogsView *>(widget))
                return *found;
        }
        throw std::logic_error("there is no window");
    }
    LogTableView &table() { return view().table(); }
    template<class Widget>
    Widget &outlet(const char *name)
    {
        return *view().findChild<Widget *>(QLatin1StringView(name));
    }

    /// The read that is under way has come to its end.
    [[nodiscard]] bool settle()
    {
        return waitUntil([this] { return !controller().isReading(); });
    }
    void open()
    {
        controller().viewDidLoad();
        window.showWindow();
        view().activateWindow();
        ASSERT_TRUE(settle());
    }
    void choose(int tag)
    {
        auto &periods = outlet<QComboBox>("periodPopUp");
        periods.setCurrentIndex(periods.findData(tag));
        Q_EMIT periods.activated(periods.currentIndex());
        ASSERT_TRUE(settle());
    }
    QStringList column(LogColumn which)
    {
        QStringList texts;
        for (int row = 0; row < view().model().rowCount(); ++row)
            texts.append(view().model().text(row, which));
        return texts;
    }
    void select(const std::vector<int> &rows) { table().selectRows(rows, rows.empty() ? -1 : rows.back()); }

    TemporaryHome home;
    ManualClock clock{QDateTime(QDate(2026, 3, 31), QTime(12, 0))};
    UserDefaults defaults{home.path(QStringLiteral("defaults.plist"))};
    FakeLogsRole role;
    QString chosenFolder;
    CVActivityLogsWindowController window{
        {.view = {.clock = clock,
                  .defaults = defaults,
                  .publicWebHost = QStringLiteral("https://web.example"),
                  .chooseFolder = [this](QWidget *, const QString &,
                                         const auto &chosen) { chosen(chosenFolder); }},
         .isDark = [] { return false; }}};
};
