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
#include "Views/Playback/FullPlayerView.h"

#include <QThreadPool>

namespace navorin {

/// All that a player's screen stands on, with a network and an engine that do what a test says.
struct TestAccess
{
    explicit TestAccess()
    {
        Keychain::instance().setMaker([this] { return std::unique_ptr<Keychain>(new Keychain(secrets)); });
        client.reset(new APIClient(QUrl(QStringLiteral("https://a.example")), http));
        auth.reset(new AuthStore(*client, queue));
        offline.reset(new OfflineStore({files, queue, http, *client}));
        player.reset(new RadioPlayer({engine, desktop.audioSession, desktop.nowPlaying,
                                      desktop.remoteCommands, queue, *client, *offline}));
    }
    ~TestAccess()
    {
        engine.failPendingTracks();
        while (!http.exchanges.empty()) {
            http.take().fail();
            settle();
        }
        player.reset();
        offline.reset();
        auth.reset();
        Keychain::instance().reset();
    }

    void settle()
    {
        for (int round = 0; round < 3; ++round) {
            QThreadPool::globalInstance()->waitForDone();
            QCoreApplication::processEvents();
            queue.drain();
        }
    }
    void answer(const QByteArray &body, int status = 200)
    {
        http.take().answer(body, status);
        settle();
    }
    void select(const Station &station)
    {
        detach(player->selectStation(station), "selecting in a test");
        settle();
    }
    void signIn()
    {
        using namespace Qt::Literals::StringLiterals;
        detach(auth->login(u"ali"_s, u"1234"_s), "signing in in a test");
        answer(R"({"data":{"token":"t","user":{"username":"ali"}}})");
        answer(R"({"data":{"playlists":[]}})");
        answer(R"({"data":[]})"); // favourites
    }
    FullPlayerView::Sources sources() { return {*player, *auth, *offline, *client, desktop.urlOpener}; }

    FakeHttpSession http;
    ManualMainQueue queue;
    QtFileStore files;
    FakeDesktop desktop;
    FakeSecureItemStore secrets;
    FakeMediaPlayer engine;
    std::unique_ptr<APIClient> client;
    std::unique_ptr<AuthStore> auth;
    std::unique_ptr<OfflineStore> offline;
    std::unique_ptr<RadioPlayer> player;
};

} // namespace navorin
