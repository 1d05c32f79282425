#include "Companions/SyncDaemon/SyncDaemon.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption tableOption(u"table"_s, u"The path table to use."_s, u"file"_s);
    parser.addOption(tableOption);
    parser.addHelpOption();
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    if (!table) {
        printResult(CommandResult::failed(u"no path table"_s));
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
