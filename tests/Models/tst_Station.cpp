#include "Models/Station.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

Station station(const QByteArray &json)
{
    return json::decode<Station>(json);
}

PlaylistTrack track(const QByteArray &json)
{
    return json::decode<PlaylistTrack>(json);
}

QString shown(const std::optional<QString> &text)
{
    return text ? *text : u"<absent>"_s;
}

QString shown(const std::optional<qint64> &number)
{
    return number ? QString::number(*number) : u"<absent>"_s;
}

} // namespace

class tst_Station : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryField();
    void textsInEveryForm_data();
    void textsInEveryForm();
    void trackTolerance_data();
    void trackTolerance();
    void strictness_data();
    void strictness();
    void wrapsTheTrackIndex_data();
    void wrapsTheTrackIndex();
    void programmeLine_data();
    void programmeLine();
    void names_data();
    void names();
    void addresses();
    void hydration();
    void identity();
};

void tst_Station::readsEveryField()
{
    const auto s = station(R"({"elapsed_seconds": 12, "genre":"g","title":"t","artist":"a","server_name":"n",
        "stream_url":"u","artwork_url":"w","source":"s","category":"iranian","display_genre":"d","track_index":-1,
        "track_count":9,"future":{"a":[1,{"b":null}]},"tracks":[{"id":5,"track_type":"radio","track_id":"x",
        "title":"گل","artist":"b","artwork_url":"c","stream_url":"e","duration":215}]})");
    QCOMPARE(s.genre, u"g"_s);
    QCOMPARE(s.title, u"t"_s);
    QCOMPARE(s.artist, u"a"_s);
    QCOMPARE(s.serverName, u"n"_s);
    QCOMPARE(s.streamURL, u"u"_s);
    QCOMPARE(s.artworkURL, u"w"_s);
    QCOMPARE(s.source, u"s"_s);
    QCOMPARE(s.category, u"iranian"_s);
    QCOMPARE(s.displayGenre, u"d"_s);
    QCOMPARE(s.trackIndex, -1);
    QCOMPARE(s.trackCount, 9);
    QCOMPARE(s.elapsedSeconds, 12.0);
    const PlaylistTrack expected{5, u"radio"_s, u"x"_s, u"گل"_s, u"b"_s, u"c"_s, u"e"_s, 215};
    QCOMPARE(s.tracks, QList{expected});

    const auto bare = station(R"({"genre":"g","title":null})");
    QVERIFY(!bare.title && !bare.tracks && !bare.trackIndex && !bare.elapsedSeconds);
    QVERIFY(json::decode<StationsResponse>(R"({"code":500})").data == std::nullopt);
    QCOMPARE(json::decode<StationsResponse>("\xEF\xBB\xBF{\"data\":[]}").data, QList<Station>());
}

void tst_Station::textsInEveryForm_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("text"); // empty: refused
    const QString longText = u"ترانه "_s.repeated(200);
    QTest::newRow("escapes") << R"("\"a\\\/\b\f\n\r\t\u06af")"_ba << u"\"a\\/\b\f\n\r\tگ"_s;
    QTest::newRow("surrogates") << R"("\ud83c\udfb5🎵")"_ba << u"🎵🎵"_s;
    QTest::newRow("every length of UTF-8")
        << R"("aéگ€🎵 and some more words")"_ba << u"aéگ€🎵 and some more words"_s;
    QTest::newRow("blanks behind") << "\"a\" \n\t"_ba << u"a"_s;
    QTest::newRow("quote behind an escape") << R"("a\\")"_ba << u"a\\"_s;
    QTest::newRow("long") << '"' + longText.toUtf8() + '"' << longText;
    QTest::newRow("long with escapes") << R"("\n)" + longText.toUtf8() + '"' << QString(u'\n' + longText);
    QTest::newRow("bad escape") << R"("\x41")"_ba << QString();
    QTest::newRow("half a surrogate") << R"("\ud83c")"_ba << QString();
    QTest::newRow("control character") << "\"a\x01\""_ba << QString();
    QTest::newRow("overlong") << "\"\xC0\x80\""_ba << QString();
}

void tst_Station::textsInEveryForm()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    // as a value, three times over, in a field of each tone, and as a key
    const QByteArray object = R"({"\u0067enre":)" + json + ",\"title\":" + json + R"(,"tracks":[{"id":)" +
                              json + R"(},{"title":)" + json + R"(}]})";
    if (text.isEmpty()) {
        QVERIFY_EXCEPTION_THROWN(station(object), DecodingError);
        QVERIFY_EXCEPTION_THROWN(station("{\"genre\":\"a\"," + json + ":1}"), DecodingError);
        return;
    }
    const auto s = station(object);
    QCOMPARE(s.genre, text);
    QCOMPARE(s.title, text);
    QCOMPARE(s.tracks->first().trackID, text);
    QCOMPARE(s.tracks->last().title, text);
}

void tst_Station::trackTolerance_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("trackID");
    QTest::addColumn<QString>("duration");
    const auto none = u"<absent>"_s;
    QTest::newRow("id as text") << R"({"id":"12"})"_ba << u"12"_s << u"12"_s << none;
    QTest::newRow("id as number") << R"({"id":5})"_ba << u"5"_s << u"5"_s << none;
    QTest::newRow("id no number") << R"({"id":"x"})"_ba << none << u"x"_s << none;
    QTest::newRow("id empty") << R"({"id":""})"_ba << none << u""_s << none;
    QTest::newRow("signs") << R"({"id":"+7","duration":"-3"})"_ba << u"7"_s << u"+7"_s << u"-3"_s;
    QTest::newRow("blank in number") << R"({"id":" 7"})"_ba << none << u" 7"_s << none;
    QTest::newRow("persian digits") << R"({"id":"۷"})"_ba << none << u"۷"_s << none;
    QTest::newRow("overflow as text")
        << R"({"id":"9223372036854775808"})"_ba << none << u"9223372036854775808"_s << none;
    QTest::newRow("limits") << R"({"id":9223372036854775807,"duration":-9223372036854775808})"_ba
                            << u"9223372036854775807"_s << u"9223372036854775807"_s
                            << u"-9223372036854775808"_s;
    QTest::newRow("overflow as number")
        << R"({"id":9223372036854775808,"duration":-9223372036854775809})"_ba << none << none << none;
    QTest::newRow("huge") << R"({"id":99999999999999999999999999,"duration":1e30,"x":-1E+400 })"_ba << none
                          << none << none;
    QTest::newRow("empty track id counts") << R"({"id":3,"track_id":""})"_ba << u"3"_s << u""_s << none;
    QTest::newRow("track id as number") << R"({"id":3,"track_id":44})"_ba << u"3"_s << u"44"_s << none;
    QTest::newRow("wrong types") << R"({"id":true,"track_id":[1],"duration":{"a":1},"title":7})"_ba << none
                                 << none << none;
    QTest::newRow("duration text") << R"({"duration":"215"})"_ba << none << none << u"215"_s;
    QTest::newRow("duration whole") << R"({"duration":215.0})"_ba << none << none << u"215"_s;
    QTest::newRow("duration fraction") << R"({"duration":215.5})"_ba << none << none << none;
    QTest::newRow("duration colon") << R"({"duration":"3:35"})"_ba << none << none << none;
    QTest::newRow("empty object") << "{}"_ba << none << none << none;
}

void tst_Station::trackTolerance()
{
    QFETCH(QByteArray, json);
    const auto t = track(json);
    QTEST(shown(t.id), "id");
    QTEST(shown(t.trackID), "trackID");
    QTEST(shown(t.duration), "duration");
    QVERIFY(!t.title);
}

void tst_Station::strictness_data()
{
    QTest::addColumn<QByteArray>("json");
    const char *bad[] = {
        "",
        "<html></html>",
        "[]",
        "null",
        R"({"data":{}})",
        R"({"data":[{"title":"no genre"}]})",
        R"({"data":[{"genre":null}]})",
        R"({"data":[{"genre":"a"},{"genre":"b","track_index":"1"}]})",
        R"({"data":[{"genre":"a","track_index":1.5}]})",
        R"({"data":[{"genre":"a","elapsed_seconds":"1"}]})",
        R"({"data":[{"genre":"a","title":7}]})",
        R"({"data":[{"genre":"a","tracks":{}}]})",
        R"({"data":[{"genre":"a","tracks":[1]}]})",
        R"({"data":[{"genre":"a","tracks":[null]}]})",
        R"({"data":[{"genre":"a"}])",
        R"({"data":[{"genre":"a"}]} x)",
        R"({"data":[{"genre":"a"}]}{})",
        R"({"data":[{"genre":"a","unknown":nul}]})",
        R"({"data":[{"genre":"a","unknown":{"x":01}}]})",
        R"({"data":[{"genre":"a","unknown":1.e5}]})",
        R"({"data":[{"genre":"a","tracks":[{"duration":1.5e}]}]})",
        R"({"data":[{"genre":"a","tracks":[{"id":-}]}]})",
        R"({"data":[{"genre":"a","tracks":[{"id":0"12"}]}]})",
        R"({"data":[{"genre":"a","tracks":[{"id":1e400:4}]}]})",
        R"({"data":[{"genre":"a","unknown":1:4}]})",
        R"({"data":[{"genre":"a":4}]})",
        R"({"data":[{"genre":"a" "title":"b"}]})",
        "{\"data\":[{\"genre\":\"\xff\xfe\"}]}",
        R"({"code":"1","data":[]})",
    };
    for (const auto *text : bad)
        QTest::newRow(text) << QByteArray(text);
    QTest::newRow("nested without end")
        << "{\"x\":"_ba + QByteArray(100000, '[') + QByteArray(100000, ']') + '}';
    QTest::newRow("truncated") << R"({"data":[{"genre":"a","title":"b)"_ba;
}

void tst_Station::strictness()
{
    QFETCH(QByteArray, json);
    QVERIFY_EXCEPTION_THROWN(json::decode<StationsResponse>(json), DecodingError);
}

void tst_Station::wrapsTheTrackIndex_data()
{
    QTest::addColumn<QString>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("normalized");
    QTest::newRow("absent") << u"null"_s << 3 << 0;
    QTest::newRow("inside") << u"2"_s << 5 << 2;
    QTest::newRow("too large") << u"7"_s << 5 << 2;
    QTest::newRow("negative") << u"-1"_s << 5 << 4;
    QTest::newRow("least") << u"-9223372036854775808"_s << 7 << 6;
    QTest::newRow("no tracks") << u"7"_s << 0 << 0;
}

void tst_Station::wrapsTheTrackIndex()
{
    QFETCH(QString, index);
    QFETCH(int, count);
    Station s = station("{\"genre\":\"g\",\"track_index\":"_ba + index.toLatin1() + '}');
    s.tracks = QList<PlaylistTrack>(count);
    QTEST(int(s.normalizedTrackIndex()), "normalized");
    QCOMPARE(s.currentTrack(), count ? &s.tracks->at(s.normalizedTrackIndex()) : nullptr);
}

void tst_Station::programmeLine_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shownTitle");
    QTest::addColumn<QString>("shownArtist");
    QTest::newRow("three parts") << u"A - B - C"_s << u"B - C"_s << u"A"_s;
    QTest::newRow("hyphen in the artist") << u"Jean-Luc - Song"_s << u"Luc - Song"_s << u"Jean"_s;
    QTest::newRow("no separator") << u"A-B"_s << u"A-B"_s << u""_s;
    QTest::newRow("persian") << u"خواننده - ترانه"_s << u"ترانه"_s << u"خواننده"_s;
    QTest::newRow("begins with the hyphen") << u"- A - B"_s << u"A - B"_s << u"A - B"_s;
    QTest::newRow("only the separator") << u" - "_s << u""_s << u""_s;
    QTest::newRow("line break is no blank") << u"A - \n"_s << u"\n"_s << u"A"_s;
    QTest::newRow("empty") << u""_s << u"genre"_s << u""_s;
}

void tst_Station::programmeLine()
{
    QFETCH(QString, title);
    Station s;
    s.genre = u"genre"_s;
    s.title = title;
    QTEST(s.displayTrackTitle(), "shownTitle");
    QTEST(s.displayArtist(), "shownArtist");
    QCOMPARE(s.currentTrackID(), QString(u"genre#"_s + s.displayTrackTitle()));
}

void tst_Station::names_data()
{
    QTest::addColumn<QString>("serverName");
    QTest::addColumn<bool>("hidden");
    QTest::newRow("plain") << u"رادیو موج"_s << false;
    QTest::newRow("iranian") << u"ایرانی"_s << true;
    QTest::newRow("blank") << u"بین المللی"_s << true;
    QTest::newRow("joiner") << u"بین\u200Cالمللی"_s << true;
    QTest::newRow("joined") << u"بینالمللی"_s << true;
    QTest::newRow("empty") << u""_s << true;
}

void tst_Station::names()
{
    QFETCH(QString, serverName);
    QFETCH(bool, hidden);
    Station s;
    s.genre = u"g"_s;
    s.serverName = serverName;
    QCOMPARE(s.displayName(), hidden ? u"g"_s : serverName);
    s.title = u"عنوان"_s;
    QCOMPARE(s.displayName(), hidden ? u"عنوان"_s : serverName);
}

void tst_Station::addresses()
{
    Station s;
    s.genre = u"g"_s;
    s.title = u"دو واژه & a+b"_s;
    QVERIFY(!s.currentStreamURL() && !s.currentTrackArtworkURL());
    s.streamURL = u""_s;
    s.artworkURL = u"/a?x=1"_s;
    QCOMPARE(s.currentStreamURL(), u""_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/a?x=1&v=%D8%AF%D9%88%20%D9%88%D8%A7%DA%98%D9%87%20&%20a+b"_s);
    s.artworkURL = u"/a"_s;
    s.title = u"x#\"%"_s;
    QCOMPARE(s.currentTrackArtworkURL(), u"/a?v=x%23%22%25"_s);

    s.tracks = QList<PlaylistTrack>(2);
    s.trackIndex = 3;
    QCOMPARE(s.currentStreamURL(), u"/stream/g?track=1"_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/a"_s);
    QCOMPARE(s.currentTrackID(), u"g#1"_s);
    (*s.tracks)[1].streamURL = u"/one.mp3"_s;
    (*s.tracks)[1].artworkURL = u"/one.png"_s;
    QCOMPARE(s.currentStreamURL(), u"/one.mp3"_s);
    QCOMPARE(s.currentTrackArtworkURL(), u"/one.png"_s);
    setOfflineArtworkLookup([](const PlaylistTrack &) { return std::optional(u"file:///kept.art"_s); });
    QCOMPARE(s.currentTrackArtworkURL(), u"file:///kept.art"_s);
    setOfflineArtworkLookup({});
}

void tst_Station::hydration()
{
    Station s;
    QVERIFY(!s.needsHydration());
    s.source = u"songsara"_s;
    QVERIFY(s.needsHydration());
    s.tracks = QList<PlaylistTrack>();
    QVERIFY(s.needsHydration());
    s.tracks = QList<PlaylistTrack>(1);
    QVERIFY(!s.needsHydration());
    s.tracks.reset();
    s.source = u"Songsara"_s;
    QVERIFY(!s.needsHydration());
}

void tst_Station::identity()
{
    Station a;
    a.genre = u"g"_s;
    auto b = a;
    b.artist = u"x"_s;
    b.tracks = QList<PlaylistTrack>(3);
    b.elapsedSeconds = 5;
    QCOMPARE(a, b);
    for (const auto change :
         {+[](Station &s) { s.genre = u"h"_s; }, +[](Station &s) { s.title = u""_s; },
          +[](Station &s) { s.artworkURL = u""_s; }, +[](Station &s) { s.trackIndex = 0; }}) {
        auto changed = a;
        change(changed);
        QVERIFY(!(a == changed));
    }
    b.title = u"other"_s;
    QCOMPARE(qHash(a), qHash(b));
}

QTEST_GUILESS_MAIN(tst_Station)
#include "tst_Station.moc"
