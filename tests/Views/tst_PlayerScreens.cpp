#include "Support/ServicesRig.h"
#include "Views/Catalogue/StationDetailView.h"
#include "Views/Playback/FullPlayerView.h"

#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Rig : ServicesRig
{
    FullPlayerView::Sources sources() { return {*player, *auth, *offline, *client, desktop.urlOpener}; }
};

Station archive()
{
    Station station{
        .genre = u"archive"_s, .serverName = u"بایگانی"_s, .trackIndex = 1, .tracks = QList<PlaylistTrack>()};
    for (const auto &id : {u"a"_s, u"b"_s, u"c"_s})
        station.tracks->append(PlaylistTrack{.trackType = u"radio"_s,
                                             .trackID = id,
                                             .title = QString(u"آهنگ "_s + id),
                                             .streamURL = QString(u"/stream/archive?"_s + id)});
    return station;
}

Station unhydrated()
{
    return {.genre = u"x"_s, .source = u"songsara"_s};
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
    void telegramLink();
    void closedDuringARequest();
    void fetchesMissingTracks();
    void rowsPlayAndAreMarked();
};

void tst_PlayerScreens::showsWhatPlays()
{
    Rig rig;
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
    Rig rig;
    FullPlayerView view(rig.sources());
    rig.select(archive());
    const QSignalSpy asked(&view, &FullPlayerView::loginRequested);
    view.handleFavoriteTap();
    QCOMPARE(asked.size(), 1);
    QVERIFY(!view.favAnimating() && rig.http.exchanges.empty());
}

void tst_PlayerScreens::heartFollowsTheLibrary()
{
    Rig rig;
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
    QVERIFY(!view.favAnimating() && view.isFavorite());
    view.nextTrack();
    QVERIFY(!view.isFavorite());
}

void tst_PlayerScreens::telegramLink()
{
    Rig rig;
    FullPlayerView view(rig.sources());
    rig.select(archive());
    view.openInTelegram();
    view.openInTelegram(); // while it is being made: nothing
    QVERIFY(view.tgLoading());
    QCOMPARE(rig.http.exchanges.size(), 1U);
    rig.answer(R"({"code":429,"message":"کمی صبر کن"})", 429);
    QVERIFY(!view.tgLoading() && rig.desktop.urlOpener.opened.isEmpty());
    QCOMPARE(view.tgError(), u"کمی صبر کن"_s);
    view.openInTelegram();
    rig.answer(R"({"data":{"token":"k","bot_url":"https://t.example/bot?start=k"}})");
    QVERIFY(view.tgError().isEmpty());
    QCOMPARE(rig.desktop.urlOpener.opened, QStringList(u"https://t.example/bot?start=k"_s));
}

void tst_PlayerScreens::closedDuringARequest()
{
    Rig rig;
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
    Rig rig;
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
    Rig rig;
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
    QVERIFY(!isCurrent(0) && !isCurrent(1) && !detail.isDownloaded(0) && !detail.isDownloaded(7));
}

QTEST_MAIN(tst_PlayerScreens)
#include "tst_PlayerScreens.moc"
