#include "Platform/Desktop/Applications.h"

#include "Platform/Home.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <csignal>

namespace
{
bool isBusName(const QString &identifier)
{
    static const QRegularExpression form(
        QStringLiteral(R"(\A[A-Za-z_-][A-Za-z0-9_-]*(\.[A-Za-z_-][A-Za-z0-9_-]*)+\z)"));
    return identifier.size() <= 255 && form.match(identifier).hasMatch();
}

/// A program that reads its signals from a descriptor blocks them, and a child would begin like that.
void unblockSignals()
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}
} // namespace

QString Applications::objectPath(const QString &identifier)
{
    QString path = u'/' + identifier;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

bool Applications::activate(const QString &identifier, const QDBusConnection &bus)
{
    if (!isBusName(identifier) || !bus.isConnected())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(identifier, objectPath(identifier),
                                                       QStringLiteral("org.freedesktop.Application"),
                                                       QStringLiteral("Activate"));
    call.setArguments({QVariantMap()});
    call.setAutoStartService(false);
    return bus.send(call);
}

bool Applications::open(const QString &path, const QStringList &arguments)
{
    if (!QFileInfo(path).isFile())
        return false;
    QProcess process;
    process.setProgram(path);
    process.setArguments(arguments);
    process.setWorkingDirectory(homeDirectory());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier(unblockSignals);
    return process.startDetached();
}

void Applications::runShell(const QString &command)
{
    auto *shell = new QProcess(QCoreApplication::instance());
    shell->setChildProcessModifier(unblockSignals);
    QObject::connect(shell, &QProcess::finished, shell, &QObject::deleteLater);
    QObject::connect(shell, &QProcess::errorOccurred, shell, &QObject::deleteLater);
    shell->start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
}

bool Applications::launch(const QString &name)
{
    const QString path = name.isEmpty() ? QString() : QStandardPaths::findExecutable(name);
    return !path.isEmpty() && open(path);
}
