#include "PlayerRig.h"
#include "Views/Catalogue/StationDetailView.h"

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

Station archive()
{
    Station station;
    station.genre = u"archive"_s;
    station.serverName = u"بایگانی"_s;
    station.trackIndex = 1;
    station.tracks.emplace();
    for (const auto &id : {u"a"_s, u"b"_s, u"c"_s}) {
        PlaylistTrack track;
        track.trackType = u"radio"_s;
        track.trackID = id;
        track.title = u"آهنگ "_s + id;
        track.streamURL = u"/stream/archive?"_s + id;
        station.tracks->append(track);
    }
    return station;
}

Station unhydrated()
{
    Station station;
    station.genre = u"x"_s;
    station.source = u"songsara"_s;
    return station;
}

} // namespace

class tst_PlayerScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void showsWhatPlays();
    void heartAsksForALoginFirst();
    void heartFollowsTheLibrary();
    void telegramLink_data();
    void telegramLink();
    void closedDuringARequest();
    void fetchesMissingTracks();
    void rowsPlayAndAreMarked();
};

void tst_PlayerScreens::showsWhatPlays()
{
    TestAccess rig;
    FullPlayerView view(rig.sources());
    QVERIFY(!view.hasStation() && !view.hasTrack());
    QCOMPARE(view.title(), QString());
    view.handleFavoriteTap();
    view.toggleKeep();
    view.openInTelegram();
    QVERIFY(rig.http.exchanges.empty());

    rig.select(archive());
    QCOMPARE(view.title(), u"آهنگ b"_s);
    QCOMPARE(view.subtitle(), u"بایگانی"_s); // the track has no artist
    QVERIFY(view.canSkipTracks() && view.hasTrack());
    QVERIFY(!view.canSkipTime()); // the length is not known yet
    QCOMPARE(view.keep(), FullPlayerView::NotKept);
    view.nextTrack();
    rig.settle();
    QCOMPARE(view.title(), u"آهنگ c"_s);
    view.setVolume(0.25F);
    QCOMPARE(rig.engine.lastVolume, 0.25F);
}

void tst_PlayerScreens::heartAsksForALoginFirst()
{
    TestAccess rig;
    FullPlayerView view(rig.sources());
    rig.select(archive());
    const QSignalSpy asked(&view, &FullPlayerView::loginRequested);
    view.handleFavoriteTap();
    QCOMPARE(asked.size(), 1);
    QVERIFY(!view.favAnimating());
    QVERIFY(rig.http.exchanges.empty());
}

void tst_PlayerScreens::heartFollowsTheLibrary()
{
    TestAccess rig;
    rig.signIn();
    FullPlayerView view(rig.sources());
    rig.select(archive());
    QVERIFY(view.isAuthed() && !view.isFavorite());
    view.handleFavoriteTap();
    QVERIFY(view.favAnimating());
    rig.answer(R"({"data":{"favorited":true}})");
    rig.answer(R"({"data":{"playlists":[]}})");
    QVERIFY(view.favAnimating());
    const auto id = archive().currentTrackID().toUtf8();
    rig.answer(QByteArray(R"({"data":[{"id":1,"track_id":")"_ba + id + R"("}]})"_ba));
    QVERIFY(!view.favAnimating());
    QVERIFY(view.isFavorite());
    view.nextTrack();
    QVERIFY(!view.isFavorite());
}

void tst_PlayerScreens::telegramLink_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QUrl>("opened");
    QTest::addColumn<QString>("error");
    QTest::newRow("opens") << R"({"data":{"token":"k","bot_url":"https://t.example/bot?start=k"}})"_ba << 200
                           << QUrl(u"https://t.example/bot?start=k"_s) << QString();
    QTest::newRow("the server's words")
        << R"({"code":429,"message":"کمی صبر کن"})"_ba << 429 << QUrl() << u"کمی صبر کن"_s;
}

void tst_PlayerScreens::telegramLink()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QUrl, opened);
    QFETCH(QString, error);
    TestAccess rig;
    FullPlayerView view(rig.sources());
    rig.select(archive());
    view.openInTelegram();
    view.openInTelegram(); // while it is being made: nothing
    QVERIFY(view.tgLoading());
    QCOMPARE(rig.http.exchanges.size(), 1U);
    rig.answer(body, status);
    QVERIFY(!view.tgLoading());
    QCOMPARE(view.tgError(), error);
    QCOMPARE(rig.desktop.urlOpener.opened.value(0), opened.toString());
}

void tst_PlayerScreens::closedDuringARequest()
{
    TestAccess rig;
    rig.select(archive());
    auto view = std::make_unique<FullPlayerView>(rig.sources());
    view->openInTelegram();
    view.reset();
    rig.answer(R"({"data":{"token":"k","bot_url":"https://t.example/bot"}})");
    QVERIFY(rig.desktop.urlOpener.opened.isEmpty());

    auto detail = std::make_unique<StationDetailView>(
        StationDetailView::Sources{*rig.player, *rig.offline, *rig.client});
    detail->setStation(QVariant::fromValue(unhydrated()));
    detail->hydrateIfNeeded();
    detail.reset();
    rig.answer(R"({"data":[]})");
}

void tst_PlayerScreens::fetchesMissingTracks()
{
    TestAccess rig;
    StationDetailView detail({*rig.player, *rig.offline, *rig.client});
    detail.setStation(QVariant::fromValue(unhydrated()));
    QCOMPARE(detail.content(), StationDetailView::Failed);
    detail.hydrateIfNeeded();
    detail.hydrateIfNeeded();
    QCOMPARE(detail.content(), StationDetailView::Loading);
    QCOMPARE(rig.http.exchanges.size(), 1U);
    rig.answer(R"({"data":[]})");
    QCOMPARE(detail.content(), StationDetailView::Failed);
    detail.hydrateIfNeeded();
    rig.answer(
        R"({"data":[{"genre":"x","source":"songsara","tracks":[{"track_id":"1"},{"track_id":"2","title":"دو"}]}]})");
    QCOMPARE(detail.content(), StationDetailView::Tracks);
    QCOMPARE(detail.trackCount(), u"2 آهنگ"_s);
    const auto *tracks = detail.tracks();
    QCOMPARE(tracks->data(tracks->index(0), TrackListModel::TitleRole).toString(), u"—"_s);
    QCOMPARE(tracks->data(tracks->index(1), TrackListModel::TitleRole).toString(), u"دو"_s);
    detail.hydrateIfNeeded(); // it has them now
    QVERIFY(rig.http.exchanges.empty());

    StationDetailView live({*rig.player, *rig.offline, *rig.client});
    Station plain;
    plain.genre = u"live"_s;
    live.setStation(QVariant::fromValue(plain));
    live.hydrateIfNeeded();
    QVERIFY(rig.http.exchanges.empty());
    QCOMPARE(live.content(), StationDetailView::Live);
}

void tst_PlayerScreens::rowsPlayAndAreMarked()
{
    TestAccess rig;
    StationDetailView detail({*rig.player, *rig.offline, *rig.client});
    detail.setStation(QVariant::fromValue(archive()));
    const auto isCurrent = [&detail](int row) {
        return detail.tracks()->data(detail.tracks()->index(row), TrackListModel::CurrentRole).toBool();
    };
    detail.play(2);
    QVERIFY(rig.player->isFullPlayerPresented());
    QVERIFY(!rig.player->hasStation()); // the screen does not wait for the player
    rig.settle();
    QVERIFY(rig.engine.calls.contains(u"replace https://a.example/stream/archive?c"_s));
    QVERIFY(isCurrent(2) && !isCurrent(1));
    rig.player->nextTrack();
    QVERIFY(isCurrent(0) && !isCurrent(2));
    auto other = archive();
    other.genre = u"elsewhere"_s;
    rig.select(other);
    QVERIFY(!isCurrent(0) && !isCurrent(1));
    QVERIFY(!detail.isDownloaded(0) && !detail.isDownloaded(7));
}

QTEST_MAIN(tst_PlayerScreens)
#include "tst_PlayerScreens.moc"
