#pragma once

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// One line of text filled with a gradient from top to bottom; as wide as it is long. Drawn once, by any
/// renderer.
class GradientText : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY changed)
    Q_PROPERTY(QFont font MEMBER m_font NOTIFY changed)
    Q_PROPERTY(QColor topColor MEMBER m_top NOTIFY changed)
    Q_PROPERTY(QColor bottomColor MEMBER m_bottom NOTIFY changed)
public:
    explicit GradientText(QQuickItem *parent = nullptr);
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    void measure();

    QString m_text;
    QFont m_font;
    QColor m_top = Qt::white;
    QColor m_bottom = Qt::white;
};

} // namespace navorin
