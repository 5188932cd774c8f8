#pragma once

#include <QObject>

namespace navorin {

/// What the user told the desktop about how programs should look and move. Without a desktop that says so,
/// everything is as drawn. UI thread only.
class DesktopSettings : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// How many times larger than drawn texts are wanted, beyond what the windowing system enlarges by
    /// itself; never below 1.
    [[nodiscard]] double textScale() const { return m_textScale; }
    /// Nothing should move that can as well stand still.
    [[nodiscard]] bool reducedMotion() const { return m_reducedMotion; }

    void setTextScale(double scale);
    void setReducedMotion(bool reduced);

Q_SIGNALS:
    void textScaleChanged();
    void reducedMotionChanged();

private:
    double m_textScale = 1;
    bool m_reducedMotion = false;
};

} // namespace navorin
