#include "Companions/Console/Console.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>

#include <csignal>
#include <sys/signalfd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Ends the event loop on a signal to end, so that every program of the console is ended with it. The signals
/// are blocked and read from a descriptor; whoever starts a child unblocks them there.
void quitOnSignals(QCoreApplication &application)
{
    sigset_t ending;
    sigemptyset(&ending);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&ending, number);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    auto *notifier = new QSocketNotifier(signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK),
                                         QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::exit(130);
    });
}

bool enqueueScript(Console &console, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);)
        if (line = line.trimmed(); !line.isEmpty() && !line.startsWith(u'#'))
            console.enqueue(line);
    return true;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const auto option = [&parser](const QString &name, const QString &text, const QString &value) {
        const QCommandLineOption made(name, text, value);
        parser.addOption(made);
        return made;
    };
    const auto monitor = option(u"monitor"_s, u"Executable of the monitor."_s, u"file"_s);
    const auto table = option(u"table"_s, u"The path table to use."_s, u"file"_s);
    const auto script = option(u"script"_s, u"Run this file and end."_s, u"file"_s);
    const auto first = option(u"first"_s, u"Run this file, then go on."_s, u"file"_s);
    const auto tool = option(u"screenshot-tool"_s, u"Program that writes a picture."_s, u"file"_s);
    const auto out = option(u"out"_s, u"Folder for pictures."_s, u"folder"_s);
    const auto prefix = option(u"picture-prefix"_s, u"Goes before the name of each picture."_s, u"text"_s);
    parser.addHelpOption();
    parser.process(application);

    const QString folder = QCoreApplication::applicationDirPath();
    const QString beside = folder + u"/../corvane-monitor"_s;
    const ConsoleSettings settings{folder,
                                   parser.isSet(monitor) ? parser.value(monitor) : beside,
                                   parser.value(table),
                                   parser.value(tool),
                                   parser.value(prefix),
                                   parser.value(out)};
    const bool scripted = parser.isSet(script);
    quitOnSignals(application);
    adoptOrphans();

    Console console(settings, scripted ? Console::OnFailure::Stop : Console::OnFailure::GoOn);
    QObject::connect(&console, &Console::finished, &application, &QCoreApplication::exit, Qt::QueuedConnection);
    for (const QString &file : {parser.value(first), parser.value(script)}) {
        if (!file.isEmpty() && !enqueueScript(console, file)) {
            printResult(CommandResult::failed(u"cannot read "_s + file));
            return 2;
        }
    }
    if (scripted) {
        console.endAfterQueue();
        return application.exec();
    }
    LineInput input;
    QObject::connect(&input, &LineInput::lineRead, &console, &Console::enqueue);
    QObject::connect(&input, &LineInput::ended, &console, &Console::endAfterQueue);
    return application.exec();
}
