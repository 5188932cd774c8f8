#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// A circle that closes clockwise from the top as `progress` goes from 0 to 1.
class ProgressRing : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal progress READ progress WRITE setProgress NOTIFY progressChanged)
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QColor trackColor READ trackColor WRITE setTrackColor NOTIFY trackColorChanged)
public:
    explicit ProgressRing(QQuickItem *parent = nullptr);

    [[nodiscard]] qreal progress() const { return m_progress; }
    void setProgress(qreal progress);
    [[nodiscard]] qreal lineWidth() const { return m_lineWidth; }
    void setLineWidth(qreal width);
    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor trackColor() const { return m_trackColor; }
    void setTrackColor(const QColor &color);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void progressChanged();
    void lineWidthChanged();
    void colorChanged();
    void trackColorChanged();

private:
    qreal m_progress = 0;
    qreal m_lineWidth = 2.5;
    QColor m_color = Qt::white;
    QColor m_trackColor = QColor(255, 255, 255, 36);
};

} // namespace navorin
