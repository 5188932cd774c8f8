#include "Views/Catalogue/StationListModel.h"
#include "Views/Shared/ListSteps.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

namespace {

QList<QString> keys(const char *letters)
{
    QList<QString> list;
    for (; *letters; ++letters)
        list.append(QString(QLatin1Char(*letters)));
    return list;
}

/// Carries the steps out on a list, as any view has to.
QList<QString> carriedOut(QList<QString> list, const QList<QString> &target, const QList<ListStep> &steps)
{
    for (const auto &step : steps) {
        if (step.kind == ListStep::Kind::Remove)
            list.remove(step.row, step.number);
        else if (step.kind == ListStep::Kind::Move)
            list.move(step.row, step.number);
        else
            for (auto row = step.row; row < step.row + step.number; ++row)
                list.insert(row, target.at(row));
    }
    return list;
}

QList<Station> stations(const QList<QString> &genres)
{
    QList<Station> list;
    for (const auto &genre : genres) {
        Station station;
        station.genre = genre;
        station.serverName = QString(u"name of "_s + genre);
        list.append(station);
    }
    return list;
}

QList<QString> genresIn(const StationListModel &model)
{
    QList<QString> genres;
    for (int row = 0; row < model.rowCount(); ++row)
        genres.append(model.genreAt(row));
    return genres;
}

} // namespace

class tst_StationListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stepsAreFew_data();
    void stepsAreFew();
    void stepsLeadToAnyList();
    void aRefreshTouchesOnlyWhatChanged();
    void mostlyNewIsShownInTheSameRows();
    void selection();
};

void tst_StationListModel::stepsAreFew_data()
{
    QTest::addColumn<QList<QString>>("before");
    QTest::addColumn<QList<QString>>("after");
    QTest::addColumn<int>("steps");
    QTest::newRow("same") << keys("abc") << keys("abc") << 0;
    QTest::newRow("first") << keys("") << keys("abc") << 1;
    QTest::newRow("last") << keys("abc") << keys("") << 1;
    QTest::newRow("run gone") << keys("abcdef") << keys("aef") << 1;
    QTest::newRow("two runs gone") << keys("abcdef") << keys("bdf") << 3;
    QTest::newRow("run new") << keys("af") << keys("abcdef") << 1;
    QTest::newRow("first to the end") << keys("abcdef") << keys("bcdefa") << 1;
    QTest::newRow("last to the front") << keys("abcdef") << keys("fabcde") << 1;
    QTest::newRow("gone, moved and new") << keys("abcde") << keys("edxab") << 4;
    QTest::newRow("one of two equals gone") << keys("abab") << keys("aab") << 2;
    QTest::newRow("equals grow") << keys("ab") << keys("aabb") << 2;
}

void tst_StationListModel::stepsAreFew()
{
    QFETCH(QList<QString>, before);
    QFETCH(QList<QString>, after);
    QFETCH(int, steps);
    const auto found = listSteps(before, after, steps);
    QVERIFY(found);
    QCOMPARE(carriedOut(before, after, *found), after);
    if (steps > 0)
        QVERIFY(!listSteps(before, after, found->size() - 1));
}

void tst_StationListModel::stepsLeadToAnyList()
{
    QRandomGenerator random(20);
    const auto someList = [&random] {
        QList<QString> list;
        for (auto i = random.bounded(14); i > 0; --i)
            list.append(QString(QChar(u'a' + random.bounded(12))));
        return list;
    };
    for (int i = 0; i < 5'000; ++i) {
        const auto before = someList();
        const auto after = someList();
        const auto steps = listSteps(before, after, 100);
        QVERIFY(steps);
        QCOMPARE(carriedOut(before, after, *steps), after);
    }
}

void tst_StationListModel::aRefreshTouchesOnlyWhatChanged()
{
    StationListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setStations(stations(keys("abcdefgh")));
    const QPersistentModelIndex g(model.index(6));
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);

    auto fresh = stations(keys("gabxdefh"));
    fresh[4].tracks.emplace(3);
    fresh[4].trackCount = 3;
    model.setStations(fresh);
    QCOMPARE(genresIn(model), keys("gabxdefh"));
    QCOMPARE(g.row(), 0);
    QCOMPARE(resets.count(), 0);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes[0][0].toModelIndex().row(), 4);
    QCOMPARE(changes[0][1].toModelIndex().row(), 4);
    QCOMPARE(model.index(4).data(StationListModel::LineRole).toString(), u"3 آهنگ"_s);

    model.setStations(fresh);
    QCOMPARE(changes.count(), 1);
}

void tst_StationListModel::mostlyNewIsShownInTheSameRows()
{
    QList<QString> all;
    for (int i = 0; i < 5'000; ++i)
        all.append(QString::number(i));
    QList<QString> even;
    for (int i = 0; i < 5'000; i += 2)
        even.append(QString::number(i));
    StationListModel model;
    model.setStations(stations(all));
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);
    model.setStations(stations(even));
    QCOMPARE(genresIn(model), even);
    QCOMPARE(removals.count(), 1);
    model.setStations(stations(all));
    QCOMPARE(genresIn(model), all);
    QCOMPARE(insertions.count(), 1);
    QCOMPARE(resets.count(), 0);
}

void tst_StationListModel::selection()
{
    StationListModel model;
    model.setStations(stations(keys("abac")));
    const auto selected = [&model] {
        QList<int> rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row).data(StationListModel::SelectedRole).toBool())
                rows.append(row);
        }
        return rows;
    };
    QCOMPARE(selected(), QList<int>());
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setSelectedGenre(u"a"_s);
    QCOMPARE(selected(), QList<int>({0, 2}));
    QCOMPARE(changes.count(), 2);
    model.setSelectedGenre(u"c"_s);
    QCOMPARE(selected(), QList<int>({3}));
    QCOMPARE(changes.count(), 5);
}

QTEST_GUILESS_MAIN(tst_StationListModel)
#include "tst_StationListModel.moc"
