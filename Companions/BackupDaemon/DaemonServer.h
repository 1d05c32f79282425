#pragma once

#include <QJsonObject>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

#include <memory>
#include <vector>

class QTcpSocket;

/// The listening side of the daemon's channel on 127.0.0.1. Any number of clients; what is sent goes to all.
class DaemonServer : public QObject
{
    Q_OBJECT

public:
    explicit DaemonServer(QObject *parent = nullptr);
    ~DaemonServer() override;

    /// Starts to listen; port 0 takes a free one. False when the port is not to be had.
    [[nodiscard]] bool listen(quint16 port);
    [[nodiscard]] quint16 port() const;
    [[nodiscard]] int clientCount() const;

    /// Sends one message as one frame.
    void send(const QJsonObject &message);

    /// Sends bytes as they are, with no frame around them.
    void sendRaw(const QByteArray &bytes);

    /// Sends bytes one at a time, a few milliseconds apart. All that is sent meanwhile follows behind them.
    void dribble(const QByteArray &bytes);

    /// Closes every connection once what was sent is out.
    void dropClients();

Q_SIGNALS:
    void messageReceived(const QJsonObject &message);
    /// A line for the console: a client came or went, or sent what cannot be understood.
    void noticed(const QString &line);

private:
    struct Client;

    void acceptPending();
    void readFrom(Client &client);
    void remove(QTcpSocket *socket);
    void dribbleOne();
    void write(const QByteArray &bytes);

    QTcpServer m_server;
    std::vector<std::unique_ptr<Client>> m_clients;
    QTimer m_dribble;
    QByteArray m_slow; ///< left of what goes out byte by byte
    QByteArray m_held; ///< what waits behind it
};
