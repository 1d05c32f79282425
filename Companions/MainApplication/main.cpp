#include "Companions/MainApplication/FrontApplication.h"
#include "Companions/MainApplication/MainApplication.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption tableOption(u"table"_s, u"The path table to use."_s, u"file"_s);
    parser.addOption(tableOption);
    parser.addHelpOption();
    parser.addPositionalArgument(
        u"command"_s, u"One command to run; with none they are read from standard input."_s, u"[command...]"_s);
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    if (!table) {
        printResult(CommandResult::failed(u"no path table"_s));
        return 2;
    }
    const MainApplication mainApplication(*table);
    if (const QStringList command = parser.positionalArguments(); !command.isEmpty()) {
        const CommandResult result = mainApplication.run(command.join(u' '));
        printResult(result);
        return result.done ? 0 : 1;
    }

    // Under the product's own name it is the application as a user starts it: it stays when nobody speaks to
    // it.
    const QString ownName = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const bool isInFront = ownName == table->value(u"ApplicationFullName"_s);
    FrontApplication front;
    if (isInFront && !front.open())
        printLine(u"-- the desktop does not know of it: no session bus, or another is in front"_s);

    LineInput input;
    QObject::connect(&input, &LineInput::lineRead, &application, [&mainApplication](const QString &line) {
        if (line == "quit"_L1)
            QCoreApplication::quit();
        else
            printResult(mainApplication.run(line));
    });
    if (!isInFront)
        QObject::connect(&input, &LineInput::ended, &application, &QCoreApplication::quit,
                         Qt::QueuedConnection);
    printResult(CommandResult::ok());
    return application.exec();
}
