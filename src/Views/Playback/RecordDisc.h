#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// The black of a record: its grooves and the sheen on them. Light does not turn with the record, so this is
/// drawn once and stands still.
class RecordDisc : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Only the light that falls on it, to lie over the picture in its middle.
    Q_PROPERTY(bool isSheenOnly MEMBER m_isSheenOnly NOTIFY isSheenOnlyChanged)
public:
    explicit RecordDisc(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void isSheenOnlyChanged();

private:
    bool m_isSheenOnly = false;
};

} // namespace navorin
