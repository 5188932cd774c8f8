#pragma once

#include "Models/Station.h"
#include "Platform/Tasks/MainQueue.h"
#include "Views/Shared/RowListModel.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

class APIClient;
class AuthStore;
struct PlaylistSummary;
struct ViewSurroundings;

/// Puts what a station plays into one of the user's playlists, or into a new one. What was begun goes on when
/// the sheet is closed before its end.
class AddToPlaylistSheet : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(AddToPlaylistSheetState)
    Q_PROPERTY(bool isSignedIn READ isSignedIn NOTIFY listsChanged)
    Q_PROPERTY(navorin::RowListModel *playlists READ playlists CONSTANT)
    Q_PROPERTY(bool hasNoPlaylist READ hasNoPlaylist NOTIFY listsChanged)
    Q_PROPERTY(QString newTitle READ newTitle WRITE setNewTitle NOTIFY newTitleChanged)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY changed)
    Q_PROPERTY(bool isCreating READ isCreating NOTIFY changed)
    /// The row whose playlist is being added to, or -1.
    Q_PROPERTY(int addingRow READ addingRow NOTIFY changed)
    /// Nothing may be begun.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool messageIsFailure READ messageIsFailure NOTIFY changed)
public:
    /// For what the player has selected.
    explicit AddToPlaylistSheet(QObject *parent = nullptr);
    AddToPlaylistSheet(std::optional<Station> station, AuthStore &auth, APIClient &client,
                       const ViewSurroundings &surroundings, QObject *parent = nullptr);

    [[nodiscard]] bool isSignedIn() const;
    [[nodiscard]] RowListModel *playlists() { return &m_playlists; }
    [[nodiscard]] bool hasNoPlaylist() const;
    [[nodiscard]] QString newTitle() const { return m_newTitle; }
    void setNewTitle(const QString &title);
    [[nodiscard]] bool canCreate() const;
    [[nodiscard]] bool isCreating() const { return m_isCreating; }
    [[nodiscard]] int addingRow() const;
    [[nodiscard]] bool isBusy() const { return m_isCreating || m_addingId; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] bool messageIsFailure() const { return m_messageIsFailure; }

    Q_INVOKABLE void add(int row);
    /// Nothing for a title of blanks.
    Q_INVOKABLE void createPlaylist();

Q_SIGNALS:
    void listsChanged();
    void newTitleChanged();
    void changed();
    /// The sheet is to close.
    void finished();

private:
    using Sheet = QPointer<AddToPlaylistSheet>;
    static QCoro::Task<void> runAdd(Sheet sheet, PlaylistSummary playlist, Station station, QString token);
    static QCoro::Task<void> runCreate(Sheet sheet, QString title, Station station, QString token);
    void showPlaylists();
    void setMessage(const QString &message, bool isFailure = false);
    void end(const QString &failure);

    AuthStore &m_auth;
    APIClient &m_client;
    MainQueue &m_queue;
    const std::optional<Station> m_station;
    RowListModel m_playlists;
    QString m_newTitle;
    bool m_isCreating = false;
    std::optional<qint64> m_addingId;
    QString m_message;
    bool m_messageIsFailure = false;
};

} // namespace navorin
