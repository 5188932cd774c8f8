#include "Services/Playback/RadioPlayerRig.h"
#include "Views/Offline/OfflineLibraryView.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class tst_OfflineLibraryView : public QObject, private RadioPlayerRig
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup()
    {
        m_view.reset();
        tearDown();
    }
    void texts();
    void downloadsKeepTheirPlaces();
    void followsTheStore();

private:
    FakeHttpSession::Stream started(const QString &id)
    {
        m_offline->download({.trackID = id, .title = id, .streamURL = u"/stream/x"_s, .duration = 65});
        m_queue->drain();
        return m_http->takeStream();
    }
    /// All the rows of a model, one role of each.
    static QStringList shown(const QAbstractItemModel *model, int role)
    {
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->index(row, 0).data(role).toString());
        return texts;
    }

    std::unique_ptr<OfflineLibraryView> m_view;
};

void tst_OfflineLibraryView::texts()
{
    for (const auto &[seconds, text] :
         {std::pair(std::optional<qint64>(), u""_s), {0, u"0:00"_s}, {65, u"1:05"_s}, {3671, u"61:11"_s}})
        QCOMPARE(durationText(seconds), text);
    for (const auto &[desktop, format] : {std::pair(u""_s, QLocale::DataSizeSIFormat),
                                          {u"ubuntu:GNOME"_s, QLocale::DataSizeSIFormat},
                                          {u"KDE"_s, QLocale::DataSizeIecFormat}})
        QCOMPARE(dataSizeFormat(desktop), format);
    const QLocale persian(QLocale::Persian);
    for (const auto &[bytes, format, number] :
         {std::tuple(qint64(83'750'000), QLocale::DataSizeSIFormat, 83.8),
          {qint64(5) << 29, QLocale::DataSizeIecFormat, 2.5}}) {
        const auto summary = librarySummary(12, bytes, format);
        QVERIFY2(summary.startsWith(QString(u"12 آهنگ • مجموع: "_s + persian.toString(number, 'f', 1))),
                 qPrintable(summary));
    }
}

void tst_OfflineLibraryView::downloadsKeepTheirPlaces()
{
    const QList<OfflineDownloadRow> before{{u"c"_s, u"ج"_s, 0.1}, {u"a"_s, u"الف"_s, 0.2}};
    const PlaylistTrack nameless;
    const auto after = downloadRows(before, {{u"a"_s, nameless}, {u"b"_s, nameless}}, {{u"a"_s, 0.5}});
    QCOMPARE(after, (QList<OfflineDownloadRow>{{u"a"_s, u"الف"_s, 0.5}, {u"b"_s, u"بدون عنوان"_s, 0}}));
}

void tst_OfflineLibraryView::followsTheStore()
{
    m_view = std::make_unique<OfflineLibraryView>(*m_offline, *m_player);
    auto *entries = m_view->entries();
    auto *downloads = m_view->downloads();
    QSignalSpy inserted(entries, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(entries, &QAbstractItemModel::modelReset);
    QSignalSpy progressed(downloads, &QAbstractItemModel::dataChanged);
    m_view->play(0);
    QVERIFY(m_view->isEmpty() && !m_view->hasEntries());

    const QList streams{started(u"1"_s), started(u"2"_s), started(u"3"_s)};
    QVERIFY(!m_view->isEmpty() && !m_view->hasEntries());
    QCOMPARE(shown(downloads, OfflineDownloadModel::TitleRole), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
    streams.at(1).begin(10);
    streams.at(1).receive("12345"_ba);
    m_queue->drain();
    QCOMPARE(progressed.size(), 1);
    QCOMPARE(downloads->index(1).data(OfflineDownloadModel::ProgressRole), 0.5);

    m_view->cancel(u"track|2"_s);
    m_view->cancel(u"track|unknown"_s);
    for (const auto &[stream, left] : {std::pair(streams.at(0), 1), std::pair(streams.at(2), 0)}) {
        stream.answer("x"_ba);
        QTRY_COMPARE((m_queue->drain(), downloads->rowCount()), left);
    }
    QCOMPARE(shown(entries, RowListModel::TitleRole), (QStringList{u"3"_s, u"1"_s}));
    QCOMPARE(shown(entries, RowListModel::NoteRole), (QStringList{u"1:05"_s, u"1:05"_s}));
    QVERIFY(inserted.size() == 2 && reset.isEmpty() && m_view->summary().startsWith(u"2 آهنگ"_s));

    m_view->play(0);
    QTRY_VERIFY((m_queue->drain(), m_view->hasStation()));
    QCOMPARE(m_player->currentStation()->genre, u"offline-library"_s);
    QCOMPARE(m_player->currentStation()->trackIndex, 0);
    QCOMPARE(m_player->currentStation()->currentTrack()->title, u"1"_s);

    m_view->remove(u"track|3"_s);
    m_view->remove(u"track|unknown"_s);
    m_queue->drain();
    QCOMPARE(shown(entries, RowListModel::TitleRole), QStringList{u"1"_s});
    QCOMPARE(m_view->keyAt(0), u"track|1"_s);
    m_view->removeAll();
    m_queue->drain();
    QVERIFY(m_view->isEmpty() && entries->rowCount() == 0);
}

QTEST_GUILESS_MAIN(tst_OfflineLibraryView)
#include "tst_OfflineLibraryView.moc"
