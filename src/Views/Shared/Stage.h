#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// What every screen wants to know of its surroundings: whether anybody can see the window, so that
/// animations stop when nobody can, and whether it is steered by keyboard, so that focus is shown to those
/// who need it.
class Stage : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isSeen READ isSeen NOTIFY isSeenChanged)
    Q_PROPERTY(bool keyboardSteers READ keyboardSteers NOTIFY keyboardSteersChanged)
public:
    /// Watches the application's events from then on.
    explicit Stage(QObject *parent = nullptr);

    [[nodiscard]] bool isSeen() const { return m_isSeen; }
    /// The last thing done was to move the focus by key, not to point.
    [[nodiscard]] bool keyboardSteers() const { return m_keyboardSteers; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isSeenChanged();
    void keyboardSteersChanged();

private:
    void updateSeen();
    void setKeyboardSteers(bool steers);

    bool m_isSeen = true;
    bool m_keyboardSteers = false;
};

} // namespace navorin
