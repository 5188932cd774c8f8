#include "Models/APIModels.h"

#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

template <typename T>
bool fails(const QByteArray &body)
{
    try {
        static_cast<void>(json::decode<T>(body));
        return false;
    } catch (const DecodingError &) {
        return true;
    }
}

} // namespace

class tst_APIModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessions_data();
    void sessions();
    void entities();
    void strictness_data();
    void strictness();
    void lyrics();
};

void tst_APIModels::sessions_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("resolved");
    const auto row = [](const char *name, const QByteArray &body, const QString &resolved) {
        QTest::newRow(name) << body << resolved;
    };
    row("top", R"({"session_id":"s","bot_link":"l","expires_in":90})", u"s l - - 90"_s);
    row("inside", R"({"data":{"session_id":"s","telegram_username":"t"}})", u"s - - t 300"_s);
    row("both", R"({"session_id":"a","data":{"session_id":"b","bot_username":"n","expires_in":5}})",
        u"a - n - 5"_s);
    row("the top goes before", R"({"bot_link":"a","data":{"session_id":"s","bot_link":"b"}})",
        u"s a - - 300"_s);
    row("null at the top", R"({"session_id":null,"data":{"session_id":"s"}})", u"s - - - 300"_s);
    row("empty at the top", R"({"session_id":"","data":{"session_id":"s"}})", u""_s);
    row("nowhere", R"({"data":null,"expires_in":3})", u""_s);
}

void tst_APIModels::sessions()
{
    QFETCH(QByteArray, body);
    QString shown;
    if (const auto session = json::decode<SessionInfoEnvelope>(body).resolved()) {
        const auto text = [](const std::optional<QString> &value) { return value.value_or(u"-"_s); };
        shown = QStringList{session->sessionID, text(session->botLink), text(session->botUsername),
                            text(session->telegramUsername), QString::number(session->expiresIn)}
                    .join(u' ');
    }
    QTEST(shown, "resolved");
}

void tst_APIModels::entities()
{
    auto entity = json::decode<SpotifyEntity>(
        R"({"type":7,"kind":"album","cover_url":[1],"artwork_url":"a","track_count":2,"tracks":[{"id":"x"}]})");
    QCOMPARE(entity.type, u"album"_s);
    QCOMPARE(entity.coverURL, u"a"_s);
    QCOMPARE(entity.tracks->constFirst().id, u"x"_s);
    entity =
        json::decode<SpotifyEntity>(R"({"kind":"album","type":"track","cover_url":"c","artwork_url":"a"})");
    QCOMPARE(entity.type, u"track"_s);
    QCOMPARE(entity.coverURL, u"c"_s);
    entity = json::decode<SpotifyEntity>(R"({"type":null,"kind":false})");
    QVERIFY(!entity.type && !entity.coverURL && !entity.tracks);
    QVERIFY(fails<SpotifyEntity>(R"({"track_count":"2"})") &&
            fails<SpotifyEntity>(R"({"tracks":[{"id":3}]})"));
}

void tst_APIModels::strictness_data()
{
    QTest::addColumn<bool>("fail");
    QTest::newRow("number as text") << fails<User>(R"({"id":"1"})");
    QTest::newRow("text as number") << fails<User>(R"({"username":1})");
    QTest::newRow("summary without id") << fails<PlaylistSummary>(R"({"title":"t"})");
    QTest::newRow("summary with a text for id") << fails<PlaylistSummary>(R"({"id":"1"})");
    QTest::newRow("favourite with a number for track id") << fails<FavoriteTrack>(R"({"id":1,"track_id":2})");
    QTest::newRow("boolean as number") << fails<ToggleResult>(R"({"data":{"favorited":1}})");
    QTest::newRow("one bad element") << fails<PlaylistsEnvelope>(R"({"data":{"playlists":[{"id":1},{}]}})");
    QTest::newRow("data of another type") << fails<PlaylistsEnvelope>(R"({"data":[]})");
    QTest::newRow("fraction as integer") << fails<ShazamData>(R"({"duration":1.5})");
    QTest::newRow("code as text") << fails<AuthEnvelope>(R"({"code":"200"})");
}

void tst_APIModels::strictness()
{
    QFETCH(bool, fail);
    QVERIFY(fail);
}

void tst_APIModels::lyrics()
{
    const auto data = json::decode<LyricsEnvelope>(
                          R"({"data":{"found":true,"synced":false,"elapsed_seconds":3,
                              "lines":[{"time":1,"text":"ا","translation":null},{}]}})")
                          .data.value();
    QCOMPARE(data.found, true);
    QCOMPARE(data.synced, false);
    QCOMPARE(data.elapsedSeconds, 3.0);
    QCOMPARE(data.lines.value(), (QList<LyricsLine>{{1.0, u"ا"_s, {}}, {}}));
    QVERIFY(!json::decode<LyricsEnvelope>(R"({"data":null})").data);
}

QTEST_GUILESS_MAIN(tst_APIModels)
#include "tst_APIModels.moc"
