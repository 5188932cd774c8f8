#pragma once

#include "Models/APIModels.h"
#include "Views/Library/SoundCloudSearchView.h"
#include "Views/Library/SpotifyImport.h"
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

/// The library tab's state and actions: the user's lists, and the two ways to music from elsewhere.
class LibraryView : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LibraryViewState)
    Q_PROPERTY(bool isSignedIn READ isSignedIn NOTIFY isSignedInChanged)
    Q_PROPERTY(navorin::RowListModel *playlists READ playlists CONSTANT)
    /// Signed in, and there is no playlist.
    Q_PROPERTY(bool hasNoPlaylist READ hasNoPlaylist NOTIFY listsChanged)
    /// Signed in, and the first answer is still to come.
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY listsChanged)
    Q_PROPERTY(int favoriteCount READ favoriteCount NOTIFY listsChanged)
    /// A load that the user asked for is under way.
    Q_PROPERTY(bool isRefreshing READ isRefreshing NOTIFY listsChanged)
    /// Why a playlist could not be deleted; empty if nothing is wrong.
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(bool hasStation READ hasStation NOTIFY hasStationChanged)
    Q_PROPERTY(navorin::SpotifyImport *spotify READ spotify CONSTANT)
    Q_PROPERTY(navorin::SoundCloudSearchView *soundCloud READ soundCloud CONSTANT)
public:
    explicit LibraryView(QObject *parent = nullptr);
    LibraryView(AuthStore &auth, APIClient &client, RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] bool isSignedIn() const;
    [[nodiscard]] RowListModel *playlists() { return &m_playlists; }
    [[nodiscard]] bool hasNoPlaylist() const;
    [[nodiscard]] bool isWaiting() const;
    [[nodiscard]] int favoriteCount() const;
    [[nodiscard]] bool isRefreshing() const { return m_refreshAsked; }
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] bool hasStation() const;
    [[nodiscard]] SpotifyImport *spotify() { return &m_spotify; }
    [[nodiscard]] SoundCloudSearchView *soundCloud() { return &m_soundCloud; }

    /// The screen can be seen from now on.
    Q_INVOKABLE void appear();
    /// Loads the lists because the user wants it.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void playFavorites();
    /// The PlaylistSummary of a card, for the screen of that playlist; invalid for no card.
    [[nodiscard]] Q_INVOKABLE QVariant playlistAt(int row) const;
    /// Notes the playlist of a card, which deletePlaylist() then deletes, wherever it stands by that time.
    Q_INVOKABLE void prepareDelete(int row);
    Q_INVOKABLE void deletePlaylist();

Q_SIGNALS:
    void isSignedInChanged();
    void listsChanged();
    void errorMessageChanged();
    void hasStationChanged();

private:
    static QCoro::Task<void> runDelete(QPointer<LibraryView> view, qint64 id, QString token);
    void showPlaylists();
    void setErrorMessage(const QString &message);

    AuthStore &m_auth;
    APIClient &m_client;
    RadioPlayer &m_player;
    RowListModel m_playlists;
    SpotifyImport m_spotify;
    SoundCloudSearchView m_soundCloud;
    bool m_refreshAsked = false;
    std::optional<qint64> m_playlistToDelete;
    QString m_errorMessage;
};

} // namespace navorin
