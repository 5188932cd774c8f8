#pragma once

#include "Models/APIModels.h"
#include "Views/Shared/RowListModel.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

class APIClient;
class AuthStore;
class RadioPlayer;

/// One playlist: its tracks, playing it, and changing it. Nothing changes here before the server has agreed;
/// then the playlist and the library are loaded anew, also when the screen has gone meanwhile.
class PlaylistDetailView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(PlaylistDetailViewState)
    /// The PlaylistSummary of which this is the screen; set once, before anything else.
    Q_PROPERTY(QVariant summary READ summary WRITE setSummary NOTIFY shownChanged)
    Q_PROPERTY(QString title READ title NOTIFY shownChanged)
    Q_PROPERTY(QString description READ description NOTIFY shownChanged)
    Q_PROPERTY(QString coverAddress READ coverAddress NOTIFY shownChanged)
    Q_PROPERTY(bool hasTracks READ hasTracks NOTIFY shownChanged)
    /// It was loaded and holds nothing.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY shownChanged)
    Q_PROPERTY(navorin::RowListModel *tracks READ tracks CONSTANT)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    /// There is nothing to show but the failure.
    Q_PROPERTY(bool canRetry READ canRetry NOTIFY errorChanged)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)
    /// A change is on its way to the server.
    Q_PROPERTY(bool isWriting READ isWriting NOTIFY isWritingChanged)
    Q_PROPERTY(bool showEditSheet MEMBER m_showEditSheet NOTIFY formChanged)
    Q_PROPERTY(QString editTitle MEMBER m_editTitle NOTIFY formChanged)
    Q_PROPERTY(QString editDesc MEMBER m_editDesc NOTIFY formChanged)
    Q_PROPERTY(bool showEditTrackSheet MEMBER m_showEditTrackSheet NOTIFY formChanged)
    Q_PROPERTY(QString editTrackTitle MEMBER m_editTrackTitle NOTIFY formChanged)
    Q_PROPERTY(QString editTrackArtist MEMBER m_editTrackArtist NOTIFY formChanged)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY stationChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
public:
    explicit PlaylistDetailView(QObject *parent = nullptr);
    PlaylistDetailView(AuthStore &auth, APIClient &client, RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] QVariant summary() const { return QVariant::fromValue(m_summary); }
    void setSummary(const QVariant &summary);
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString description() const;
    [[nodiscard]] QString coverAddress() const;
    [[nodiscard]] bool hasTracks() const;
    [[nodiscard]] bool isEmpty() const { return m_detail && !hasTracks(); }
    [[nodiscard]] RowListModel *tracks() { return &m_tracks; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool canRetry() const { return !m_error.isEmpty() && !m_detail; }
    [[nodiscard]] QString error() const { return m_error; }
    [[nodiscard]] bool isWriting() const { return m_isWriting; }
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] bool isPlaying() const;
    /// Null for no row; until the next load.
    [[nodiscard]] const PlaylistTrack *trackAt(int row) const;

    Q_INVOKABLE void load();
    /// Plays all of it from that track on; nothing without tracks.
    Q_INVOKABLE void play(int row);

    Q_INVOKABLE void prepareEdit();
    Q_INVOKABLE void saveEdit();
    Q_INVOKABLE void deletePlaylist();
    Q_INVOKABLE void prepareTrackEdit(int row);
    Q_INVOKABLE void saveTrackEdit();
    Q_INVOKABLE void prepareTrackDelete(int row);
    Q_INVOKABLE void deleteTrack();

Q_SIGNALS:
    void shownChanged();
    void isLoadingChanged();
    void errorChanged();
    void isWritingChanged();
    void formChanged();
    void stationChanged();
    void isPlayingChanged();
    /// The playlist is no longer the user's to see: the screen is to close.
    void finished();

private:
    using View = QPointer<PlaylistDetailView>;
    static QCoro::Task<void> runLoad(View view, quint64 number);
    static QCoro::Task<void> runSaveEdit(View view, QString token);
    static QCoro::Task<void> runDelete(View view, QString token);
    static QCoro::Task<void> runSaveTrackEdit(View view, QString key, QString token);
    static QCoro::Task<void> runDeleteTrack(View view, QString key, QString token);
    [[nodiscard]] QCoro::Task<void> beginLoad();
    void beginWriting();
    void endWriting(const QString &failure);
    void setDetail(PlaylistDetail detail, const QList<ListRow> &rows);
    void setError(const QString &error);
    void showSelection();

    AuthStore &m_auth;
    APIClient &m_client;
    RadioPlayer &m_player;
    PlaylistSummary m_summary;
    std::optional<PlaylistDetail> m_detail;
    RowListModel m_tracks;
    bool m_isLoading = false;
    quint64 m_loadNumber = 0; ///< of the last load, whose answer counts
    QString m_error;
    bool m_isWriting = false;
    bool m_showEditSheet = false;
    QString m_editTitle;
    QString m_editDesc;
    std::optional<PlaylistTrack> m_trackToDelete;
    std::optional<PlaylistTrack> m_trackToEdit;
    bool m_showEditTrackSheet = false;
    QString m_editTrackTitle;
    QString m_editTrackArtist;
};

} // namespace navorin
