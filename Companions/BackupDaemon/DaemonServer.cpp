#include "Companions/BackupDaemon/DaemonServer.h"

#include "Companions/BackupDaemon/FrameCodec.h"

#include <QJsonDocument>
#include <QPointer>
#include <QTcpSocket>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds DribblePause{5};
}

struct DaemonServer::Client {
    QTcpSocket *socket = nullptr;
    FrameReader reader;
};

DaemonServer::DaemonServer(QObject *parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &DaemonServer::acceptPending);
    m_dribble.setInterval(DribblePause);
    connect(&m_dribble, &QTimer::timeout, this, &DaemonServer::dribbleOne);
}

DaemonServer::~DaemonServer()
{
    for (const auto &client : m_clients)
        client->socket->disconnect(this); // the sockets die with m_server, after the list of clients
}

bool DaemonServer::listen(quint16 port)
{
    return m_server.listen(QHostAddress::LocalHost, port);
}

quint16 DaemonServer::port() const
{
    return m_server.serverPort();
}

int DaemonServer::clientCount() const
{
    return static_cast<int>(m_clients.size());
}

void DaemonServer::send(const QJsonObject &message)
{
    sendRaw(framed(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}

void DaemonServer::sendRaw(const QByteArray &bytes)
{
    // What is said during a slow frame waits for its end: between its bytes it would be taken for a part of it.
    if (m_dribble.isActive())
        m_held.append(bytes);
    else
        write(bytes);
}

void DaemonServer::dribble(const QByteArray &bytes)
{
    m_slow.append(bytes);
    m_dribble.start();
}

void DaemonServer::dribbleOne()
{
    write(m_slow.left(1));
    m_slow.remove(0, 1);
    if (!m_slow.isEmpty())
        return;
    m_dribble.stop();
    write(std::exchange(m_held, {}));
}

void DaemonServer::write(const QByteArray &bytes)
{
    for (const auto &client : m_clients)
        client->socket->write(bytes);
}

void DaemonServer::dropClients()
{
    // A socket that has nothing left to send reports its end from inside the call, which removes the client.
    std::vector<QTcpSocket *> sockets;
    for (const auto &client : m_clients)
        sockets.push_back(client->socket);
    for (QTcpSocket *socket : sockets)
        socket->disconnectFromHost();
}

void DaemonServer::acceptPending()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_clients.push_back(std::make_unique<Client>(Client{socket, {}}));
        Client &client = *m_clients.back();
        connect(socket, &QTcpSocket::readyRead, this, [this, &client] { readFrom(client); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { remove(socket); });
        Q_EMIT noticed(u"client connected"_s);
    }
}

void DaemonServer::readFrom(Client &client)
{
    if (!client.reader.feed(client.socket->readAll())) {
        Q_EMIT noticed(u"client dropped: frame too large"_s);
        client.socket->abort();
        return;
    }
    const QPointer<QTcpSocket> alive(client.socket);
    while (alive && alive->state() == QAbstractSocket::ConnectedState) {
        const auto payload = client.reader.takePayload();
        if (!payload)
            return;
        const QJsonDocument document = QJsonDocument::fromJson(*payload);
        if (document.isObject())
            Q_EMIT messageReceived(document.object());
        else
            Q_EMIT noticed(u"client sent no JSON object"_s);
    }
}

void DaemonServer::remove(QTcpSocket *socket)
{
    std::erase_if(m_clients, [socket](const auto &client) { return client->socket == socket; });
    socket->deleteLater();
    Q_EMIT noticed(u"client disconnected"_s);
}
