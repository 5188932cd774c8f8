#pragma once

#include "Platform/Storage/QtFileStore.h"
#include "Platform/Tasks/Detached.h"
#include "Services/Account/AuthStore.h"
#include "Services/Account/Keychain.h"
#include "Services/Backend/APIClient.h"
#include "Services/Offline/OfflineStore.h"
#include "Services/Playback/RadioPlayer.h"
#include "Support/FakeDesktop.h"
#include "Support/FakeHttpSession.h"
#include "Support/FakeMediaPlayer.h"
#include "Support/FakeSecureItemStore.h"
#include "Support/ManualMainQueue.h"
#include "Views/ViewSetup.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QThreadPool>

namespace navorin {

struct TestAccess
{
    static void installKeychain(SecureItemStore &store)
    {
        Keychain::instance().reset();
        Keychain::instance().setMaker([&store] { return std::unique_ptr<Keychain>(new Keychain(store)); });
    }
    static void removeKeychain() { Keychain::instance().reset(); }
    static std::unique_ptr<APIClient> client(HttpSession &session)
    {
        return std::unique_ptr<APIClient>(new APIClient(QUrl(QStringLiteral("https://a.example")), session));
    }
    static std::unique_ptr<AuthStore> auth(APIClient &client, MainQueue &queue)
    {
        return std::unique_ptr<AuthStore>(new AuthStore(client, queue));
    }
    static std::unique_ptr<OfflineStore> offline(FileStore &folders, MainQueue &queue, HttpSession &session,
                                                 APIClient &client)
    {
        return std::unique_ptr<OfflineStore>(new OfflineStore({folders, queue, session, client}));
    }
    static std::unique_ptr<RadioPlayer> player(MediaPlayer &engine, FakeDesktop &desktop, MainQueue &queue,
                                               APIClient &client, OfflineStore &offline)
    {
        return std::unique_ptr<RadioPlayer>(
            new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying, desktop.remoteCommands, queue,
                             client, offline}));
    }
};

/// The services below the library's screens, over a server that a test plays.
class LibraryRig
{
public:
    LibraryRig()
    {
        TestAccess::installKeychain(m_secrets);
        client = TestAccess::client(http);
        auth = TestAccess::auth(*client, queue);
        playersClient = TestAccess::client(playersHttp);
        offline = TestAccess::offline(files, queue, playersHttp, *playersClient);
        player = TestAccess::player(engine, m_desktop, queue, *playersClient, *offline);
    }
    ~LibraryRig()
    {
        engine.failPendingTracks();
        for (auto *session : {&http, &playersHttp}) {
            while (!session->exchanges.empty()) {
                session->take().fail();
                settle();
            }
        }
        player.reset();
        offline.reset();
        auth.reset();
        TestAccess::removeKeychain();
    }

    [[nodiscard]] ViewSurroundings surroundings() { return {queue, m_desktop.urlOpener}; }
    void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        queue.drain();
        QCoreApplication::processEvents();
    }
    /// Answers the oldest request and tells what it was: "PUT /api/playlists/7 {…}".
    QString answer(const QByteArray &body, int status = 200)
    {
        if (http.exchanges.empty())
            return QStringLiteral("nothing was asked");
        auto exchange = http.take();
        const auto sent = nameOf(exchange.request);
        exchange.answer(body, status);
        settle();
        return sent;
    }
    static QString nameOf(const HttpRequest &request)
    {
        auto name = QString(QString::fromLatin1(request.method) + u' ' + request.url.path());
        if (request.url.hasQuery())
            name += u'?' + request.url.query(QUrl::PrettyDecoded);
        if (!request.body.isEmpty())
            name += u' ' +
                    QString::fromUtf8(QJsonDocument::fromJson(request.body).toJson(QJsonDocument::Compact));
        return name;
    }
    void answerLibrary(const QByteArray &playlists, const QByteArray &favorites = "[]")
    {
        answer("{\"data\":{\"playlists\":" + playlists + "}}");
        answer("{\"data\":" + favorites + "}");
    }
    void signIn(const QByteArray &playlists, const QByteArray &favorites = "[]")
    {
        detach(auth->login(QStringLiteral("ali"), QStringLiteral("1234")), "signing in in a test");
        answer(R"({"data":{"token":"t","user":{"username":"ali"}}})");
        answerLibrary(playlists, favorites);
    }
    /// What the engine was told to load, if anything; its full player is asked for.
    QString played()
    {
        QCoreApplication::processEvents();
        settle();
        return engine.item && player->isFullPlayerPresented() ? engine.item->url.toString() : QString();
    }

    FakeHttpSession http;
    FakeHttpSession playersHttp; ///< what the player and the downloads ask on their own account
    std::unique_ptr<APIClient> playersClient;
    QtFileStore files;
    ManualMainQueue queue;
    FakeMediaPlayer engine;
    std::unique_ptr<APIClient> client;
    std::unique_ptr<AuthStore> auth;
    std::unique_ptr<OfflineStore> offline;
    std::unique_ptr<RadioPlayer> player;

private:
    FakeSecureItemStore m_secrets;
    FakeDesktop m_desktop;
};

} // namespace navorin
