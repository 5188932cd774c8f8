#include "ScreenRig.h"
#include "Support/Columns.h"
#include "Views/Library/LibraryDecisions.h"
#include "Views/Library/PlaylistDetailView.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

const auto threeTracks = R"({"data":{"id":7,"title":"شب","description":"d","tracks":[
    {"id":11,"title":"a","artist":"x","stream_url":"/s1","duration":185},
    {"track_id":"b/2","title":"b","stream_url":"/s2"},
    {"title":"c"}]}})"_ba;
const auto onePlaylist = R"([{"id":7,"title":"شب","track_count":3}])"_ba;

PlaylistSummary night()
{
    return {7, u"شب"_s, {}, u"/cover"_s, 3};
}

} // namespace

class tst_LibraryPlaylist : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_rig = std::make_unique<ScreenRig>();
        m_rig->signIn(onePlaylist);
        m_view = std::make_unique<PlaylistDetailView>(*m_rig->auth, *m_rig->client, *m_rig->player);
        m_view->setSummary(QVariant::fromValue(night()));
    }
    void cleanup()
    {
        m_view.reset();
        m_rig.reset();
    }

    void stationOfAPlaylist();
    void durations();
    void loadsAndPlays();
    void aFailedLoadKeepsWhatIsThere();
    void theLastLoadCounts();
    void edits();
    void deletes();
    void tracksByTheirKeys_data();
    void tracksByTheirKeys();
    void signedOutInTheMiddle();
    void closedInTheMiddle();

private:
    void load() const
    {
        m_view->load();
        QCOMPARE(m_rig->answer(threeTracks), u"GET /api/playlists/7"_s);
    }

    std::unique_ptr<ScreenRig> m_rig;
    std::unique_ptr<PlaylistDetailView> m_view;
};

void tst_LibraryPlaylist::stationOfAPlaylist()
{
    for (const bool detailed : {false, true}) {
        PlaylistDetail detail;
        if (detailed)
            detail = {8, u"نو"_s, {}, u"/new"_s, {}};
        QVERIFY(!playlistStation(detail, night(), {}, 0));
        detail.tracks.emplace();
        QVERIFY(!playlistStation(detail, night(), {}, 0));
        detail.tracks->resize(2);
        const auto station = *playlistStation(detail, night(), User{1, u"ali"_s, {}, {}, {}}, 1);
        QCOMPARE((QStringList{station.genre, *station.title, *station.artworkURL, *station.artist}),
                 detailed ? (QStringList{u"custom-p-8"_s, u"نو"_s, u"/new"_s, u"ali"_s})
                          : (QStringList{u"custom-p-7"_s, u"شب"_s, u"/cover"_s, u"ali"_s}));
        QVERIFY(station.serverName == station.title && station.trackIndex == 1 && station.trackCount == 2);
    }
}

void tst_LibraryPlaylist::durations()
{
    for (const auto &[seconds, text] :
         {std::pair(0, u""_s), {59, u"0:59"_s}, {185, u"3:05"_s}, {3725, u"62:05"_s}})
        QCOMPARE(durationText(seconds), text);
    QCOMPARE(durationText({}), u""_s);
}

void tst_LibraryPlaylist::loadsAndPlays()
{
    QCOMPARE(m_view->title(), u"شب"_s);
    m_view->play(0); // not loaded yet
    QVERIFY(m_rig->played().isEmpty());
    load();
    QVERIFY(m_view->hasTracks() && !m_view->isLoading());
    QCOMPARE(m_view->description(), u"d"_s);
    QCOMPARE(m_view->tracks()->rows().at(0), (ListRow{u"11"_s, u"a"_s, u"x"_s, {}, u"3:05"_s}));
    m_view->play(1);
    QCOMPARE(m_rig->played(), u"https://a.example/s2"_s);
    QVERIFY(m_view->tracks()->index(1).data(RowListModel::SelectedRole).toBool());
    m_view->load();
    m_rig->answer(R"({"data":{"id":7,"tracks":[]}})");
    QVERIFY(m_view->isEmpty() && !m_view->hasTracks());
}

void tst_LibraryPlaylist::aFailedLoadKeepsWhatIsThere()
{
    const auto missing = APIError::http(404).description();
    m_view->load();
    m_rig->answer("{}", 404);
    QVERIFY(m_view->canRetry() && m_view->error() == missing && !m_view->isLoading());
    load();
    QVERIFY(m_view->error().isEmpty());
    m_view->load(); // deleted elsewhere meanwhile
    m_rig->answer("{}", 404);
    QVERIFY(!m_view->canRetry() && m_view->error() == missing);
    QCOMPARE(m_view->tracks()->count(), 3);
}

void tst_LibraryPlaylist::theLastLoadCounts()
{
    m_view->load();
    m_view->load();
    auto first = m_rig->http.take();
    m_rig->answer(threeTracks);
    first.fail();
    m_rig->settle();
    QVERIFY(m_view->error().isEmpty() && m_view->tracks()->count() == 3 && !m_view->isLoading());
}

void tst_LibraryPlaylist::edits()
{
    for (const auto &typed : {u"  "_s, u" a\"'\\ی"_s.repeated(1000)}) {
        load();
        m_view->prepareEdit();
        QVERIFY(m_view->property("showEditSheet").toBool());
        QCOMPARE(m_view->property("editDesc").toString(), u"d"_s);
        m_view->setProperty("editTitle", typed);
        m_view->saveEdit();
        m_view->saveEdit();
        QVERIFY(m_view->isWriting());
        const QJsonObject body{{u"title"_s, typed}, {u"description"_s, u"d"_s}};
        const QString request = u"PUT /api/playlists/7 "_s +
                                QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact));
        QCOMPARE(m_rig->answer(R"({"message":"خالی است"})", 400), request);
        QVERIFY(m_view->error() == u"خالی است"_s && m_view->property("showEditSheet").toBool());
        m_view->saveEdit();
        QCOMPARE(m_rig->answer("{}"), request);
        QVERIFY(!m_view->property("showEditSheet").toBool());
        m_rig->answerLibrary(onePlaylist);
        QCOMPARE(m_rig->answer(threeTracks), u"GET /api/playlists/7"_s);
        QVERIFY(!m_view->isWriting() && m_view->error().isEmpty() && m_rig->http.exchanges.empty());
    }
}

void tst_LibraryPlaylist::deletes()
{
    const QSignalSpy finished(m_view.get(), &PlaylistDetailView::finished);
    m_view->deletePlaylist();
    QCOMPARE(m_rig->answer(R"({"message":"نیست"})", 404), u"DELETE /api/playlists/7"_s);
    QVERIFY(finished.isEmpty() && m_view->error() == u"نیست"_s && !m_view->isWriting());
    m_view->deletePlaylist();
    m_rig->answer("{}");
    QVERIFY(finished.isEmpty()); // the library comes first
    m_rig->answerLibrary("[]");
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_rig->auth->playlists().isEmpty());
}

void tst_LibraryPlaylist::tracksByTheirKeys_data()
{
    addColumns<int, QString>("row", "path");
    QTest::newRow("its row") << 0 << u"/api/playlists/7/tracks/11"_s;
    QTest::newRow("its own") << 1 << u"/api/playlists/7/tracks/b/2"_s;
    QTest::newRow("none") << 2 << u""_s;
    QTest::newRow("no such row") << 9 << u""_s;
}

void tst_LibraryPlaylist::tracksByTheirKeys()
{
    const auto [row, path] = fetched<int, QString>("row", "path");
    load();
    m_view->prepareTrackEdit(row);
    m_view->setProperty("editTrackTitle", u"نو"_s);
    m_view->saveTrackEdit();
    m_view->prepareTrackDelete(row);
    if (path.isEmpty()) {
        m_view->deleteTrack();
        QVERIFY(m_rig->http.exchanges.empty() && !m_view->isWriting());
        return;
    }
    QVERIFY(m_rig->answer("{}", 500).startsWith(u"PUT "_s + path));
    QVERIFY(m_view->property("showEditTrackSheet").toBool() && !m_view->error().isEmpty());
    m_view->saveTrackEdit();
    QVERIFY(m_rig->answer("{}").contains(u"\"title\":\"نو\""));
    QVERIFY(!m_view->property("showEditTrackSheet").toBool());
    m_rig->answer(threeTracks);
    m_view->saveTrackEdit(); // nothing is being edited any more
    QVERIFY(m_rig->http.exchanges.empty());

    m_view->deleteTrack();
    QCOMPARE(m_rig->answer("{}"), QString(u"DELETE "_s + path));
    QCOMPARE(m_rig->answer(R"({"data":{"id":7,"tracks":[]}})"), u"GET /api/playlists/7"_s);
    m_rig->answerLibrary(onePlaylist);
    QVERIFY(m_view->isEmpty() && !m_view->isWriting());
    m_view->deleteTrack();
    QVERIFY(m_rig->http.exchanges.empty());
}

void tst_LibraryPlaylist::signedOutInTheMiddle()
{
    const QSignalSpy finished(m_view.get(), &PlaylistDetailView::finished);
    load();
    m_view->prepareEdit();
    m_view->saveEdit();
    m_rig->auth->logout();
    QCOMPARE(finished.count(), 1);
    m_rig->answer(R"({"message":"وارد شوید"})", 401);
    QVERIFY(!m_view->isWriting());
    m_rig->settle();
    while (!m_rig->http.exchanges.empty()) // the farewell
        m_rig->answer("{}");
    m_view->saveEdit();
    m_view->deletePlaylist();
    m_view->prepareTrackDelete(0);
    m_view->deleteTrack();
    QVERIFY(m_rig->http.exchanges.empty());
}

void tst_LibraryPlaylist::closedInTheMiddle()
{
    load();
    m_view->prepareTrackDelete(0);
    m_view->deleteTrack();
    m_view.reset();
    m_rig->answer("{}");
    m_rig->answerLibrary("[]"); // the library follows all the same
    QVERIFY(m_rig->auth->playlists().isEmpty());
}

QTEST_GUILESS_MAIN(tst_LibraryPlaylist)
#include "tst_LibraryPlaylist.moc"
