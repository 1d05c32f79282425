#include "Companions/BackupDaemon/BackupDaemon.h"

#include <QCommandLineParser>
#include <QCoreApplication>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption portOption(QStringLiteral("port"), QStringLiteral("Port to listen on; 0 for any."),
                                        QStringLiteral("number"), QStringLiteral("0"));
    const QCommandLineOption tableOption(QStringLiteral("table"), QStringLiteral("The path table to use."),
                                         QStringLiteral("file"));
    parser.addOptions({portOption, tableOption});
    parser.addHelpOption();
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    bool isPort = false;
    const quint16 port = parser.value(portOption).toUShort(&isPort);
    if (!table || !isPort) {
        printResult(CommandResult::failed(table ? QStringLiteral("no port number: ") + parser.value(portOption)
                                                : QStringLiteral("no path table")));
        return 2;
    }

    BackupDaemon daemon(*table);
    LineInput input;
    QObject::connect(&input, &LineInput::lineRead, &daemon, &BackupDaemon::runCommand);
    // Whoever holds the other end owns this program: it ends with its input.
    QObject::connect(&input, &LineInput::ended, &application, &QCoreApplication::quit, Qt::QueuedConnection);
    QObject::connect(&daemon, &BackupDaemon::quitRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    return daemon.start(port) ? application.exec() : 1;
}
