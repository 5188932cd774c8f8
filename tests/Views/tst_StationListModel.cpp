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
    void stepsAreFew();
    void stepsLeadToAnyList();
    void aRefreshTouchesOnlyWhatChanged();
    void mostlyNewIsShownInTheSameRows();
};

void tst_StationListModel::stepsAreFew()
{
    const std::tuple<const char *, const char *, int> cases[]{
        {"abc", "abc", 0},     {"", "abc", 1},      {"abc", "", 1},          {"abcdef", "aef", 1},
        {"abcdef", "bdf", 3},  {"af", "abcdef", 1}, {"abcdef", "bcdefa", 1}, {"abcdef", "fabcde", 1},
        {"abcde", "edxab", 4}, {"abab", "aab", 2}, // equals
        {"ab", "aabb", 2},
    };
    for (const auto &[from, to, steps] : cases) {
        const auto before = keys(from), after = keys(to);
        const auto found = listSteps(before, after, steps);
        QVERIFY2(found, to);
        QCOMPARE(carriedOut(before, after, *found), after);
        QVERIFY2(steps == 0 || !listSteps(before, after, found->size() - 1), to);
    }
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

QTEST_GUILESS_MAIN(tst_StationListModel)
#include "tst_StationListModel.moc"
