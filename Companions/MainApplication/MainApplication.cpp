#include "Companions/MainApplication/MainApplication.h"

#include "Companions/Common/Notifications.h"
#include "Companions/Common/PropertyList.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>

using namespace Qt::StringLiterals;

namespace
{
/// A value of a notification from its text: a boolean, a number, a list in brackets, else the text itself.
QVariant notificationValue(const QString &text)
{
    if (text == "true"_L1 || text == "false"_L1)
        return text == "true"_L1;
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber)
        return number;
    if (text.startsWith(u'[') && text.endsWith(u']'))
        return text.mid(1, text.size() - 2).split(u',', Qt::SkipEmptyParts);
    return text;
}

QString preferencesFile(const QString &name)
{
    return QDir::homePath() + u"/Library/Preferences/"_s + name;
}

/// Sets one key and leaves the others; an invalid value takes the key away.
bool setPreference(const QString &name, const QString &key, const QVariant &value)
{
    QVariantMap preferences = readPropertyList(preferencesFile(name)).toMap();
    if (value.isValid())
        preferences.insert(key, value);
    else
        preferences.remove(key);
    return writePropertyList(preferencesFile(name), preferences, PlistForm::Binary);
}

/// "HH:mm" is the next such time of day, a number so many minutes from now.
std::optional<QDateTime> timeFromWord(const QString &word, const QDateTime &now)
{
    bool isNumber = false;
    const int minutes = word.toInt(&isNumber);
    if (isNumber)
        return now.addSecs(qint64(minutes) * 60);
    const QTime time = QTime::fromString(word, u"HH:mm");
    if (!time.isValid())
        return std::nullopt;
    const QDateTime today(now.date(), time);
    return today > now ? today : today.addDays(1);
}
} // namespace

MainApplication::MainApplication(PathTable table)
    : m_table(table), m_accounts(table), m_schedules(table.path(u"SchedulerSettingsFile"_s)),
      m_throttle(table.path(u"DeamonPreferencePath"_s))
{
    addAccountCommands();
    addScheduleCommands();
    addThrottleCommands();
    addSettingsCommands();
}

CommandResult MainApplication::run(const QString &line) const
{
    return m_commands.run(line);
}

void MainApplication::addAccountCommands()
{
    m_commands.add(u"sign in"_s, u"sign in ACCOUNT [PLAN]        PLAN: Personal, Business, PAID"_s,
                   [this](const QStringList &words, const QString &) { return signIn(words); });
    m_commands.add(u"sign out"_s, u"sign out"_s, [this](const QStringList &, const QString &) {
        return announce(m_accounts.signOut(), u"DisablePreferencesNotification"_s);
    });
    m_commands.add(u"quota"_s, u"quota USED TOTAL              in MiB"_s,
                   [this](const QStringList &words, const QString &) { return setQuota(words); });
    m_commands.add(u"plan"_s, u"plan WORD                     change the account's plan"_s,
                   [this](const QStringList &words, const QString &) {
                       const QString account = m_accounts.signedInAccount();
                       if (account.isEmpty() || words.size() != 1)
                           return CommandResult::failed(u"needs a signed-in account and one word"_s);
                       return announce(m_accounts.setPlan(account, words.first()), u"ReloadPreferences"_s);
                   });
    m_commands.add(u"account"_s, u"account sub|main              what kind of account it is"_s,
                   [this](const QStringList &words, const QString &) {
                       const QString account = m_accounts.signedInAccount();
                       const bool isSubAccount = words == QStringList{u"sub"_s};
                       if (account.isEmpty() || (!isSubAccount && words != QStringList{u"main"_s}))
                           return CommandResult::failed(u"needs a signed-in account, and sub or main"_s);
                       return announce(m_accounts.setSubAccount(account, isSubAccount), u"ReloadPreferences"_s);
                   });
    const auto addSwitch = [this](const QString &name, const QString &usage,
                                  std::function<bool(const QString &account, bool on)> set) {
        m_commands.add(name, usage, [this, set = std::move(set)](const QStringList &words, const QString &) {
            const QString account = m_accounts.signedInAccount();
            const bool on = words == QStringList{u"on"_s};
            if (account.isEmpty() || (!on && words != QStringList{u"off"_s}))
                return CommandResult::failed(u"needs a signed-in account, and on or off"_s);
            return announce(set(account, on), u"ReloadPreferences"_s);
        });
    };
    addSwitch(u"engine"_s, u"engine on|off                 whether it uses the engine"_s,
              [this](const QString &account, bool on) { return m_accounts.setEngineUser(account, on); });
    addSwitch(u"thin client"_s, u"thin client on|off            what is installed"_s,
              [this](const QString &, bool on) { return m_accounts.setThinClient(on); });
}

void MainApplication::addScheduleCommands()
{
    m_commands.add(u"schedule"_s, u"schedule MINUTES|HH:MM [FREQUENCY] [ACCOUNT] [LOGIN]  add a job"_s,
                   [this](const QStringList &words, const QString &) { return addSchedule(words); });
    m_commands.add(u"schedule demo"_s, u"schedule demo                 a set of jobs of several users"_s,
                   [this](const QStringList &, const QString &) {
                       const QString account = m_accounts.signedInAccount();
                       if (account.isEmpty())
                           return CommandResult::failed(u"nobody is signed in"_s);
                       return announce(
                           m_schedules.fillWithDemoSet(account, loginName(), QDateTime::currentDateTime()),
                           u"UpdateImmediateScheduleToolTip"_s);
                   });
    m_commands.add(u"immediate"_s, u"immediate [ACCOUNT]           a job to start at once"_s,
                   [this](const QStringList &words, const QString &) { return scheduleImmediate(words); });
    m_commands.add(u"schedules"_s, u"schedules                     list all jobs"_s,
                   [this](const QStringList &, const QString &) {
                       const QStringList jobs = m_schedules.describe();
                       for (const QString &job : jobs)
                           printLine(job);
                       return CommandResult::ok(u"%1 jobs"_s.arg(jobs.size()));
                   });
    m_commands.add(u"jobs"_s, u"jobs on|off                   switch all scheduled jobs"_s,
                   [this](const QStringList &words, const QString &) { return switchJobs(words); });
    m_commands.add(u"clear schedules"_s, u"clear schedules"_s, [this](const QStringList &, const QString &) {
        return announce(m_schedules.clear(), u"UpdateImmediateScheduleToolTip"_s);
    });
}

void MainApplication::addThrottleCommands()
{
    m_commands.add(u"throttle"_s, u"throttle PERCENT              what backups may use of the line"_s,
                   [this](const QStringList &words, const QString &) { return setBandwidth(words); });
    m_commands.add(u"throttle auto"_s, u"throttle auto on|off          less while somebody works here"_s,
                   [this](const QStringList &words, const QString &) { return setAutoPause(words); });
    m_commands.add(u"throttle show"_s, u"throttle show                 the settings shared with the daemon"_s,
                   [this](const QStringList &, const QString &) {
                       const QString settings = m_throttle.describe(m_accounts.signedInAccount());
                       return settings.isEmpty() ? CommandResult::failed(u"there are none"_s)
                                                 : CommandResult::ok(settings);
                   });
}

void MainApplication::addSettingsCommands()
{
    m_commands.add(
        u"show progress"_s, u"show progress                 have the monitor show the scheduled job"_s,
        [this](const QStringList &, const QString &) { return announce(true, u"ShowSchedulerProgress"_s); });
    m_commands.add(u"language"_s, u"language en|es|ja"_s,
                   [this](const QStringList &words, const QString &) { return setLanguage(words); });
    m_commands.add(u"appearance"_s, u"appearance light|dark         of the whole desktop"_s,
                   [this](const QStringList &words, const QString &) { return setAppearance(words); });
    m_commands.add(u"notify"_s, u"notify NAME [OBJECT] [KEY=VALUE...]  post a notification"_s,
                   [this](const QStringList &words, const QString &) { return notify(words); });
    m_commands.add(u"flag"_s,
                   u"flag viewLogs|viewManageScheduleJobs  left for the monitor, which is brought up"_s,
                   [this](const QStringList &words, const QString &) { return leaveFlag(words); });
    m_commands.add(u"help"_s, u"help                          this list"_s,
                   [this](const QStringList &, const QString &) {
                       printLine(m_commands.help());
                       return CommandResult::ok();
                   });
}

CommandResult MainApplication::signIn(const QStringList &words)
{
    // The name becomes that of a folder.
    if (words.isEmpty() || words.first().contains(u'/') || words.first().startsWith(u'.'))
        return CommandResult::failed(u"needs an account name"_s);
    Account account;
    account.name = words.first();
    if (words.size() > 1)
        account.plan = words.at(1);
    return announce(m_throttle.fillIn(account.name) && m_accounts.signIn(account),
                    u"EnablePreferencesNotification"_s);
}

CommandResult MainApplication::setBandwidth(const QStringList &words)
{
    constexpr int All = 100;
    const QString account = m_accounts.signedInAccount();
    bool isNumber = false;
    const int percent = words.value(0).toInt(&isNumber);
    if (account.isEmpty() || words.size() != 1 || !isNumber || percent < 0 || percent > All)
        return CommandResult::failed(u"needs a signed-in account, and 0 to %1"_s.arg(All));
    return announce(m_throttle.setBandwidth(account, percent), u"updateBandwidthMacInUseValue"_s);
}

CommandResult MainApplication::setAutoPause(const QStringList &words)
{
    const QString account = m_accounts.signedInAccount();
    const bool on = words == QStringList{u"on"_s};
    if (account.isEmpty() || (!on && words != QStringList{u"off"_s}))
        return CommandResult::failed(u"needs a signed-in account, and on or off"_s);
    return announce(m_throttle.setAutoPause(account, on), u"updateBandwidthMacInUseValue"_s);
}

CommandResult MainApplication::addSchedule(const QStringList &words)
{
    const QDateTime now = QDateTime::currentDateTime();
    const auto time = timeFromWord(words.value(0), now);
    const auto frequency = frequencyFromWord(words.value(1, u"daily"_s));
    const QString account = words.value(2, m_accounts.signedInAccount());
    if (!time || !frequency || account.isEmpty())
        return CommandResult::failed(u"needs a time, a frequency and an account"_s);
    const auto job = ScheduleBook::makeJob(account, words.value(3, loginName()), *time, *frequency);
    return announce(m_schedules.add(job), u"UpdateImmediateScheduleToolTip"_s);
}

CommandResult MainApplication::scheduleImmediate(const QStringList &words)
{
    const QString account = words.value(0, m_accounts.signedInAccount());
    if (account.isEmpty())
        return CommandResult::failed(u"nobody is signed in, and no account is given"_s);
    const auto job = ScheduleBook::makeJob(account, loginName(), QDateTime::currentDateTime(), Frequency::Once);
    return announce(m_schedules.add(job), u"UpdateImmediateScheduleToolTip"_s);
}

CommandResult MainApplication::switchJobs(const QStringList &words)
{
    const bool on = words == QStringList{u"on"_s};
    if (!on && words != QStringList{u"off"_s})
        return CommandResult::failed(u"on or off"_s);
    return announce(writeWholeFile(m_table.path(u"SchedulerStatusInfoPath"_s), on ? "1" : "0"),
                    u"UpdateImmediateScheduleToolTip"_s);
}

CommandResult MainApplication::setQuota(const QStringList &words)
{
    const QString account = m_accounts.signedInAccount();
    bool isUsed = false;
    bool isTotal = false;
    const double used = words.value(0).toDouble(&isUsed);
    const double total = words.value(1).toDouble(&isTotal);
    if (account.isEmpty() || !isUsed || !isTotal)
        return CommandResult::failed(u"needs a signed-in account and two numbers"_s);
    return announce(m_accounts.setQuota(account, used, total), u"ReloadPreferences"_s);
}

CommandResult MainApplication::leaveFlag(const QStringList &words) const
{
    const QStringList known{u"viewLogs"_s, u"viewManageScheduleJobs"_s};
    if (words.size() != 1 || !known.contains(words.first()))
        return CommandResult::failed(known.join(u" or "_s));
    if (!writeWholeFile(m_table.path(u"ApplicationRootFolderPath"_s) + u'/' + words.first(), {}))
        return CommandResult::failed(u"the flag cannot be written"_s);
    QDBusMessage activate =
        QDBusMessage::createMethodCall(u"com.halvernet.CorvaneMonitor"_s, u"/com/halvernet/CorvaneMonitor"_s,
                                       u"org.freedesktop.Application"_s, u"Activate"_s);
    activate << QVariantMap();
    activate.setAutoStartService(false);
    return QDBusConnection::sessionBus().send(activate)
               ? CommandResult::ok()
               : CommandResult::ok(u"left; no session bus to tell it on"_s);
}

CommandResult MainApplication::setLanguage(const QStringList &words)
{
    const QStringList known{u"en"_s, u"es"_s, u"ja"_s};
    if (words.size() != 1 || !known.contains(words.first()))
        return CommandResult::failed(u"en, es or ja"_s);
    if (!setPreference(u"com.halvernet.Corvane.plist"_s, u"AppleLanguages"_s, words))
        return CommandResult::failed(u"cannot write the preferences"_s);
    if (!postNotification(u"changeLanguage"_s, {}, {{u"language"_s, words.first()}}))
        return CommandResult::ok(u"stored; no session bus to tell it on"_s);
    return CommandResult::ok();
}

CommandResult MainApplication::setAppearance(const QStringList &words)
{
    const bool dark = words == QStringList{u"dark"_s};
    if (!dark && words != QStringList{u"light"_s})
        return CommandResult::failed(u"light or dark"_s);
    const bool written = setPreference(u".GlobalPreferences.plist"_s, u"AppleInterfaceStyle"_s,
                                       dark ? QVariant(u"Dark"_s) : QVariant());
    if (!written)
        return CommandResult::failed(u"cannot write the preferences"_s);
    postNotification(u"AppleInterfaceThemeChangedNotification"_s);
    return CommandResult::ok();
}

CommandResult MainApplication::notify(const QStringList &words)
{
    if (words.isEmpty())
        return CommandResult::failed(u"needs a name"_s);
    // A key of the path table stands for the name behind it.
    const QString stored = m_table.value(words.first());
    QString object;
    QVariantMap userInfo;
    for (const QString &word : words.mid(1)) {
        const qsizetype equals = word.indexOf(u'=');
        if (equals > 0)
            userInfo.insert(word.left(equals), notificationValue(word.mid(equals + 1)));
        else
            object = word;
    }
    if (!postNotification(stored.isEmpty() ? words.first() : stored, object, userInfo))
        return CommandResult::failed(u"no session bus"_s);
    return CommandResult::ok();
}

CommandResult MainApplication::announce(bool written, const QString &key) const
{
    if (!written)
        return CommandResult::failed(u"the files could not be written"_s);
    if (!postNotification(m_table.value(key)))
        return CommandResult::ok(u"stored; no session bus to tell it on"_s);
    return CommandResult::ok();
}
