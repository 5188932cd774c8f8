#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class RadioPlayer;

/// What the button of a player shows: a spinner, or the glyph of the act it will do.
struct PlayButton
{
    bool isWaiting = false;
    QString symbol; ///< also under a spinner
    QString name;   ///< the act in words

    bool operator==(const PlayButton &) const = default;
};
[[nodiscard]] PlayButton playButton(bool isPlaying, bool isBuffering);

/// How far a track has come, 0 to 1; below 0 where there is no telling.
[[nodiscard]] double playedShare(bool isLive, double currentTime, double duration);

/// The strip above the tabs while a station is selected.
class MiniPlayerBar : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(MiniPlayerBarState)
    Q_PROPERTY(QString artworkAddress READ artworkAddress NOTIFY stationChanged)
    Q_PROPERTY(QString title READ title NOTIFY stationChanged)
    Q_PROPERTY(QString stationName READ stationName NOTIFY stationChanged)
    Q_PROPERTY(QString buttonSymbol READ buttonSymbol NOTIFY playbackChanged)
    Q_PROPERTY(QString buttonName READ buttonName NOTIFY playbackChanged)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY playbackChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY playbackChanged)
    Q_PROPERTY(bool isLive READ isLive NOTIFY progressChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
public:
    explicit MiniPlayerBar(QObject *parent = nullptr);
    explicit MiniPlayerBar(RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] QString artworkAddress() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString stationName() const;
    [[nodiscard]] QString buttonSymbol() const;
    [[nodiscard]] QString buttonName() const;
    [[nodiscard]] bool isWaiting() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool isLive() const;
    [[nodiscard]] double progress() const;
    [[nodiscard]] QColor themeColor() const;

    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void openFullPlayer();

Q_SIGNALS:
    void stationChanged();
    void playbackChanged();
    void progressChanged();
    void themeColorChanged();

private:
    [[nodiscard]] PlayButton button() const;

    RadioPlayer &m_player;
};

} // namespace navorin
