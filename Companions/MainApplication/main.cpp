#include "Companions/MainApplication/FrontApplication.h"
#include "Companions/MainApplication/MainApplication.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption tableOption(QStringLiteral("table"), QStringLiteral("The path table to use."),
                                         QStringLiteral("file"));
    parser.addOption(tableOption);
    parser.addHelpOption();
    parser.addPositionalArgument(
        QStringLiteral("command"),
        QStringLiteral("One command to run; with none they are read from standard input."),
        QStringLiteral("[command...]"));
    parser.process(application);

    const auto table = PathTable::load(parser.value(tableOption));
    if (!table) {
        printResult(CommandResult::failed(QStringLiteral("no path table")));
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
    const bool isInFront = ownName == table->value(QStringLiteral("ApplicationFullName"));
    FrontApplication front;
    if (isInFront && !front.open())
        printLine(QStringLiteral("-- the desktop does not know of it: no session bus, or another is in front"));

    LineInput input;
    QObject::connect(&input, &LineInput::lineRead, &application, [&mainApplication](const QString &line) {
        if (line == QLatin1StringView("quit"))
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
