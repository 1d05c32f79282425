#include "Companions/SyncDaemon/SyncDaemon.h"

#include <QCommandLineParser>
#include <QCoreApplication>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption tableOption(QStringLiteral("table"), QStringLiteral("The path table to use."),
                                         QStringLiteral("file"));
    parser.addOption(tableOption);
    parser.addHelpOption();
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    if (!table) {
        printResult(CommandResult::failed(QStringLiteral("no path table")));
        return 2;
    }
    SyncDaemon daemon(*table);
    LineInput input;
    QObject::connect(&input, &LineInput::lineRead, &daemon, &SyncDaemon::runCommand);
    // Whoever holds the other end owns this program: it ends with its input.
    QObject::connect(&input, &LineInput::ended, &application, &QCoreApplication::quit, Qt::QueuedConnection);
    QObject::connect(&daemon, &SyncDaemon::quitRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    return daemon.start() ? application.exec() : 1;
}
