#include "Companions/MainApplication/AccountFiles.h"

#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QFile>

namespace
{
const QString ServerName = QStringLiteral("vault7.halvernet.example");
const QString ServerAddress = QStringLiteral("192.0.2.17");

QVariant codedFigure(double mebibytes)
{
    return codedText(QString::asprintf("%lf", mebibytes));
}

/// A used size that is not positive is stored as the number 0.
QVariant codedUse(double mebibytes)
{
    return mebibytes > 0 ? codedFigure(mebibytes) : QVariant(0);
}
} // namespace

QString codedText(const QString &text)
{
    QString coded(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        coded[i] = QChar(static_cast<char16_t>(text[i].unicode() << 1));
    return coded;
}

AccountFiles::AccountFiles(PathTable table) : m_table(std::move(table))
{
}

bool AccountFiles::signIn(const Account &account)
{
    if (!writeDetails(account))
        return false;
    return writePropertyList(
        m_table.path(QStringLiteral("LastUserLoginDetailsFilePath")),
        {{QStringLiteral("Username"), account.name},
         {QStringLiteral("dedup"), account.deduplicates ? QStringLiteral("on") : QStringLiteral("off")},
         {QStringLiteral("Plan"), account.plan},
         {QStringLiteral("AccountPlanType"), account.planType},
         {QStringLiteral("isTQL"), account.usesEngine},
         {QStringLiteral("serverName"), ServerName},
         {QStringLiteral("serverIP"), ServerAddress},
         {QStringLiteral("RememberDetails"), true}});
}

bool AccountFiles::writeDetails(const Account &account)
{
    const QStringList user{account.name};
    const auto path = [this, &user](const QString &key) { return m_table.path(key, user); };
    bool written = writePropertyList(
        path(QStringLiteral("LoginDetailsFilePath")),
        {{QStringLiteral("Username"), account.name},
         {QStringLiteral("serverName"), ServerName},
         {QStringLiteral("isTQL"), account.usesEngine},
         {QStringLiteral("remote_manage_websock_server"), QStringLiteral("socket.halvernet.example")}});
    written &= writePropertyList(path(QStringLiteral("UserDetailsPath")),
                                 {{QStringLiteral("tqlsrvrport"), QStringLiteral("443")},
                                  {QStringLiteral("USEDQUOTASIZE"), codedUse(account.usedMebibytes)},
                                  {QStringLiteral("TOTALQUOTASIZE"), codedFigure(account.totalMebibytes)}},
                                 PlistForm::Binary);
    written &= writePropertyList(path(QStringLiteral("UserInfoPath")),
                                 {{QStringLiteral("plan_type"), account.planType},
                                  {QStringLiteral("accstat"), QStringLiteral("Y")},
                                  {QStringLiteral("IsExpiredAccount"), false},
                                  {QStringLiteral("shouldDisplayUpgrade"), true},
                                  {QStringLiteral("ErrorMessage"), QString()}});
    written &= setSubAccount(account.name, account.isSubAccount);
    written &= setPlan(account.name, account.plan);
    written &= setEngineUser(account.name, account.usesEngine);
    written &= writePropertyList(m_table.path(QStringLiteral("RemoteManageInfoPath"), {QDir::homePath()}),
                                 {{QStringLiteral("cname"), account.name}});
    const QString syncStates = m_table.path(QStringLiteral("SyncStateFilePath"));
    QVariantMap states = readPropertyList(syncStates).toMap();
    states.insert(account.name.toLower(), false);
    return written && writePropertyList(syncStates, states);
}

bool AccountFiles::signOut()
{
    return QFile::remove(m_table.path(QStringLiteral("LastUserLoginDetailsFilePath")));
}

QString AccountFiles::signedInAccount() const
{
    const QVariant record = readPropertyList(m_table.path(QStringLiteral("LastUserLoginDetailsFilePath")));
    return record.toMap().value(QStringLiteral("Username")).toString();
}

bool AccountFiles::setQuota(const QString &account, double usedMebibytes, double totalMebibytes)
{
    const QString path = m_table.path(QStringLiteral("UserDetailsPath"), {account});
    QVariantMap details = readPropertyList(path).toMap();
    details.insert(QStringLiteral("USEDQUOTASIZE"), codedUse(usedMebibytes));
    details.insert(QStringLiteral("TOTALQUOTASIZE"), codedFigure(totalMebibytes));
    return writePropertyList(path, details, PlistForm::Binary);
}

bool AccountFiles::setPlan(const QString &account, const QString &plan)
{
    const QString recordPath = m_table.path(QStringLiteral("LastUserLoginDetailsFilePath"));
    QVariantMap record = readPropertyList(recordPath).toMap();
    bool written =
        writeWholeFile(m_table.path(QStringLiteral("AccountPlanFilePath"), {account}), plan.toUtf8());
    if (record.value(QStringLiteral("Username")) == account) {
        record.insert(QStringLiteral("Plan"), plan);
        written &= writePropertyList(recordPath, record);
    }
    return written;
}

bool AccountFiles::setSubAccount(const QString &account, bool isSubAccount)
{
    return writeWholeFile(m_table.path(QStringLiteral("AccountTypeFilePath"), {account}),
                          isSubAccount ? "true" : "false");
}

bool AccountFiles::setEngineUser(const QString &account, bool usesEngine)
{
    const QString marker = m_table.path(QStringLiteral("TqlUserDetails"), {account});
    return usesEngine ? writeWholeFile(marker, {}) : !QFile::exists(marker) || QFile::remove(marker);
}

bool AccountFiles::setThinClient(bool isThinClient)
{
    return writePropertyList(m_table.path(QStringLiteral("ThinClientFilePath")),
                             {{QStringLiteral("IsThinClient"), isThinClient}});
}
