#pragma once

#include "Models/Station.h"
#include "Platform/Tasks/MainQueue.h"
#include "Platform/Tasks/SteadyClock.h"
#include "Views/Lyrics/LyricsClock.h"
#include "Views/Lyrics/LyricsLineModel.h"

#include <QColor>
#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace navorin {

class APIClient;
class RadioPlayer;

/// The words of what plays, and which of them are sung. It is made for what plays then, follows the player
/// from song to song, and keeps nothing when it goes.
///
/// Two clocks drive one rule: a track has the player's position, a live station only a stopwatch that the
/// backend sets with each answer.
class LyricsSheet : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LyricsSheetState)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(QString title READ title NOTIFY stationChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY stationChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
    Q_PROPERTY(bool showTranslation READ showTranslation NOTIFY showTranslationChanged)
    Q_PROPERTY(navorin::LyricsLineModel *lines READ lines CONSTANT)
    /// The row that is sung; -1 for none.
    Q_PROPERTY(int activeIndex READ activeIndex NOTIFY activeIndexChanged)
    /// A tap on a timed line goes there.
    Q_PROPERTY(bool canSeek READ canSeek NOTIFY canSeekChanged)
    /// Somebody can see it. Nothing is looked up while nobody can.
    Q_PROPERTY(bool isSeen READ isSeen WRITE setSeen NOTIFY isSeenChanged)
public:
    enum Content { Failed, Loading, Lines, NotFound };
    Q_ENUM(Content)

    /// All that it stands on; each must outlive it.
    struct Sources
    {
        RadioPlayer &player;
        APIClient &client;
        MainQueue &queue;
        SteadyClock now = &std::chrono::steady_clock::now;
    };

    explicit LyricsSheet(QObject *parent = nullptr);
    /// `station` is what it is about while nothing is selected.
    LyricsSheet(Station station, Sources sources, QObject *parent = nullptr);

    [[nodiscard]] Content content() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] QColor themeColor() const;
    [[nodiscard]] bool showTranslation() const { return m_showTranslation; }
    [[nodiscard]] LyricsLineModel *lines() { return &m_lines; }
    [[nodiscard]] int activeIndex() const { return m_activeIndex; }
    [[nodiscard]] bool canSeek() const;
    [[nodiscard]] bool isSeen() const { return m_isSeen; }
    void setSeen(bool seen);

    /// Fetches the words of what plays. Once, when the sheet appears.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void toggleTranslation();
    /// To where this row's line begins. Nothing on a live station, or for a line without a time.
    Q_INVOKABLE void seekTo(int row);
    Q_INVOKABLE void togglePlayPause();

Q_SIGNALS:
    void contentChanged();
    void stationChanged();
    void themeColorChanged();
    void showTranslationChanged();
    void activeIndexChanged();
    void canSeekChanged();
    void isSeenChanged();

private:
    [[nodiscard]] const Station &effectiveStation() const;
    void followTrack();
    void load();
    static QCoro::Task<void> fetch(QPointer<LyricsSheet> sheet);
    void store(std::optional<LyricsData> lyrics);
    void fail();
    void followPlayback();
    void show();
    void updateTicking();
    void tick();
    [[nodiscard]] double currentPosition() const;
    void setActiveIndex(int index);

    const Station m_station;
    Sources m_sources;
    std::optional<LyricsData> m_lyrics; ///< none also while it is being fetched
    bool m_loadFailed = false;
    bool m_showTranslation = true;
    LyricsClock m_clock;
    std::optional<QString> m_lastTrackID;
    LyricsLineModel m_lines;
    int m_activeIndex = -1;
    bool m_isSeen = true;
    std::unique_ptr<MainQueue::Timer> m_ticking;
};

} // namespace navorin
