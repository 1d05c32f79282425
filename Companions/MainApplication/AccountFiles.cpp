#include "Companions/MainApplication/AccountFiles.h"

#include "Companions/Common/PropertyList.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
const QString ServerName = u"vault7.halvernet.example"_s;
const QString ServerAddress = u"192.0.2.17"_s;

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
    return writePropertyList(m_table.path(u"LastUserLoginDetailsFilePath"_s),
                             {{u"Username"_s, account.name},
                              {u"dedup"_s, account.deduplicates ? u"on"_s : u"off"_s},
                              {u"Plan"_s, account.plan},
                              {u"AccountPlanType"_s, account.planType},
                              {u"isTQL"_s, account.usesEngine},
                              {u"serverName"_s, ServerName},
                              {u"serverIP"_s, ServerAddress},
                              {u"RememberDetails"_s, true}});
}

bool AccountFiles::writeDetails(const Account &account)
{
    const QStringList user{account.name};
    const auto path = [this, &user](const QString &key) { return m_table.path(key, user); };
    bool written = writePropertyList(path(u"LoginDetailsFilePath"_s),
                                     {{u"Username"_s, account.name},
                                      {u"serverName"_s, ServerName},
                                      {u"isTQL"_s, account.usesEngine},
                                      {u"remote_manage_websock_server"_s, u"socket.halvernet.example"_s}});
    written &= writePropertyList(path(u"UserDetailsPath"_s),
                                 {{u"tqlsrvrport"_s, u"443"_s},
                                  {u"USEDQUOTASIZE"_s, codedUse(account.usedMebibytes)},
                                  {u"TOTALQUOTASIZE"_s, codedFigure(account.totalMebibytes)}},
                                 PlistForm::Binary);
    written &= writePropertyList(path(u"UserInfoPath"_s), {{u"plan_type"_s, account.planType},
                                                           {u"accstat"_s, u"Y"_s},
                                                           {u"IsExpiredAccount"_s, false},
                                                           {u"shouldDisplayUpgrade"_s, true},
                                                           {u"ErrorMessage"_s, QString()}});
    written &= setSubAccount(account.name, account.isSubAccount);
    written &= setPlan(account.name, account.plan);
    written &= setEngineUser(account.name, account.usesEngine);
    written &= writePropertyList(m_table.path(u"RemoteManageInfoPath"_s, {QDir::homePath()}),
                                 {{u"cname"_s, account.name}});
    const QString syncStates = m_table.path(u"SyncStateFilePath"_s);
    QVariantMap states = readPropertyList(syncStates).toMap();
    states.insert(account.name.toLower(), false);
    return written && writePropertyList(syncStates, states);
}

bool AccountFiles::signOut()
{
    return QFile::remove(m_table.path(u"LastUserLoginDetailsFilePath"_s));
}

QString AccountFiles::signedInAccount() const
{
    const QVariant record = readPropertyList(m_table.path(u"LastUserLoginDetailsFilePath"_s));
    return record.toMap().value(u"Username"_s).toString();
}

bool AccountFiles::setQuota(const QString &account, double usedMebibytes, double totalMebibytes)
{
    const QString path = m_table.path(u"UserDetailsPath"_s, {account});
    QVariantMap details = readPropertyList(path).toMap();
    details.insert(u"USEDQUOTASIZE"_s, codedUse(usedMebibytes));
    details.insert(u"TOTALQUOTASIZE"_s, codedFigure(totalMebibytes));
    return writePropertyList(path, details, PlistForm::Binary);
}

bool AccountFiles::setPlan(const QString &account, const QString &plan)
{
    const QString recordPath = m_table.path(u"LastUserLoginDetailsFilePath"_s);
    QVariantMap record = readPropertyList(recordPath).toMap();
    bool written = writeWholeFile(m_table.path(u"AccountPlanFilePath"_s, {account}), plan.toUtf8());
    if (record.value(u"Username"_s) == account) {
        record.insert(u"Plan"_s, plan);
        written &= writePropertyList(recordPath, record);
    }
    return written;
}

bool AccountFiles::setSubAccount(const QString &account, bool isSubAccount)
{
    return writeWholeFile(m_table.path(u"AccountTypeFilePath"_s, {account}), isSubAccount ? "true" : "false");
}

bool AccountFiles::setEngineUser(const QString &account, bool usesEngine)
{
    const QString marker = m_table.path(u"TqlUserDetails"_s, {account});
    return usesEngine ? writeWholeFile(marker, {}) : !QFile::exists(marker) || QFile::remove(marker);
}

bool AccountFiles::setThinClient(bool isThinClient)
{
    return writePropertyList(m_table.path(u"ThinClientFilePath"_s), {{u"IsThinClient"_s, isThinClient}});
}
