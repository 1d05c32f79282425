#include "Platform/Desktop/RunningInstance.h"

#include "Platform/BusAddress.h"
#include "Platform/Desktop/Applications.h"
#include "Platform/Ending.h"
#include "Platform/SessionBus/BusConnection.h"

#include <QDBusPendingCall>

#include <cstdio>
#include <thread>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
constexpr auto LookPeriod = 10ms;
constexpr auto AskAgainAfter = 50ms;
constexpr auto NoticeLimit = 250ms;
constexpr int Urgent = 2;

using Moment = std::chrono::steady_clock::time_point;

int millisecondsUntil(Moment deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return int(std::max<std::chrono::milliseconds>(left, 1ms).count());
}

std::shared_ptr<BusConnection> busThatAnswers()
{
    return BusAddress::isWithheld() ? nullptr : BusConnection::open();
}
} // namespace

RunningInstance::Outcome RunningInstance::ask(const QString &identifier, SingleInstance &place, Moment deadline)
{
    const auto bus = busThatAnswers();
    std::optional<QDBusPendingCall> question;
    Moment askAt = std::chrono::steady_clock::now();
    for (;;) {
        const Moment now = std::chrono::steady_clock::now();
        if (place.claim(0ms) != SingleInstance::Answer::Taken)
            return Outcome::Ended;
        if (now >= deadline || Ending::hasBegun())
            return Outcome::Silent;
        if (question && question->isFinished()) {
            if (!question->isError())
                return Outcome::Answered;
            question.reset();
            askAt = now + AskAgainAfter;
        }
        if (bus && !question && now >= askAt)
            question = bus->bus().asyncCall(Applications::activation(identifier), millisecondsUntil(deadline));
        std::this_thread::sleep_for(LookPeriod); // a lock can't be waited for with a limit
    }
}

void RunningInstance::complain(const Notice &notice)
{
    std::fprintf(stderr, "%s\n", notice.text.toLocal8Bit().constData());
    const auto bus = busThatAnswers();
    if (!bus)
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                                       u"org.freedesktop.Notifications"_s, u"Notify"_s);
    call.setAutoStartService(false);
    const QVariantMap hints{{u"desktop-entry"_s, notice.identifier},
                            {u"urgency"_s, QVariant::fromValue(uchar(Urgent))}};
    call.setArguments({notice.applicationName, 0U, notice.iconFile, notice.applicationName,
                       notice.text.toHtmlEscaped(), QStringList(), hints, -1});
    if (bus->bus().send(call))
        bus->flush(NoticeLimit);
}
