#pragma once

#include "Views/Catalogue/TrackListModel.h"

#include <QColor>
#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

class APIClient;
class OfflineStore;
class RadioPlayer;

/// The screen of a station with tracks: its state and actions. Tracks that the catalogue left out are fetched
/// when the screen first appears; they stay with the screen.
class StationDetailView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(StationDetailViewState)
    /// Set once, before the screen appears.
    Q_PROPERTY(QVariant station READ station WRITE setStation NOTIFY contentChanged)
    Q_PROPERTY(Content content READ content NOTIFY contentChanged)
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(QString artworkAddress READ artworkAddress NOTIFY contentChanged)
    Q_PROPERTY(QString trackCount READ trackCount NOTIFY contentChanged)
    Q_PROPERTY(navorin::TrackListModel *tracks READ tracks CONSTANT)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY playbackChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY playbackChanged)
    Q_PROPERTY(QColor themeColor READ themeColor NOTIFY themeColorChanged)
public:
    enum Content { Loading, Tracks, Failed, Live };
    Q_ENUM(Content)

    /// All that the screen stands on; each must outlive it.
    struct Sources
    {
        RadioPlayer &player;
        OfflineStore &offline;
        APIClient &client;
    };

    explicit StationDetailView(QObject *parent = nullptr);
    explicit StationDetailView(const Sources &sources, QObject *parent = nullptr);

    [[nodiscard]] QVariant station() const { return QVariant::fromValue(m_station); }
    void setStation(const QVariant &station);
    [[nodiscard]] Content content() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString artworkAddress() const;
    [[nodiscard]] QString trackCount() const;
    [[nodiscard]] TrackListModel *tracks() { return &m_tracks; }
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] QColor themeColor() const;

    /// Fetches the tracks where they are missing. A failure is only seen from there being none.
    Q_INVOKABLE void hydrateIfNeeded();
    /// Starts the station at a track and opens the full player.
    Q_INVOKABLE void play(int index);
    Q_INVOKABLE [[nodiscard]] bool isDownloaded(int row) const;
    Q_INVOKABLE void download(int row);
    Q_INVOKABLE void removeDownload(int row);

Q_SIGNALS:
    void contentChanged();
    void playbackChanged();
    void themeColorChanged();

private:
    [[nodiscard]] const Station &displayed() const { return m_hydrated ? *m_hydrated : m_station; }
    [[nodiscard]] const PlaylistTrack *trackAt(int row) const;
    static QCoro::Task<void> hydrate(QPointer<StationDetailView> screen);
    void setLoading(bool loading);
    void show();
    void markCurrentRow();

    Sources m_sources;
    Station m_station;
    std::optional<Station> m_hydrated;
    bool m_isLoading = false;
    TrackListModel m_tracks;
};

} // namespace navorin
