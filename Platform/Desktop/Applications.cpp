#include "Platform/Desktop/Applications.h"

#include "Platform/Home.h"
#include "Platform/ShellSpawn.h"
#include "Platform/ShellWords.h"

#include <QDBusMessage>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include <cerrno>

#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace
{
bool isBusName(const QString &identifier)
{
    static const QRegularExpression form(uR"(\A[A-Za-z_-][A-Za-z0-9_-]*(\.[A-Za-z_-][A-Za-z0-9_-]*)+\z)"_s);
    return identifier.size() <= 255 && form.match(identifier).hasMatch();
}

/// Whether the process ends with status 0. Waits for it.
bool endsWell(pid_t process)
{
    int status = -1;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
} // namespace

QString Applications::objectPath(const QString &identifier)
{
    QString path = u'/' + identifier;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

QDBusMessage Applications::activation(const QString &identifier)
{
    QDBusMessage call = QDBusMessage::createMethodCall(identifier, objectPath(identifier),
                                                       u"org.freedesktop.Application"_s, u"Activate"_s);
    call.setArguments({QVariantMap()});
    call.setAutoStartService(false);
    return call;
}

bool Applications::activate(const QString &identifier, const BusLink &bus)
{
    const auto connection = bus.connection();
    return connection && isBusName(identifier) && connection->bus().send(activation(identifier));
}

bool Applications::open(const QString &path, const QStringList &arguments)
{
    const QFileInfo program(path);
    if (!program.isFile() || !program.isExecutable())
        return false;
    QStringList words{shellWord(program.absoluteFilePath())};
    for (const QString &argument : arguments)
        words.append(shellWord(argument));
    // setsid starts the program and goes, so that nothing is left here that would have to be reaped later.
    const auto shell = ShellSpawn::start(
        u"cd %1 && exec setsid --fork %2"_s.arg(shellWord(homeDirectory()), words.join(u' ')));
    return shell.pid != 0 && endsWell(shell.pid);
}

bool Applications::launch(const QString &name)
{
    const QString path = name.isEmpty() ? QString() : QStandardPaths::findExecutable(name);
    return !path.isEmpty() && open(path);
}
