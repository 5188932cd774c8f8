#include "Support/StreamServer.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <sys/socket.h>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

void finish(QTcpSocket *socket, ServedStream::End end)
{
    if (end == ServedStream::End::Hang)
        return;
    if (end == ServedStream::End::Close)
        return socket->disconnectFromHost();
    const linger atOnce{1, 0};
    setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket->abort();
}

/// The first byte that the request asks for; none if it asks for all.
qint64 rangeStart(const QByteArray &request)
{
    static const QRegularExpression range(u"^Range: bytes=(\\d+)-"_s,
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::CaseInsensitiveOption);
    const auto match = range.match(QString::fromLatin1(request));
    return match.hasMatch() ? match.captured(1).toLongLong() : -1;
}

} // namespace

StreamServer::StreamServer()
{
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
        const auto socket = nextPendingConnection();
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket, socket->readAll()); });
    });
}

QUrl StreamServer::serve(const QString &name, ServedStream stream)
{
    m_streams.insert(name, std::move(stream));
    return QUrl(u"http://127.0.0.1:%1/%2"_s.arg(serverPort()).arg(name));
}

void StreamServer::answer(QTcpSocket *socket, const QByteArray &request)
{
    const auto name = QString::fromLatin1(request.split(' ').value(1).mid(1));
    const auto stream = m_streams.value(name);
    ++m_requests[name];
    const auto wanted = rangeStart(request);
    const auto offset = stream.ranges ? std::clamp<qint64>(wanted, 0, stream.body.size()) : 0;
    const bool partial = stream.ranges && wanted >= 0;

    const auto total = QByteArray::number(stream.body.size());
    QByteArray head = "HTTP/1.1 "_ba + QByteArray::number(partial ? 206 : stream.status) + " X\r\n"_ba +
                      stream.headers + "Content-Type: audio/mpeg\r\nConnection: close\r\n"_ba;
    if (stream.sized)
        head += "Content-Length: "_ba + QByteArray::number(stream.body.size() - offset) + "\r\n"_ba;
    if (stream.ranges)
        head += "Accept-Ranges: bytes\r\n"_ba;
    if (partial)
        head += "Content-Range: bytes "_ba + QByteArray::number(offset) + '-' +
                QByteArray::number(stream.body.size() - 1) + '/' + total + "\r\n"_ba;
    socket->write(head + "\r\n"_ba);
    start(socket, stream, offset);
}

void StreamServer::start(QTcpSocket *socket, const ServedStream &stream, qint64 offset)
{
    const auto pump = new QTimer(socket);
    const auto held = std::make_shared<bool>(stream.holdAfter >= 0);
    connect(this, &StreamServer::released, pump, [held] { *held = false; });
    QElapsedTimer clock;
    clock.start();
    connect(pump, &QTimer::timeout, socket, [=, this, position = offset]() mutable {
        auto until = stream.body.size();
        if (stream.bytesPerSecond > 0)
            until = std::min(until, offset + stream.bytesPerSecond * clock.elapsed() / 1000);
        if (*held)
            until = std::min(until, stream.holdAfter);
        const auto written =
            socket->write(stream.body.sliced(position, std::max<qint64>(until - position, 0)));
        position += written;
        m_sent += written;
        if (position < stream.body.size() || socket->bytesToWrite() > 0)
            return;
        pump->stop();
        finish(socket, stream.end);
    });
    pump->start(10);
}

} // namespace navorin
