#include "Companions/BackupDaemon/BackupDaemon.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption portOption(u"port"_s, u"Port to listen on; 0 for any."_s, u"number"_s, u"0"_s);
    const QCommandLineOption tableOption(u"table"_s, u"The path table to use."_s, u"file"_s);
    parser.addOptions({portOption, tableOption});
    parser.addHelpOption();
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    bool isPort = false;
    const quint16 port = parser.value(portOption).toUShort(&isPort);
    if (!table || !isPort) {
        printResult(CommandResult::failed(table ? u"no port number: "_s + parser.value(portOption)
                                                : u"no path table"_s));
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
