#include "Benchmarks/RunningJob.h"

#include "Platform/Home.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Utility/Paths/PathTable.h"

#include <QTime>

#include <netinet/in.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace
{
QByteArray clockText(int seconds)
{
    return QTime(0, 0).addSecs(seconds).toString(u"HH:mm:ss").toLatin1();
}
} // namespace

QByteArray RunningJob::frame(int number)
{
    QByteArray text =
        QByteArray(R"({"type":"operationProgress","userName":"ann@example.org","operationStartType":1,)"
                   R"("progressType":1,"operationType":0,"operationDetailedType":0,"operationData":)"
                   R"({"showPercentage":true,"progressData":{"percentage":")") +
        QByteArray::number(number / 20 % 101) + R"(","transferSpeed":")" + QByteArray::number(number % 97) +
        R"(.4 MB/s","estimatedTime":")" + clockText(number / 5) + R"(","elapsedtime":")" +
        clockText(number / 7) + R"(","tansferMode":"Backing up","filesize":"4.2 MB","dedupRemainingFiles":")" +
        QByteArray::number(100000 - number % 100000) + R"(","dedupCompletedFiles":")" +
        QByteArray::number(number) + R"(","filename":"/home/ann/Pictures/)" + QByteArray::number(number);
    const QByteArray end = R"(.jpeg"}}})";
    text += QByteArray(ReportBytes - text.size() - end.size(), 'p') + end;
    const auto size = static_cast<quint64>(text.size());
    return QByteArray(reinterpret_cast<const char *>(&size), sizeof size) + text;
}

void RunningJob::sendAll(int fd, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const auto count = ::send(fd, bytes.constData() + done, size_t(bytes.size() - done), MSG_NOSIGNAL);
        if (count <= 0)
            return;
        done += count;
    }
}

int RunningJob::listenOnLoopback(quint16 *port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(fd, reinterpret_cast<sockaddr *>(&address), size) != 0 || ::listen(fd, 4) != 0)
        qFatal("cannot listen");
    ::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size);
    *port = ntohs(address.sin_port);
    return fd;
}

void RunningJob::writeFiles(const TemporaryHome &home, quint16 port)
{
    const QString user = u"ann@example.org"_s;
    home.writeList(pathValue("LastUserLoginDetailsFilePath"_L1, {}),
                   QVariantMap{{u"Username"_s, user}, {u"dedup"_s, u"on"_s}});
    home.writeList(pathValue("TCPPortFile"_L1, {}), QVariantMap{{u"port"_s, qlonglong(port)}});
    home.writeList(pathValue("DeamonPreferencePath"_L1, {}),
                   QVariantMap{{user, QVariantMap{{u"EnableBandwidthThrottleKey"_s, false},
                                                  {u"BandwidthThrottleKey"_s, u"75"_s}}}});
    ArchiveMaker maker;
    home.write(pathValue("SchedulerSettingsFile"_L1, {}), maker.schedules({maker.record({
                                                              {u"corvaneUserName"_s, user},
                                                              {u"profileName"_s, *consoleUser()},
                                                              {u"frequency"_s, 2},
                                                              {u"status"_s, 1},
                                                          })}));
}
