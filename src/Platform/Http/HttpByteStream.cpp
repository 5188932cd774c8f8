#include "Platform/Http/HttpByteStream.h"

#include <utility>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype pieceLength = 256 << 10;
/// What Qt may hold back while we are busy: without a bound it is as much as the network gives.
constexpr qint64 readBufferLength = 1 << 20;

HttpRequest withoutCompression(HttpRequest request)
{
    request.headers.append({"Accept-Encoding"_ba, "identity"_ba});
    return request;
}

/// -1 if the answer does not tell; in chunks, a length beside them counts for nothing.
qint64 expectedLength(const QNetworkReply &reply)
{
    bool isNumber = false;
    const auto length = reply.rawHeader("Content-Length"_ba).toLongLong(&isNumber);
    return isNumber && length >= 0 && !reply.hasRawHeader("Transfer-Encoding"_ba) ? length : -1;
}

} // namespace

HttpByteStream::HttpByteStream(HttpRequest request, HttpStreamOrder order, QNetworkAccessManager &network,
                               const HttpSessionConfiguration &configuration, QObject *parent)
    : HttpTransfer(withoutCompression(std::move(request)), network, configuration, parent)
    , m_sink(std::move(order.sink))
    , m_promise(std::move(order.promise))
    , m_piece(pieceLength, Qt::Uninitialized)
    , m_stopper(std::move(order.stop), Stopper{this})
{
}

HttpByteStream::~HttpByteStream()
{
    HttpByteStream::fail(endedSession());
}

void HttpByteStream::Stopper::operator()() const
{
    QMetaObject::invokeMethod(
        stream,
        [stream = stream] { stream->fail(TransportError::Kind::Cancelled, u"cancelled by the caller"_s); },
        Qt::QueuedConnection);
}

void HttpByteStream::prepareReply()
{
    reply().setReadBufferSize(readBufferLength);
    connect(&reply(), &QNetworkReply::metaDataChanged, this, &HttpByteStream::passOn);
    connect(&reply(), &QNetworkReply::readyRead, this, &HttpByteStream::passOn);
}

void HttpByteStream::passOn()
{
    if (nextRequest().verdict != Redirection::Verdict::None) {
        reply().skip(reply().bytesAvailable());
        return;
    }
    try {
        begin();
        for (qint64 count = 0; (count = reply().read(m_piece.data(), m_piece.size())) > 0;) {
            m_sink->receive(QByteArrayView(m_piece).first(count));
        }
    } catch (...) {
        fail(std::current_exception());
    }
}

void HttpByteStream::begin()
{
    if (std::exchange(m_hasBegun, true))
        return;
    m_sink->begin(expectedLength(reply()));
}

void HttpByteStream::completeAnswer()
{
    passOn();
    if (markSettled())
        m_promise.finish();
}

void HttpByteStream::fail(const std::exception_ptr &error)
{
    if (markSettled())
        failPromise(m_promise, error);
}

} // namespace navorin
