#include "ScreenRig.h"
#include "Support/Columns.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/Library/LibraryView.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto twoPlaylists = R"([{"id":7,"title":"شب","track_count":3},{"id":9,"title":" \t"}])"_ba;
const auto entityWithTracks = R"({"data":{"id":"e","title":"Mix","artist":"Ada","cover_url":"/c","tracks":[
    {"id":"1","title":"a","stream_url":"/s1"},{"id":"2","title":"b","artwork_url":"/own"}]}})"_ba;

QByteArray hits(const QByteArray &genre)
{
    return R"({"data":[{"genre":")"_ba + genre + R"(","title":"T","artist":"A","stream_url":"/x"}]})"_ba;
}

QStringList titlesIn(const RowListModel &model)
{
    QStringList titles;
    for (const auto &row : model.rows())
        titles << row.title;
    return titles;
}

} // namespace

class tst_LibraryView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_rig = std::make_unique<ScreenRig>();
        m_view = std::make_unique<LibraryView>(*m_rig->auth, *m_rig->client, *m_rig->player);
    }
    void cleanup()
    {
        m_view.reset();
        m_rig.reset();
    }

    void followsTheAccount();
    void deletes_data();
    void deletes();
    void playsTheFavourites();
    void resolvesPlaysAndSaves();
    void spotifyFailures_data();
    void spotifyFailures();
    void stationsOfLinks();
    void searches();
    void theLastSearchCounts();
    void theSearchScreenWaits();
    void goneMeanwhile();
    void manyPlaylists();

private:
    std::unique_ptr<ScreenRig> m_rig;
    std::unique_ptr<LibraryView> m_view;
};

void tst_LibraryView::followsTheAccount()
{
    m_view->appear();
    m_view->refresh();
    QVERIFY(m_rig->http.exchanges.empty() && !m_view->isRefreshing() && !m_view->hasNoPlaylist());
    m_rig->signIn(twoPlaylists, R"([{"id":1},{"id":2}])");
    QCOMPARE(titlesIn(*m_view->playlists()), QStringList({u"شب"_s, u"پلیلیست"_s}));
    QCOMPARE(m_view->playlists()->rows().at(0).line, u"3 آهنگ"_s);
    QCOMPARE(m_view->favoriteCount(), 2);
    m_view->refresh();
    QVERIFY(m_view->isRefreshing());
    m_rig->answer("{}", 500); // the lists stay
    QVERIFY(!m_view->isRefreshing() && m_view->playlists()->count() == 2);
    m_view->appear();
    m_rig->answerLibrary("[]");
    QVERIFY(m_view->hasNoPlaylist() && m_view->favoriteCount() == 0);
    m_rig->auth->logout();
    QVERIFY(!m_view->isSignedIn() && !m_view->hasNoPlaylist());
}

void tst_LibraryView::deletes_data()
{
    addColumns<int, QString>("status", "message");
    QTest::newRow("deleted") << 200 << u""_s;
    QTest::newRow("gone already") << 404 << u"نیست"_s;
}

void tst_LibraryView::deletes()
{
    QFETCH(int, status);
    m_rig->signIn(twoPlaylists);
    m_view->deletePlaylist(); // nothing was chosen
    m_view->prepareDelete(5);
    m_view->deletePlaylist();
    QVERIFY(m_rig->http.exchanges.empty());
    m_view->prepareDelete(1);
    m_view->refresh(); // by the time of the answer another stands in that row
    m_rig->answerLibrary(R"([{"id":9},{"id":8}])");
    m_view->deletePlaylist();
    QCOMPARE(m_rig->answer(R"({"message":"نیست"})", status), u"DELETE /api/playlists/9"_s);
    QTEST(m_view->errorMessage(), "message");
    m_rig->answerLibrary(R"([{"id":8}])");
    QCOMPARE(m_view->playlists()->count(), 1);
    m_view->refresh();
    QVERIFY(m_view->errorMessage().isEmpty());
}

void tst_LibraryView::playsTheFavourites()
{
    m_view->playFavorites();
    QVERIFY(m_rig->played().isEmpty() && !m_view->hasStation());
    m_rig->signIn("[]", R"([{"id":1,"stream_url":"/one"}])");
    m_view->playFavorites();
    QVERIFY(m_rig->player->isFullPlayerPresented() && !m_view->hasStation()); // selected when the loop turns
    QCOMPARE(m_rig->played(), u"https://a.example/one"_s);
    QVERIFY(m_view->hasStation());
}

void tst_LibraryView::resolvesPlaysAndSaves()
{
    auto &spotify = *m_view->spotify();
    spotify.setUrl(u" \t"_s);
    spotify.resolve();
    QVERIFY(!spotify.canResolve() && m_rig->http.exchanges.empty());
    spotify.setUrl(u" https://open.spotify.com/playlist/a?b=c&d "_s);
    spotify.resolve();
    spotify.resolve();
    spotify.save();
    QCOMPARE(m_rig->http.exchanges.size(), 1U);
    QCOMPARE(m_rig->http.exchanges.front().request.url.query(QUrl::FullyEncoded),
             u"url=https%3A%2F%2Fopen.spotify.com%2Fplaylist%2Fa%3Fb%3Dc%26d"_s);
    m_rig->answer(entityWithTracks);
    QCOMPARE(spotify.title(), u"Mix"_s);
    QCOMPARE(spotify.line(), u"Ada · 2"_s);
    QVERIFY(spotify.canPlay() && !spotify.canSave() && spotify.message().isEmpty());
    spotify.play();
    QCOMPARE(m_rig->played(), u"https://a.example/s1"_s);

    m_rig->signIn("[]");
    QVERIFY(spotify.canSave());
    spotify.setUrl(u" other "_s);
    spotify.save();
    QVERIFY(spotify.isLoading());
    QCOMPARE(m_rig->answer("{}"),
             u"POST /api/spotify/import "
             u"{\"description\":\"ایمپورت شده از اسپاتیفای (Ada)\",\"title\":\"Mix\",\"url\":\" other \"}"_s);
    QCOMPARE(spotify.message(), u"ذخیره شد"_s);
    QVERIFY(spotify.isLoading());
    m_rig->answerLibrary(twoPlaylists);
    QVERIFY(!spotify.isLoading() && !spotify.messageIsFailure() && m_view->playlists()->count() == 2);
}

void tst_LibraryView::spotifyFailures_data()
{
    addColumns<QByteArray, int, QString, bool>("answer", "status", "message", "hasEntity");
    QTest::newRow("refused") << "{}"_ba << 403 << APIError::http(403).description() << false;
    QTest::newRow("no data") << "{}"_ba << 200 << APIError::decoding().description() << false;
    QTest::newRow("mangled") << "<html>"_ba << 200 << QString() << false;
    QTest::newRow("no tracks") << R"({"data":{"title":"x"}})"_ba << 200 << QString() << true;
}

void tst_LibraryView::spotifyFailures()
{
    const auto [answer, status, message] = fetched<QByteArray, int, QString>("answer", "status", "message");
    m_rig->signIn("[]");
    auto &spotify = *m_view->spotify();
    spotify.setUrl(u"x"_s);
    spotify.resolve();
    m_rig->answer(answer, status);
    QTEST(spotify.hasEntity(), "hasEntity");
    QCOMPARE(spotify.messageIsFailure(), !spotify.hasEntity());
    if (!message.isEmpty())
        QCOMPARE(spotify.message(), message);
    QVERIFY(!spotify.canPlay() && !spotify.isLoading());
    spotify.play();
    QVERIFY(m_rig->played().isEmpty());
    if (!spotify.hasEntity())
        return;
    spotify.save();
    m_rig->auth->logout(); // in the middle
    m_rig->answer(R"({"message":"وارد شوید"})", 401);
    QCOMPARE(spotify.message(), u"وارد شوید"_s);
    QVERIFY(!spotify.isLoading() && !spotify.canSave());
}

void tst_LibraryView::stationsOfLinks()
{
    SpotifyEntity entity;
    QVERIFY(!spotifyStation(entity));
    entity.coverURL = u"/c"_s;
    entity.tracks = {SpotifyTrack{u"1"_s, {}, {}, 5, {}, {}}, SpotifyTrack{{}, {}, {}, {}, {}, u"/own"_s}};
    auto station = *spotifyStation(entity);
    QVERIFY(station.genre == u"spotify-e-x"_s && station.source == u"spotify"_s && station.trackCount == 2);
    const auto &tracks = *station.tracks;
    QVERIFY(tracks.at(0).artworkURL == u"/c"_s && tracks.at(1).artworkURL == u"/own"_s && !tracks.at(0).id);
    entity.id = u"9z"_s;
    QCOMPARE(spotifyStation(entity)->genre, u"spotify-e-9z"_s);
}

void tst_LibraryView::searches()
{
    auto &search = *m_view->soundCloud();
    search.setQuery(u" \t "_s);
    search.search();
    QVERIFY(m_rig->http.exchanges.empty() && !search.searched());
    search.setQuery(u" دریا & باد "_s);
    search.search();
    QCOMPARE(m_rig->answer(hits("g")), u"GET /api/soundcloud/search?q=دریا %26 باد"_s);
    QCOMPARE(titlesIn(*search.results()), QStringList(u"T"_s));
    search.play(1);
    QVERIFY(m_rig->played().isEmpty());
    search.play(0);
    QCOMPARE(m_rig->played(), u"https://a.example/x"_s);
    QVERIFY(search.results()->index(0).data(RowListModel::SelectedRole).toBool());
    search.search();
    m_rig->answer("{}"); // no data is no hits
    QVERIFY(search.foundNothingForQuery() && search.foundNothing());
    search.setQuery(u"تازه"_s);
    QVERIFY(!search.foundNothingForQuery() && search.foundNothing());
    search.search();
    m_rig->answer("{}", 503);
    QCOMPARE(search.errorMessage(), APIError::http(503).description());
    QVERIFY(!search.foundNothing() && !search.isLoading());
}

void tst_LibraryView::theLastSearchCounts()
{
    auto &search = *m_view->soundCloud();
    for (const auto &query : {u"a"_s, u"b"_s}) {
        search.setQuery(query);
        search.search();
    }
    auto first = m_rig->http.take();
    m_rig->answer(hits("b"));
    QCOMPARE(search.results()->rows().at(0).key, u"b"_s);
    first.answer(hits("a"));
    m_rig->settle();
    QCOMPARE(search.results()->rows().at(0).key, u"b"_s);
    QVERIFY(!search.isLoading());
}

void tst_LibraryView::theSearchScreenWaits()
{
    SoundCloudSearchView search(*m_rig->client, *m_rig->player, SoundCloudSearchView::WhileLoading::Refused);
    search.setQuery(u"a"_s);
    search.search();
    search.search();
    QCOMPARE(m_rig->http.exchanges.size(), 1U);
    m_rig->answer("[]");
    QVERIFY(!search.errorMessage().isEmpty() && search.searched());
}

void tst_LibraryView::goneMeanwhile()
{
    m_rig->signIn(twoPlaylists);
    m_view->prepareDelete(0);
    m_view->deletePlaylist();
    m_view->spotify()->setUrl(u"x"_s);
    m_view->spotify()->resolve();
    m_view->soundCloud()->setQuery(u"x"_s);
    m_view->soundCloud()->search();
    m_view.reset();
    for (int i = 0; i < 3; ++i)
        m_rig->answer("{}");
    QCOMPARE(m_rig->answer("{}"), u"GET /api/playlists"_s); // the lists follow all the same
}

void tst_LibraryView::manyPlaylists()
{
    QByteArrayList records;
    for (int i = 0; i < 2000; ++i)
        records << R"({"id":)"_ba + QByteArray::number(i) + R"(,"title":")"_ba + QByteArray(5000, 'x') +
                       "\"}"_ba;
    m_rig->signIn('[' + records.join(',') + ']');
    QCOMPARE(m_view->playlists()->count(), 2000);
    const QSignalSpy inserted(m_view->playlists(), &RowListModel::rowsInserted);
    const QSignalSpy touched(m_view->playlists(), &RowListModel::dataChanged);
    records.removeAt(1000);
    m_view->refresh();
    m_rig->answerLibrary('[' + records.join(',') + ']');
    QVERIFY(m_view->playlists()->count() == 1999 && inserted.isEmpty() && touched.isEmpty());
    QVERIFY(m_view->playlists()->rows().at(0).title.size() < 400);
}

QTEST_GUILESS_MAIN(tst_LibraryView)
#include "tst_LibraryView.moc"
