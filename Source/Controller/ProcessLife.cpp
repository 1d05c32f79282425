#include "Source/Controller/ProcessLife.h"

#include "Extensions/TextFormat.h"
#include "Platform/Bundle.h"
#include "Platform/Desktop/RunningInstance.h"
#include "Platform/Ending.h"
#include "Platform/Relaunch.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/AppLanguage.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
constexpr auto WindowPause = 2s; ///< between two looks for what the user has open

bool hasOpenWindow()
{
    return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget *widget) {
        return widget->isVisible() && !widget->inherits("QSystemTrayIconSys");
    });
}
} // namespace

void ProcessLife::quitWhenTold()
{
    auto *notifier = new QSocketNotifier(Ending::descriptor(), QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [] { QApplication::exit(0); });
}

std::optional<int> ProcessLife::yieldToFirst(SingleInstance &place, const QString &identifier,
                                             std::chrono::steady_clock::time_point deadline)
{
    if (place.claim(0ms) != SingleInstance::Answer::Taken)
        return std::nullopt;
    switch (RunningInstance::ask(identifier, place, deadline)) {
    case RunningInstance::Outcome::Answered:
        return 0;
    case RunningInstance::Outcome::Ended:
        return std::nullopt;
    case RunningInstance::Outcome::Silent:
        break;
    }
    if (Ending::hasBegun())
        return 0;
    LanguageManager::shared().setInitialAppLanguage(SystemLanguageHelper::getSystemPrimaryLanguageCode());
    const QString name = pathValue("ApplicationFullName"_L1);
    RunningInstance::complain({
        .applicationName = name,
        .identifier = identifier,
        .iconFile = Bundle::main().resource(u"images/corvane.svg"_s),
        .text = formatted(MonitorControllerVC::runsButDoesNotAnswer, {name}),
    });
    return 1;
}

std::optional<QString> ProcessLife::relaunch()
{
    return Relaunch::spawnShell(Relaunch::command(Bundle::main().executablePath()));
}

void ProcessLife::startAnew(const char *reason)
{
    static bool isWaiting = false;
    if (isWaiting || Ending::hasBegun())
        return;
    if (hasOpenWindow()) {
        isWaiting = true;
        QTimer::singleShot(WindowPause, qApp, [reason] {
            isWaiting = false;
            startAnew(reason);
        });
        return;
    }
    QNLogger::logMonitorTrace(u"The monitor starts anew: "_s + QLatin1StringView(reason));
    if (const auto error = relaunch())
        QNLogger::logMonitorTrace(u"posix_spawn failed: "_s + *error);
    else
        Ending::begin();
}
