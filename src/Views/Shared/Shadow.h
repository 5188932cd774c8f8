#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// How far a shadow of this blur reaches beyond its box.
[[nodiscard]] int shadowReach(int blur);
/// The black shadow of a rounded box as a nine-slice bitmap, opaque in its middle, with borders of
/// shadowBorder(). With `boxHeight` it is that high and stretches sideways only.
[[nodiscard]] QImage shadowImage(int radius, int blur, int boxHeight = 0);
/// Width of the nine-slice borders, from the outer edge of the shadow.
[[nodiscard]] int shadowBorder(int radius, int blur);

/// The shadow of a rounded box that fills this item, from one small bitmap for each elevation.
class Shadow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int radius MEMBER m_radius NOTIFY changed)
    Q_PROPERTY(int blur MEMBER m_blur NOTIFY changed)
    /// How far down it falls.
    Q_PROPERTY(int drop MEMBER m_drop NOTIFY changed)
public:
    explicit Shadow(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    void updatePolish() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    int m_radius = 0;
    int m_blur = 16;
    int m_drop = 6;
    QImage m_image;
    bool m_isLow = false; ///< too low for nine slices
    bool m_imageIsNew = false;
};

} // namespace navorin
