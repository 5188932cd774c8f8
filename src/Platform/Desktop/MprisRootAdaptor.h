#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>

#include <functional>

namespace navorin {

/// What the desktop may ask of the program itself. Either may be missing; then nothing happens.
struct MprisHooks
{
    std::function<void()> raise; ///< bring the window to the front
    std::function<void()> quit;
};

/// org.mpris.MediaPlayer2: who this is, and its window.
class MprisRootAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes CONSTANT)
    Q_PROPERTY(bool CanRaise READ yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)
public:
    MprisRootAdaptor(QObject *parent, MprisHooks hooks);

    [[nodiscard]] bool yes() const { return true; }
    [[nodiscard]] bool no() const { return false; }
    [[nodiscard]] QString identity() const;
    [[nodiscard]] QString desktopEntry() const;
    [[nodiscard]] QStringList none() const { return {}; }

public Q_SLOTS:
    void Raise();
    void Quit();

private:
    MprisHooks m_hooks;
};

} // namespace navorin
