#pragma once

#include "Views/Library/PlaylistDetailView.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace navorin {

class OfflineStore;

/// Whether one track of a playlist is kept on this machine, and keeping it or not. Follows the track that
/// stands in its row.
class TrackDownload : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(TrackDownloadState)
    Q_PROPERTY(navorin::PlaylistDetailView *playlist READ playlist WRITE setPlaylist NOTIFY changed)
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY changed)
    Q_PROPERTY(bool isKept READ isKept NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    /// 0 to 1, while it is loading.
    Q_PROPERTY(double progress READ progress NOTIFY changed)
public:
    explicit TrackDownload(QObject *parent = nullptr);
    explicit TrackDownload(OfflineStore &offline, QObject *parent = nullptr);

    [[nodiscard]] PlaylistDetailView *playlist() const { return m_playlist; }
    void setPlaylist(PlaylistDetailView *playlist);
    [[nodiscard]] int row() const { return m_row; }
    void setRow(int row);
    [[nodiscard]] bool isKept() const;
    [[nodiscard]] bool isLoading() const;
    [[nodiscard]] double progress() const;

    /// Removes what is kept, gives up what is loading, and else fetches it.
    Q_INVOKABLE void toggle();

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] const PlaylistTrack *track() const;

    OfflineStore &m_offline;
    QPointer<PlaylistDetailView> m_playlist;
    int m_row = -1;
};

} // namespace navorin
