#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class DesktopSettings;

/// What every screen wants to know of its surroundings: whether anybody can see the window, so that
/// animations stop when nobody can; whether it is steered by keyboard, so that focus is shown to those
/// who need it; and what the desktop says about texts and motion.
class Stage : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isSeen READ isSeen NOTIFY isSeenChanged)
    Q_PROPERTY(bool keyboardSteers READ keyboardSteers NOTIFY keyboardSteersChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)
public:
    /// Watches the application's events from then on.
    explicit Stage(QObject *parent = nullptr);

    [[nodiscard]] bool isSeen() const { return m_isSeen; }
    /// The last thing done was to move the focus by key, not to point.
    [[nodiscard]] bool keyboardSteers() const { return m_keyboardSteers; }

    /// How many times larger than drawn texts are, 1 to 1.5: the layouts hold up to there.
    [[nodiscard]] double textScale() const;
    /// Nothing moves that can as well stand still.
    [[nodiscard]] bool reducedMotion() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isSeenChanged();
    void keyboardSteersChanged();
    void textScaleChanged();
    void reducedMotionChanged();

private:
    void updateSeen();
    void setKeyboardSteers(bool steers);

    const DesktopSettings *m_settings;
    bool m_isSeen = true;
    bool m_keyboardSteers = false;
};

} // namespace navorin
