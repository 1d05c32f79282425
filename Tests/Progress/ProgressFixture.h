#pragma once

#include "Classes/Progress/CVScheduleProgressViewController.h"
#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Platform/Home.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// The program around the progress view: keeps what it is asked for, one line a call.
class FakeProgressRole : public ProgressRole, public SchedulerRole
{
public:
    FakeProgressRole() { schedules.mainController = this; }

    void showScheduledJobPaused() override { calls.append(u"paused, switch "_s + switchWord()); }
    void showScheduledJobResumed() override { calls.append(u"resumed, switch "_s + switchWord()); }
    void scheduledJobHasEnded() override { calls.append(u"ended"_s); }
    bool isScheduledBackupPaused() const override { return pauseMarker; }
    void sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &,
                                          ECoreOperationActionType action) override
    {
        calls.append(u"core operation %1"_s.arg(int(action)));
    }
    void sendData(const QVariantMap &message, qint64 tag) override
    {
        calls.append(QString::fromUtf8(QJsonDocument::fromVariant(message).toJson(QJsonDocument::Compact)) +
                     u" tag %1"_s.arg(tag));
    }
    CorvaneSchedulerController &scheduler() override { return schedules; }
    std::optional<QString> lastLoggedInUser() const override { return u"mona"_s; }
    std::optional<QString> consoleUser() const override { return u"console"_s; }
    bool isMonitorLaunched() const override { return launched; }
    void setMonitorLaunched(bool value) override { launched = value; }
    bool isTQL() const override { return false; }
    std::optional<QString> schedulerSettingsFile() const override
    {
        return pathValue(QLatin1StringView("SchedulerSettingsFile"), {});
    }
    QDateTime now() const override { return QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7)); }

    static QString switchWord()
    {
        QFile file(pathValue(QLatin1StringView("SchedulerStatusInfoPath"), {}));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    CorvaneSchedulerController schedules;
    bool launched = false;
    bool pauseMarker = false;
    QStringList calls;
};

/// A signed-in account, its scheduled job, and the view of it without a window.
class ProgressFixture : public testing::Test
{
protected:
    ProgressFixture()
    {
        view.mainController = &role;
        CVSingletonForBackup::shared().scheduleBackupRunning = false;
        QNUtility::userType = EUserType::Other;
        setUserRecord({{u"Username"_s, u"mona"_s}, {u"dedup"_s, u"on"_s}});
    }

    void setUserRecord(const QVariantMap &record)
    {
        home.writeList(pathOf("LastUserLoginDetailsFilePath"), record);
    }

    static QString pathOf(const char *key) { return pathValue(QLatin1StringView(key), {u"mona"_s}); }

    void setRunningJob(int backupType, const QString &username = u"mona: console"_s)
    {
        ArchiveMaker maker;
        home.write(pathOf("SchedulerSettingsFile"),
                   maker.schedules({maker.record({{u"corvaneUserName"_s, u"mona"_s},
                                                  {u"username"_s, username},
                                                  {u"backupType"_s, backupType},
                                                  {u"status"_s, 1}})}));
    }

    /// A report of mona's; `rest` are further members of the message.
    void report(int type, const QByteArray &rest = {})
    {
        raw(R"({"type":"operationProgress","userName":"mona","progressType":)" + QByteArray::number(type) +
            rest + "}");
    }
    void figures(const QByteArray &members, const QByteArray &rest = R"(,"operationType":0)")
    {
        report(1, rest + R"(,"operationData":{"showPercentage":1,"progressData":{)" + members + "}}");
    }
    void start(const QByteArray &data = R"("showPercentage":1)", int operationType = 0)
    {
        report(0, R"(,"operationType":)" + QByteArray::number(operationType) + R"(,"operationData":{)" + data +
                      "}");
    }
    void raw(const QByteArray &payload)
    {
        QString reason;
        const auto message = reader.read(payload, &reason);
        ASSERT_TRUE(message) << qUtf8Printable(reason);
        target().progressReceivedData(*message);
    }
    /// Who takes the reports.
    virtual CVScheduleProgressViewController &target() { return view; }

    [[nodiscard]] const ProgressDisplay &shown() { return view.display(); }
    /// What the eye sees first: the title or what is prepared, the percent, and which groups and buttons are
    /// there.
    [[nodiscard]] QString seen()
    {
        const ProgressDisplay &now = shown();
        const bool prepares = now.pane == ProgressDisplay::Pane::Preparing;
        const std::pair<bool, QString> parts[] = {{true, prepares ? now.preparingText : now.titleEmailLabel},
                                                  {now.scProgressText.isShown, now.scProgressText.text},
                                                  {now.scFileCountViewIsShown, u"counts"_s},
                                                  {now.backupInfoBgViewIsShown, u"info"_s},
                                                  {now.bandwidthBgViewIsShown, u"bandwidth"_s},
                                                  {now.scPauseButtonIsShown, u"pause"_s},
                                                  {now.isPaused, u"paused"_s}};
        QStringList words;
        for (const auto &[isSeen, word] : parts)
            if (isSeen)
                words.append(word);
        return words.join(u" | "_s);
    }

    TemporaryHome home;
    FakeProgressRole role;
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    DaemonMessageReader reader;
    /// What the user is asked, and answers.
    QStringList questions;
    std::function<bool()> answer = [] { return false; };
    const CVScheduleProgressViewController::Surroundings surroundings{
        .clock = clock, .confirm = [this](const QString &question) {
            questions.append(question);
            return answer();
        }};
    CVScheduleProgressViewController view{surroundings};
};
