#pragma once

#include <QBasicTimer>
#include <QFutureWatcher>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// Draws one artwork, cut to its frame and rounded at the pixels it covers. The picture is fetched and
/// prepared away from the UI thread. A frame that changes its size keeps the old picture until it has come to
/// rest and the new one is there; another address drops it at once.
class ArtworkItem : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// As the record has it; empty for none.
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY addressChanged)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
public:
    enum Status { None, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit ArtworkItem(QQuickItem *parent = nullptr);
    ~ArtworkItem() override;

    [[nodiscard]] QString address() const { return m_address; }
    void setAddress(const QString &address);
    [[nodiscard]] qreal radius() const { return m_radius; }
    void setRadius(qreal radius);
    [[nodiscard]] Status status() const { return m_status; }

Q_SIGNALS:
    void addressChanged();
    void radiusChanged();
    void statusChanged();

protected:
    void updatePolish() override;
    void timerEvent(QTimerEvent *event) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    [[nodiscard]] QSize pixelSize() const;
    void request(const QSize &pixels);
    void receive();
    void dropPicture();
    void setStatus(Status status);

    QString m_address;
    qreal m_radius = 0;
    Status m_status = None;
    QFutureWatcher<QImage> m_request;
    QSize m_requestedPixels;
    qreal m_requestedRadius = 0;
    QBasicTimer m_rest; ///< runs while the frame still changes its size
    QImage m_picture;
    bool m_pictureIsNew = false;
};

} // namespace navorin
