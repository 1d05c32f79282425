#include "Companions/MainApplication/MainApplication.h"

#include "Companions/Common/Notifications.h"
#include "Companions/Common/PropertyList.h"

#include <QDir>

namespace
{
/// A value of a notification from its text: a boolean, a number, a list in brackets, else the text itself.
QVariant notificationValue(const QString &text)
{
    if (text == QLatin1StringView("true") || text == QLatin1StringView("false"))
        return text == QLatin1StringView("true");
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
    return QDir::homePath() + QStringLiteral("/Library/Preferences/") + name;
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
    : m_table(table), m_accounts(table), m_schedules(table.path(QStringLiteral("SchedulerSettingsFile"))),
      m_throttle(table.path(QStringLiteral("DeamonPreferencePath")))
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
    m_commands.add(QStringLiteral("sign in"),
                   QStringLiteral("sign in ACCOUNT [PLAN]        PLAN: Personal, Business, PAID"),
                   [this](const QStringList &words, const QString &) { return signIn(words); });
    m_commands.add(QStringLiteral("sign out"), QStringLiteral("sign out"),
                   [this](const QStringList &, const QString &) {
                       return announce(m_accounts.signOut(), QStringLiteral("DisablePreferencesNotification"));
                   });
    m_commands.add(QStringLiteral("quota"), QStringLiteral("quota USED TOTAL              in MiB"),
                   [this](const QStringList &words, const QString &) { return setQuota(words); });
    m_commands.add(
        QStringLiteral("plan"), QStringLiteral("plan WORD                     change the account's plan"),
        [this](const QStringList &words, const QString &) {
            const QString account = m_accounts.signedInAccount();
            if (account.isEmpty() || words.size() != 1)
                return CommandResult::failed(QStringLiteral("needs a signed-in account and one word"));
            return announce(m_accounts.setPlan(account, words.first()), QStringLiteral("ReloadPreferences"));
        });
    m_commands.add(
        QStringLiteral("account"), QStringLiteral("account sub|main              what kind of account it is"),
        [this](const QStringList &words, const QString &) {
            const QString account = m_accounts.signedInAccount();
            const bool isSubAccount = words == QStringList{QStringLiteral("sub")};
            if (account.isEmpty() || (!isSubAccount && words != QStringList{QStringLiteral("main")}))
                return CommandResult::failed(QStringLiteral("needs a signed-in account, and sub or main"));
            return announce(m_accounts.setSubAccount(account, isSubAccount),
                            QStringLiteral("ReloadPreferences"));
        });
    const auto addSwitch = [this](const QString &name, const QString &usage,
                                  std::function<bool(const QString &account, bool on)> set) {
        m_commands.add(name, usage, [this, set = std::move(set)](const QStringList &words, const QString &) {
            const QString account = m_accounts.signedInAccount();
            const bool on = words == QStringList{QStringLiteral("on")};
            if (account.isEmpty() || (!on && words != QStringList{QStringLiteral("off")}))
                return CommandResult::failed(QStringLiteral("needs a signed-in account, and on or off"));
            return announce(set(account, on), QStringLiteral("ReloadPreferences"));
        });
    };
    addSwitch(QStringLiteral("engine"),
              QStringLiteral("engine on|off                 whether it uses the engine"),
              [this](const QString &account, bool on) { return m_accounts.setEngineUser(account, on); });
    addSwitch(QStringLiteral("thin client"), QStringLiteral("thin client on|off            what is installed"),
              [this](const QString &, bool on) { return m_accounts.setThinClient(on); });
}

void MainApplication::addScheduleCommands()
{
    m_commands.add(QStringLiteral("schedule"),
                   QStringLiteral("schedule MINUTES|HH:MM [FREQUENCY] [ACCOUNT] [LOGIN]  add a job"),
                   [this](const QStringList &words, const QString &) { return addSchedule(words); });
    m_commands.add(QStringLiteral("schedule demo"),
                   QStringLiteral("schedule demo                 a set of jobs of several users"),
                   [this](const QStringList &, const QString &) {
                       const QString account = m_accounts.signedInAccount();
                       if (account.isEmpty())
                           return CommandResult::failed(QStringLiteral("nobody is signed in"));
                       return announce(
                           m_schedules.fillWithDemoSet(account, loginName(), QDateTime::currentDateTime()),
                           QStringLiteral("UpdateImmediateScheduleToolTip"));
                   });
    m_commands.add(QStringLiteral("immediate"),
                   QStringLiteral("immediate [ACCOUNT]           a job to start at once"),
                   [this](const QStringList &words, const QString &) { return scheduleImmediate(words); });
    m_commands.add(QStringLiteral("schedules"), QStringLiteral("schedules                     list all jobs"),
                   [this](const QStringList &, const QString &) {
                       const QStringList jobs = m_schedules.describe();
                       for (const QString &job : jobs)
                           printLine(job);
                       return CommandResult::ok(QStringLiteral("%1 jobs").arg(jobs.size()));
                   });
    m_commands.add(QStringLiteral("jobs"),
                   QStringLiteral("jobs on|off                   switch all scheduled jobs"),
                   [this](const QStringList &words, const QString &) { return switchJobs(words); });
    m_commands.add(QStringLiteral("clear schedules"), QStringLiteral("clear schedules"),
                   [this](const QStringList &, const QString &) {
                       return announce(m_schedules.clear(), QStringLiteral("UpdateImmediateScheduleToolTip"));
                   });
}

void MainApplication::addThrottleCommands()
{
    m_commands.add(QStringLiteral("throttle"),
                   QStringLiteral("throttle PERCENT              what backups may use of the line"),
                   [this](const QStringList &words, const QString &) { return setBandwidth(words); });
    m_commands.add(QStringLiteral("throttle auto"),
                   QStringLiteral("throttle auto on|off          less while somebody works here"),
                   [this](const QStringList &words, const QString &) { return setAutoPause(words); });
    m_commands.add(QStringLiteral("throttle show"),
                   QStringLiteral("throttle show                 the settings shared with the daemon"),
                   [this](const QStringList &, const QString &) {
                       const QString settings = m_throttle.describe(m_accounts.signedInAccount());
                       return settings.isEmpty() ? CommandResult::failed(QStringLiteral("there are none"))
                                                 : CommandResult::ok(settings);
                   });
}

void MainApplication::addSettingsCommands()
{
    m_commands.add(QStringLiteral("show progress"),
                   QStringLiteral("show progress                 have the monitor show the scheduled job"),
                   [this](const QStringList &, const QString &) {
                       return announce(true, QStringLiteral("ShowSchedulerProgress"));
                   });
    m_commands.add(QStringLiteral("language"), QStringLiteral("language en|es|ja"),
                   [this](const QStringList &words, const QString &) { return setLanguage(words); });
    m_commands.add(QStringLiteral("appearance"),
                   QStringLiteral("appearance light|dark         of the whole desktop"),
                   [this](const QStringList &words, const QString &) { return setAppearance(words); });
    m_commands.add(QStringLiteral("notify"),
                   QStringLiteral("notify NAME [OBJECT] [KEY=VALUE...]  post a notification"),
                   [this](const QStringList &words, const QString &) { return notify(words); });
    m_commands.add(QStringLiteral("help"), QStringLiteral("help                          this list"),
                   [this](const QStringList &, const QString &) {
                       printLine(m_commands.help());
                       return CommandResult::ok();
                   });
}

CommandResult MainApplication::signIn(const QStringList &words)
{
    // The name becomes that of a folder.
    if (words.isEmpty() || words.first().contains(u'/') || words.first().startsWith(u'.'))
        return CommandResult::failed(QStringLiteral("needs an account name"));
    Account account;
    account.name = words.first();
    if (words.size() > 1)
        account.plan = words.at(1);
    return announce(m_throttle.fillIn(account.name) && m_accounts.signIn(account),
                    QStringLiteral("EnablePreferencesNotification"));
}

CommandResult MainApplication::setBandwidth(const QStringList &words)
{
    constexpr int All = 100;
    const QString account = m_accounts.signedInAccount();
    bool isNumber = false;
    const int percent = words.value(0).toInt(&isNumber);
    if (account.isEmpty() || words.size() != 1 || !isNumber || percent < 0 || percent > All)
        return CommandResult::failed(QStringLiteral("needs a signed-in account, and 0 to %1").arg(All));
    return announce(m_throttle.setBandwidth(account, percent), QStringLiteral("updateBandwidthMacInUseValue"));
}

CommandResult MainApplication::setAutoPause(const QStringList &words)
{
    const QString account = m_accounts.signedInAccount();
    const bool on = words == QStringList{QStringLiteral("on")};
    if (account.isEmpty() || (!on && words != QStringList{QStringLiteral("off")}))
        return CommandResult::failed(QStringLiteral("needs a signed-in account, and on or off"));
    return announce(m_throttle.setAutoPause(account, on), QStringLiteral("updateBandwidthMacInUseValue"));
}

CommandResult MainApplication::addSchedule(const QStringList &words)
{
    const QDateTime now = QDateTime::currentDateTime();
    const auto time = timeFromWord(words.value(0), now);
    const auto frequency = frequencyFromWord(words.value(1, QStringLiteral("daily")));
    const QString account = words.value(2, m_accounts.signedInAccount());
    if (!time || !frequency || account.isEmpty())
        return CommandResult::failed(QStringLiteral("needs a time, a frequency and an account"));
    const auto job = ScheduleBook::makeJob(account, words.value(3, loginName()), *time, *frequency);
    return announce(m_schedules.add(job), QStringLiteral("UpdateImmediateScheduleToolTip"));
}

CommandResult MainApplication::scheduleImmediate(const QStringList &words)
{
    const QString account = words.value(0, m_accounts.signedInAccount());
    if (account.isEmpty())
        return CommandResult::failed(QStringLiteral("nobody is signed in, and no account is given"));
    const auto job = ScheduleBook::makeJob(account, loginName(), QDateTime::currentDateTime(), Frequency::Once);
    return announce(m_schedules.add(job), QStringLiteral("UpdateImmediateScheduleToolTip"));
}

CommandResult MainApplication::switchJobs(const QStringList &words)
{
    const bool on = words == QStringList{QStringLiteral("on")};
    if (!on && words != QStringList{QStringLiteral("off")})
        return CommandResult::failed(QStringLiteral("on or off"));
    return announce(writeWholeFile(m_table.path(QStringLiteral("SchedulerStatusInfoPath")), on ? "1" : "0"),
                    QStringLiteral("UpdateImmediateScheduleToolTip"));
}

CommandResult MainApplication::setQuota(const QStringList &words)
{
    const QString account = m_accounts.signedInAccount();
    bool isUsed = false;
    bool isTotal = false;
    const double used = words.value(0).toDouble(&isUsed);
    const double total = words.value(1).toDouble(&isTotal);
    if (account.isEmpty() || !isUsed || !isTotal)
        return CommandResult::failed(QStringLiteral("needs a signed-in account and two numbers"));
    return announce(m_accounts.setQuota(account, used, total), QStringLiteral("ReloadPreferences"));
}

CommandResult MainApplication::setLanguage(const QStringList &words)
{
    const QStringList known{QStringLiteral("en"), QStringLiteral("es"), QStringLiteral("ja")};
    if (words.size() != 1 || !known.contains(words.first()))
        return CommandResult::failed(QStringLiteral("en, es or ja"));
    if (!setPreference(QStringLiteral("com.halvernet.Corvane.plist"), QStringLiteral("AppleLanguages"), words))
        return CommandResult::failed(QStringLiteral("cannot write the preferences"));
    if (!postNotification(QStringLiteral("changeLanguage"), {}, {{QStringLiteral("language"), words.first()}}))
        return CommandResult::ok(QStringLiteral("stored; no session bus to tell it on"));
    return CommandResult::ok();
}

CommandResult MainApplication::setAppearance(const QStringList &words)
{
    const bool dark = words == QStringList{QStringLiteral("dark")};
    if (!dark && words != QStringList{QStringLiteral("light")})
        return CommandResult::failed(QStringLiteral("light or dark"));
    const bool written =
        setPreference(QStringLiteral(".GlobalPreferences.plist"), QStringLiteral("AppleInterfaceStyle"),
                      dark ? QVariant(QStringLiteral("Dark")) : QVariant());
    if (!written)
        return CommandResult::failed(QStringLiteral("cannot write the preferences"));
    postNotification(QStringLiteral("AppleInterfaceThemeChangedNotification"));
    return CommandResult::ok();
}

CommandResult MainApplication::notify(const QStringList &words)
{
    if (words.isEmpty())
        return CommandResult::failed(QStringLiteral("needs a name"));
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
        return CommandResult::failed(QStringLiteral("no session bus"));
    return CommandResult::ok();
}

CommandResult MainApplication::announce(bool written, const QString &key) const
{
    if (!written)
        return CommandResult::failed(QStringLiteral("the files could not be written"));
    if (!postNotification(m_table.value(key)))
        return CommandResult::ok(QStringLiteral("stored; no session bus to tell it on"));
    return CommandResult::ok();
}
