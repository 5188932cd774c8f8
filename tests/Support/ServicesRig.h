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
#include "Support/TestAccess.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QThreadPool>

namespace navorin {

/// The services below the screens, over a network, an engine, a keyring and a clock that do what a test says.
class ServicesRig
{
public:
    ServicesRig()
    {
        qputenv("XDG_DATA_HOME", home.path().toUtf8());
        TestAccess::forget<Keychain>();
        TestAccess::share<Keychain>(secrets);
        auth = TestAccess::make<AuthStore>(*client, queue);
        offline = TestAccess::makeIn<OfflineStore>(files, queue, playersHttp, *playersClient);
        player = TestAccess::makeIn<RadioPlayer>(engine, desktop.audioSession, desktop.nowPlaying,
                                                 desktop.remoteCommands, queue, *playersClient, *offline);
    }
    /// Coroutines that still wait end before what they use goes.
    ~ServicesRig()
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
        TestAccess::forget<Keychain>();
    }
    Q_DISABLE_COPY_MOVE(ServicesRig)

    void settle()
    {
        for (int round = 0; round < 3; ++round) {
            QThreadPool::globalInstance()->waitForDone();
            QCoreApplication::processEvents();
            queue.drain();
        }
    }
    /// Answers the oldest request.
    void answer(const QByteArray &body, int status = 200)
    {
        http.take().answer(body, status);
        settle();
    }
    void answerLibrary(const QByteArray &playlists = "[]", const QByteArray &favorites = "[]")
    {
        answer("{\"data\":{\"playlists\":" + playlists + "}}");
        answer("{\"data\":" + favorites + "}");
    }
    void signIn(const QByteArray &playlists = "[]", const QByteArray &favorites = "[]")
    {
        detach(auth->login(QStringLiteral("ali"), QStringLiteral("1234")), "signing in in a test");
        answer(R"({"data":{"token":"t","user":{"username":"ali"}}})");
        answerLibrary(playlists, favorites);
    }
    void select(const Station &station)
    {
        detach(player->selectStation(station), "selecting in a test");
        settle();
    }

    QTemporaryDir home;
    FakeHttpSession http;
    FakeHttpSession playersHttp; ///< what the player and the downloads ask on their own account
    ManualMainQueue queue;
    QtFileStore files;
    FakeDesktop desktop;
    FakeSecureItemStore secrets;
    FakeMediaPlayer engine;
    std::unique_ptr<APIClient> client =
        TestAccess::make<APIClient>(QUrl(QStringLiteral("https://a.example")), http);
    std::unique_ptr<APIClient> playersClient =
        TestAccess::make<APIClient>(QUrl(QStringLiteral("https://a.example")), playersHttp);
    std::unique_ptr<AuthStore> auth;
    std::unique_ptr<OfflineStore> offline;
    std::unique_ptr<RadioPlayer> player;
};

} // namespace navorin
