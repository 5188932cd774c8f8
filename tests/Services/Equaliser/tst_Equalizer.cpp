#include "Services/Equaliser/EqSnapshotStore.h"
#include "Services/Equaliser/Equalizer.h"
#include "Support/Columns.h"
#include "Support/FakeUserDefaults.h"
#include "Support/TestAccess.h"

#include <QSignalSpy>
#include <QTest>

using namespace navorin;
using namespace Qt::Literals::StringLiterals;

class tst_Equalizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatWasSaved_data();
    void readsWhatWasSaved();
    void savesBeforeItPublishes_data();
    void savesBeforeItPublishes();
    void offersThePresets();
    void changesByHand();
};

void tst_Equalizer::readsWhatWasSaved_data()
{
    // saved: enabled, preset, gains
    addColumns<QVariantList, bool, QString, bool>("saved", "enabled", "name", "takesGains");
    const auto row = [](const char *name, QVariant enabled, QVariant preset, QVariant gains) -> QTestData & {
        return QTest::newRow(name) << QVariantList{std::move(enabled), std::move(preset), std::move(gains)};
    };
    const QVariantList good{1.0, -2.5, 3.0, 12.0, -12.0};
    auto withText = good, tooLarge = good;
    withText[2] = u"3"_s;
    tooLarge[2] = 1e300;
    row("first run", {}, {}, {}) << false << u"تخت"_s << false;
    row("all", true, u"راک"_s, good) << true << u"راک"_s << true;
    row("wrong types", u"true"_s, 3.0, u"1,2,3,4,5"_s) << false << u"تخت"_s << false;
    row("a number is no bool", 1.0, u"راک"_s, good) << false << u"راک"_s << true;
    row("four gains", true, u"پاپ"_s, good.first(4)) << true << u"پاپ"_s << false;
    row("six gains", true, u"پاپ"_s, good + QVariantList{0.0}) << true << u"پاپ"_s << false;
    row("a text among them", true, u"پاپ"_s, withText) << true << u"پاپ"_s << false;
    row("more than a float holds", true, u"پاپ"_s, tooLarge) << true << u"پاپ"_s << false;
}

void tst_Equalizer::readsWhatWasSaved()
{
    const auto [saved, takesGains] = fetched<QVariantList, bool>("saved", "takesGains");
    FakeUserDefaults defaults;
    defaults.values = {{u"eq.enabled"_s, saved[0]}, {u"eq.preset"_s, saved[1]}, {u"eq.gains"_s, saved[2]}};
    const auto equalizer = TestAccess::make<Equalizer>(defaults);

    QTEST(equalizer->isEnabled(), "enabled");
    QTEST(equalizer->selectedPreset(), "name");
    QCOMPARE(equalizer->gains(), takesGains ? EqGains({1, -2.5F, 3, 12, -12}) : EqGains());
    QTEST(eqSnapshotStore().read().enabled, "enabled");
    QCOMPARE(*eqSnapshotStore().read().gains, equalizer->gains());
    QVERIFY(defaults.written.empty());
}

void tst_Equalizer::savesBeforeItPublishes_data()
{
    addColumns<std::function<void(Equalizer &)>, int>("change", "rounds");
    const auto row = [](const char *name, int rounds, std::function<void(Equalizer &)> change) {
        QTest::newRow(name) << std::move(change) << rounds;
    };
    row("switch", 1, [](Equalizer &e) { e.setEnabled(true); });
    row("the same again", 1, [](Equalizer &e) { e.setSelectedPreset(e.selectedPreset()); });
    row("a preset", 3, [](Equalizer &e) { e.applyPreset(EQPreset::all[1]); });
    row("by hand", 2, [](Equalizer &e) { e.setGain(2, 5); });
}

void tst_Equalizer::savesBeforeItPublishes()
{
    const auto [change, rounds] = fetched<std::function<void(Equalizer &)>, int>("change", "rounds");
    FakeUserDefaults defaults;
    const auto equalizer = TestAccess::make<Equalizer>(defaults);
    QStringList events;
    auto last = eqSnapshotStore().read().gains;
    const auto notePublished = [&] {
        if (std::exchange(last, eqSnapshotStore().read().gains) != last)
            events.append(u"published"_s);
    };
    defaults.onWrite = [&](const QString &key) {
        notePublished();
        events.append(key);
    };
    change(*equalizer);
    notePublished();
    QStringList expected;
    for (int i = 0; i < rounds; ++i)
        expected += {u"eq.enabled"_s, u"eq.preset"_s, u"eq.gains"_s, u"published"_s};
    QCOMPARE(events, expected);

    defaults.onWrite = {};
    const auto restarted = TestAccess::make<Equalizer>(defaults);
    QCOMPARE(restarted->isEnabled(), equalizer->isEnabled());
    QCOMPARE(restarted->selectedPreset(), equalizer->selectedPreset());
    QCOMPARE(restarted->gains(), equalizer->gains());
}

void tst_Equalizer::offersThePresets()
{
    FakeUserDefaults defaults;
    const auto equalizer = TestAccess::make<Equalizer>(defaults);
    const QSignalSpy renamed(equalizer.get(), &Equalizer::selectedPresetChanged);
    equalizer->applyPreset(EQPreset::all[0]); // the one that is selected already
    QVERIFY(equalizer->isEnabled());
    QCOMPARE(renamed.size(), 0);
    equalizer->applyPreset(EQPreset::all[2]);
    equalizer->setEnabled(false);
    QCOMPARE(equalizer->selectedPreset(), u"راک"_s);
    QCOMPARE(equalizer->gainList(), QList<qreal>({4, 2, -2, 3, 4}));
}

void tst_Equalizer::changesByHand()
{
    FakeUserDefaults defaults;
    const auto equalizer = TestAccess::make<Equalizer>(defaults);
    equalizer->setGains({4, 2, -2, 3, 4});
    const auto before = eqSnapshotStore().read();
    equalizer->setGain(0, 20);
    equalizer->setGain(4, -20);
    QCOMPARE(equalizer->gains(), (EqGains{12, 2, -2, 3, -12}));
    QCOMPARE(equalizer->selectedPreset(), u"سفارشی"_s);
    QVERIFY(!equalizer->isEnabled());
    QCOMPARE(*before.gains, (EqGains{4, 2, -2, 3, 4})); // what a reader holds stays as it was
}

QTEST_GUILESS_MAIN(tst_Equalizer)
#include "tst_Equalizer.moc"
