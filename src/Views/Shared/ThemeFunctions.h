#pragma once

#include <QColor>
#include <QObject>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// The computed part of the theme, for QML: see ThemeTones.h and SpringCurve.h.
class ThemeFunctions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor accent READ accent CONSTANT)
    Q_PROPERTY(QColor background READ background CONSTANT)
public:
    using QObject::QObject;

    [[nodiscard]] static QColor accent();
    [[nodiscard]] static QColor background();

    Q_INVOKABLE static QColor glow(const QColor &color);
    Q_INVOKABLE static QColor ink(const QColor &color);
    Q_INVOKABLE static double veil(const QColor &color);
    /// `over` on `under`, opaque.
    Q_INVOKABLE static QColor blend(const QColor &under, const QColor &over, double alpha);

    /// A system symbol's image in this colour, empty without a symbol.
    Q_INVOKABLE static QUrl symbolAddress(const QString &symbol, const QColor &color);

    Q_INVOKABLE static int springDuration(double response, double damping);
    Q_INVOKABLE static QVariantList springCurve(double response, double damping);
};

} // namespace navorin
