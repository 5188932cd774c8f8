#include "Services/Playback/RadioPlayerRig.h"
#include "Services/Recognition/ShazamManager.h"
#include "Views/Recognition/ShazamView.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class tst_ShazamView : public QObject, private RadioPlayerRig
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void says_data();
    void says();
    void startsByItself_data();
    void startsByItself();
    void startsAlthoughClosed();
    void forgetsWhenItCloses();
    void playsWhatWasRecognised();

private:
    void open() { m_view = std::make_unique<ShazamView>(*m_shazam, *m_player, *m_queue); }
    void pass(std::chrono::milliseconds time)
    {
        m_queue->advance(time);
        settle();
    }

    std::unique_ptr<ShazamManager> m_shazam;
    std::unique_ptr<ShazamView> m_view;
};

void tst_ShazamView::init()
{
    setUp();
    qputenv("TMPDIR", m_home->path().toUtf8());
    m_shazam = TestAccess::makeIn<ShazamManager>(
        m_desktop->microphone, *m_files, *m_queue, m_desktop->systemLog, *m_client, *m_player,
        [] { return nullptr; }, [] { return 1.0; });
}

void tst_ShazamView::cleanup()
{
    m_view.reset();
    m_queue->advance(1min);
    tearDown();
    m_shazam.reset();
}

void tst_ShazamView::says_data()
{
    QTest::addColumn<int>("flags"); // listening 1, processing 2, error 4, track 8
    QTest::addColumn<QString>("text");
    QTest::newRow("listening before all") << 15 << u"در حال گوش دادن…"_s;
    QTest::newRow("processing") << 14 << u"در حال شناسایی با هوش مصنوعی…"_s;
    QTest::newRow("an error before a track") << 12 << u"خطا"_s;
    QTest::newRow("a track") << 8 << u"شناسایی شد"_s;
    QTest::newRow("nothing") << 0 << u"آماده شناسایی"_s;
}

void tst_ShazamView::says()
{
    QFETCH(int, flags);
    const auto status = shazamStatus(flags & 1, flags & 2, flags & 4, flags & 8);
    QTEST(shazamStatusText(status, u"خطا"_s), "text");
}

void tst_ShazamView::startsByItself_data()
{
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("hasTrack");
    QTest::addColumn<bool>("starts");
    QTest::newRow("by hand") << false << false << false;
    QTest::newRow("asked for") << true << false << true;
    QTest::newRow("asked for over a result") << true << true << false;
}

void tst_ShazamView::startsByItself()
{
    QFETCH(bool, asked);
    QFETCH(bool, hasTrack);
    QFETCH(bool, starts);
    m_shazam->requestOpen(asked);
    if (hasTrack)
        m_shazam->setRecognizedTrack(ShazamData());
    open();
    QVERIFY(!m_shazam->autoStartOnOpen());
    pass(799ms);
    QVERIFY(!m_shazam->isListening());
    pass(1ms);
    QCOMPARE(m_shazam->isListening(), starts);
    m_view.reset();
    pass(5s);
    m_desktop->microphone.paths.clear();
    open(); // by hand
    pass(1s);
    QVERIFY(m_desktop->microphone.paths.isEmpty());
}

void tst_ShazamView::startsAlthoughClosed()
{
    m_shazam->requestOpen(true);
    open();
    m_view.reset();
    pass(800ms);
    QVERIFY(m_shazam->isListening());
}

void tst_ShazamView::forgetsWhenItCloses()
{
    open();
    m_desktop->microphone.granted = false;
    m_view->listen();
    settle();
    QVERIFY(m_view->hasFailed() && m_view->status() == ShazamView::Failed);
    m_desktop->microphone.granted = true;
    m_view->tryAgain();
    QVERIFY(!m_view->hasFailed());
    settle();
    pass(4500ms);
    m_view.reset(); // the cycle goes on, and its outcome waits for the next opening
    m_http->take().answer(R"({"message":"ناشناس"})", 404);
    settle();
    open();
    QCOMPARE(m_view->statusText(), u"ناشناس"_s);
    m_view.reset();
    QVERIFY(!m_shazam->errorMessage() && !m_shazam->recognizedTrack());
}

void tst_ShazamView::playsWhatWasRecognised()
{
    const ShazamData song{.title = u"باران"_s,
                          .artist = u"لیلا"_s,
                          .artworkURL = u"/cover"_s,
                          .streamURL = u"/song"_s,
                          .duration = 200};
    open();
    m_view->play(); // nothing there yet
    m_shazam->setRecognizedTrack(song);
    const QSignalSpy finished(m_view.get(), &ShazamView::finished);
    m_view->play();
    QVERIFY(m_player->isFullPlayerPresented() && !m_player->hasStation());
    QCOMPARE(finished.count(), 1);
    settle();
    const auto &station = m_player->currentStation().value();
    QCOMPARE(station.genre, u"shazam-result"_s);
    QCOMPARE(station.serverName, u"شزم"_s);
    QVERIFY(!station.streamURL && !station.displayGenre && !station.elapsedSeconds);
    QCOMPARE(station.trackCount, 1);
    const auto &track = *station.currentTrack();
    QCOMPARE(track.trackID, song.title);
    QCOMPARE(track.trackType, u"shazam"_s);
    QCOMPARE(track.duration, song.duration);
    QCOMPARE(station.currentStreamURL(), song.streamURL);
    QCOMPARE(station.currentTrackArtworkURL(), song.artworkURL);
}

QTEST_GUILESS_MAIN(tst_ShazamView)
#include "tst_ShazamView.moc"
