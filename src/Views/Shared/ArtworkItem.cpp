#include "Views/Shared/ArtworkItem.h"

#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Backend/APIClient.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QTimerEvent>

namespace navorin {

namespace {

constexpr int restMilliseconds = 150;

} // namespace

ArtworkItem::ArtworkItem(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    // A watcher and no continuation: a future may not be cancelled once its continuation is gone (Qt 6.4
    // walks the chain by bare pointers).
    connect(&m_request, &QFutureWatcherBase::finished, this, &ArtworkItem::receive);
}

ArtworkItem::~ArtworkItem()
{
    m_request.cancel();
}

void ArtworkItem::setAddress(const QString &address)
{
    if (address == m_address)
        return;
    m_address = address;
    dropPicture();
    setStatus(m_address.isEmpty() ? None : Loading);
    polish();
    Q_EMIT addressChanged();
}

void ArtworkItem::setRadius(qreal radius)
{
    if (qFuzzyCompare(radius, m_radius))
        return;
    m_radius = radius;
    polish();
    Q_EMIT radiusChanged();
}

void ArtworkItem::updatePolish()
{
    const auto pixels = pixelSize();
    if (m_address.isEmpty() || pixels.isEmpty())
        return;
    if (pixels == m_requestedPixels && qFuzzyCompare(m_radius, m_requestedRadius))
        return;
    if (m_picture.isNull())
        request(pixels);
    else
        m_rest.start(restMilliseconds, this);
}

void ArtworkItem::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_rest.timerId()) {
        QQuickItem::timerEvent(event);
        return;
    }
    m_rest.stop();
    if (!pixelSize().isEmpty())
        request(pixelSize());
}

void ArtworkItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    polish();
    update();
}

void ArtworkItem::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        polish();
    QQuickItem::itemChange(change, value);
}

QSGNode *ArtworkItem::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(old);
    if (m_picture.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_pictureIsNew = true;
    }
    if (m_pictureIsNew) {
        auto *texture = window()->createTextureFromImage(m_picture, QQuickWindow::TextureCanUseAtlas);
        node->setTexture(texture);
        node->setSourceRect(QRectF(QPointF(), texture->textureSize()));
        m_pictureIsNew = false;
    }
    node->setRect(boundingRect());
    return node;
}

QSize ArtworkItem::pixelSize() const
{
    if (!window())
        return {};
    return (size() * window()->effectiveDevicePixelRatio()).toSize();
}

void ArtworkItem::request(const QSize &pixels)
{
    m_request.cancel();
    m_requestedPixels = pixels;
    m_requestedRadius = m_radius;
    const auto url = APIClient::shared().absolute(m_address);
    if (!url) {
        setStatus(Failed);
        return;
    }
    m_request.setFuture(
        ArtworkLoader::shared().load(*url, pixels, m_radius * window()->effectiveDevicePixelRatio()));
}

void ArtworkItem::receive()
{
    const auto answer = m_request.future();
    if (answer.isCanceled())
        return;
    const auto picture = answer.result();
    if (picture.isNull()) {
        setStatus(m_picture.isNull() ? Failed : Ready);
        return;
    }
    m_picture = picture;
    m_pictureIsNew = true;
    setStatus(Ready);
    update();
}

void ArtworkItem::dropPicture()
{
    m_rest.stop();
    m_request.cancel();
    m_requestedPixels = {};
    m_picture = {};
    update();
}

void ArtworkItem::setStatus(Status status)
{
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

} // namespace navorin
