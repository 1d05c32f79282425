#include "Platform/SessionBus/BusProbe.h"

#include "Platform/BusAddress.h"
#include "Platform/WorkerThread.h"

#include <QStringList>

#include <cerrno>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
using Clock = std::chrono::steady_clock;
using BusProbe::Answer;

// The byte layout is that of the D-Bus specification, "Authentication Protocol" and "Message Protocol".
constexpr char MethodCall = 1;
constexpr char MethodReturn = 2;
constexpr char Error = 3;
constexpr qsizetype FixedHeaderBytes = 16;

void appendNumber(QByteArray &bytes, quint32 number)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes.append(char(number >> shift & 0xff));
}

void appendField(QByteArray &fields, char code, char type, const QByteArray &value)
{
    while (fields.size() % 8 != 0)
        fields.append('\0');
    fields.append(code).append('\1').append(type).append('\0');
    appendNumber(fields, quint32(value.size()));
    fields.append(value).append('\0');
}

/// The call that a connection to a bus must begin with.
QByteArray hello()
{
    QByteArray fields;
    appendField(fields, 1, 'o', "/org/freedesktop/DBus");
    appendField(fields, 2, 's', "org.freedesktop.DBus");
    appendField(fields, 3, 's', "Hello");
    appendField(fields, 6, 's', "org.freedesktop.DBus");
    QByteArray message("l");
    message.append(MethodCall).append('\0').append('\1');
    appendNumber(message, 0); // of the body
    appendNumber(message, 1); // the serial
    appendNumber(message, quint32(fields.size()));
    message.append(fields);
    while (message.size() % 8 != 0)
        message.append('\0');
    return message;
}

/// A socket that never waits longer than until its deadline.
class Line
{
public:
    explicit Line(Clock::time_point deadline)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)), m_deadline(deadline)
    {
    }
    ~Line()
    {
        if (m_socket >= 0)
            close(m_socket);
    }
    Line(const Line &) = delete;

    Answer connectTo(const sockaddr_un &address, socklen_t size)
    {
        while (m_socket >= 0) {
            if (connect(m_socket, reinterpret_cast<const sockaddr *>(&address), size) == 0)
                return Answer::Answers;
            if (errno == EINTR)
                continue;
            if (errno != EAGAIN)
                return Answer::Missing;
            if (Clock::now() >= m_deadline) // its queue is full, and nobody takes from it
                return Answer::Silent;
            std::this_thread::sleep_for(5ms);
        }
        return Answer::Missing;
    }

    bool write(QByteArray bytes)
    {
        while (!bytes.isEmpty()) {
            const auto sent = send(m_socket, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
            if (sent > 0)
                bytes.remove(0, sent);
            else if (errno != EINTR && (errno != EAGAIN || !isReady(POLLOUT)))
                return false;
        }
        return true;
    }

    /// What has come, up to the first that `enough` is content with; none when the time is over.
    std::optional<QByteArray> read(const std::function<bool(const QByteArray &)> &enough)
    {
        QByteArray bytes;
        while (!enough(bytes)) {
            char part[512];
            const auto got = recv(m_socket, part, sizeof part, 0);
            if (got > 0)
                bytes.append(part, got);
            else if (got == 0 || (errno != EINTR && (errno != EAGAIN || !isReady(POLLIN))))
                return std::nullopt;
        }
        return bytes;
    }

private:
    bool isReady(short event) const
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now());
        pollfd waiting{m_socket, event, 0};
        return left > 0ms && poll(&waiting, 1, int(left.count())) != 0;
    }

    int m_socket;
    Clock::time_point m_deadline;
};

Answer greet(Line &line)
{
    const QByteArray user = QByteArray::number(getuid()).toHex();
    if (!line.write(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n"))
        return Answer::Silent;
    const auto accepted = line.read([](const QByteArray &bytes) { return bytes.endsWith("\r\n"); });
    if (!accepted)
        return Answer::Silent;
    if (!accepted->startsWith("OK")) // it wants another way of proof, which the library knows
        return Answer::Answers;
    if (!line.write("BEGIN\r\n" + hello()))
        return Answer::Silent;
    const auto reply = line.read([](const QByteArray &bytes) { return bytes.size() >= FixedHeaderBytes; });
    const bool isAnswer = reply && (reply->at(1) == MethodReturn || reply->at(1) == Error);
    return isAnswer ? Answer::Answers : Answer::Silent;
}

/// The socket of one address; none for a transport other than a local socket.
struct SocketPlace {
    sockaddr_un address{};
    socklen_t size = 0;
};
std::optional<SocketPlace> placeOf(const QString &address)
{
    if (!address.startsWith("unix:"_L1))
        return std::nullopt;
    for (const QString &entry : address.sliced(5).split(u',')) {
        const QString key = entry.section(u'=', 0, 0);
        QByteArray name = QByteArray::fromPercentEncoding(entry.section(u'=', 1).toLocal8Bit());
        if (key == u"runtime" && name == "yes")
            name = qgetenv("XDG_RUNTIME_DIR") + "/bus";
        else if (key == u"abstract")
            name.prepend('\0');
        else if (key != u"path")
            continue;
        SocketPlace place;
        if (name.isEmpty() || name.size() >= qsizetype(sizeof place.address.sun_path))
            return std::nullopt;
        place.address.sun_family = AF_UNIX;
        std::memcpy(place.address.sun_path, name.constData(), size_t(name.size()));
        place.size = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()) + (name.at(0) ? 1 : 0));
        return place;
    }
    return std::nullopt;
}
} // namespace

Answer BusProbe::ask(const QString &address, std::chrono::milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    for (const QString &one : address.split(u';', Qt::SkipEmptyParts)) {
        const auto place = placeOf(one);
        if (!place)
            return Answer::Answers;
        Line line(deadline);
        Answer answer = line.connectTo(place->address, place->size);
        if (answer == Answer::Answers)
            answer = greet(line);
        if (answer != Answer::Missing) // the library, too, goes on only where it can't connect
            return answer;
    }
    return Answer::Missing;
}

bool BusProbe::askElsewhere(std::chrono::milliseconds limit, std::function<void(Answer)> told)
{
    try {
        startWorkerThread("corvane-probe", [address = BusAddress::current(), limit, told = std::move(told)] {
            told(address ? ask(*address, limit) : Answer::Missing);
        });
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

struct BusProbe::Question::State {
    std::mutex mutex;
    std::condition_variable came;
    std::optional<Answer> answer;
};

BusProbe::Question::Question(std::chrono::milliseconds limit)
    : m_state(std::make_shared<State>()), m_deadline(Clock::now() + limit)
{
    const bool asked = askElsewhere(limit, [state = m_state](Answer answer) {
        const std::lock_guard lock(state->mutex);
        state->answer = answer;
        state->came.notify_one();
    });
    if (!asked)
        m_state->answer = Answer::Silent;
}

Answer BusProbe::Question::get()
{
    std::unique_lock lock(m_state->mutex);
    m_state->came.wait_until(lock, m_deadline, [this] { return m_state->answer.has_value(); });
    return m_state->answer.value_or(Answer::Silent);
}

void BusProbe::settle(Question &question)
{
    if (question.get() == Answer::Silent)
        BusAddress::withhold();
}
