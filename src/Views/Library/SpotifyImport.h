#pragma once

#include "Models/APIModels.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

class APIClient;
class AuthStore;
class RadioPlayer;

/// From a link of Spotify to something to play at once or to keep as a playlist. One request at a time.
class SpotifyImport : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(SpotifyImportState)
    QML_UNCREATABLE("comes with the library")
    Q_PROPERTY(QString url READ url WRITE setUrl NOTIFY urlChanged)
    Q_PROPERTY(bool canResolve READ canResolve NOTIFY changed)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool messageIsFailure READ messageIsFailure NOTIFY changed)
    Q_PROPERTY(bool hasEntity READ hasEntity NOTIFY changed)
    Q_PROPERTY(QString coverAddress READ coverAddress NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// The artist and the number of tracks, as far as they are known.
    Q_PROPERTY(QString line READ line NOTIFY changed)
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)
public:
    SpotifyImport(AuthStore &auth, APIClient &client, RadioPlayer &player, QObject *parent = nullptr);

    [[nodiscard]] QString url() const { return m_url; }
    void setUrl(const QString &url);
    [[nodiscard]] bool canResolve() const;
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] bool messageIsFailure() const { return m_messageIsFailure; }
    [[nodiscard]] bool hasEntity() const { return m_entity.has_value(); }
    [[nodiscard]] QString coverAddress() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString line() const;
    [[nodiscard]] bool canPlay() const;
    [[nodiscard]] bool canSave() const;

    /// Asks what the link leads to.
    Q_INVOKABLE void resolve();
    Q_INVOKABLE void play();
    /// Makes a playlist of what the link, as it stands by then, leads to.
    Q_INVOKABLE void save();

Q_SIGNALS:
    void urlChanged();
    void changed();

private:
    static QCoro::Task<void> runResolve(QPointer<SpotifyImport> import, QString address);
    static QCoro::Task<void> runSave(QPointer<SpotifyImport> import, QString token);
    void begin();
    void end(const QString &message, bool isFailure);

    AuthStore &m_auth;
    APIClient &m_client;
    RadioPlayer &m_player;
    QString m_url;
    std::optional<SpotifyEntity> m_entity;
    bool m_isLoading = false;
    QString m_message;
    bool m_messageIsFailure = false;
};

} // namespace navorin
