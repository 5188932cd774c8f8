#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>

namespace navorin {

/// Something to listen to, and how it goes wrong.
struct ServedStream
{
    enum class End { Close, Reset, Hang };

    QByteArray body;
    int status = 200;
    bool sized = false;        ///< says how long it is, as a track does
    bool ranges = false;       ///< sends ranges
    qint64 bytesPerSecond = 0; ///< 0: as fast as it goes
    qint64 holdAfter = -1;     ///< nothing more is sent after so many bytes, until released()
    End end = End::Close;
    QByteArray headers; ///< further header lines, each with its end
};

/// A loopback server of audio streams with faults, on the thread of the test.
class StreamServer : public QTcpServer
{
    Q_OBJECT
public:
    StreamServer();

    /// From now on a request for `name` gets `stream`.
    QUrl serve(const QString &name, ServedStream stream);
    [[nodiscard]] int requests(const QString &name) const { return m_requests.value(name); }
    /// Bytes of sound given to the network so far.
    [[nodiscard]] qint64 sent() const { return m_sent; }

Q_SIGNALS:
    /// To be emitted by a test: ends all holds.
    void released();

private:
    void answer(QTcpSocket *socket, const QByteArray &request);
    void start(QTcpSocket *socket, const ServedStream &stream, qint64 offset);

    QHash<QString, ServedStream> m_streams;
    QHash<QString, int> m_requests;
    qint64 m_sent = 0;
};

} // namespace navorin
