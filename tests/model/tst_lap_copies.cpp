// Copies of a lap share its channels, and nothing else.

#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>
#include <QWeakPointer>

#include <memory>
#include <utility>

using Names = QList<QString>;

class tst_LapCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownsItsChannels_data();
    void ownsItsChannels();
    void copiesShareChannels_data();
    void copiesShareChannels();
    void copiesHaveTheirOwnMaps();
    void copiesCarryHeaderAndValues_data();
    void copiesCarryHeaderAndValues();
    void channelsOutliveTheirLap();
    void movedLapHoldsEverything();
    void travelsInAVariant();
};

void tst_LapCopies::ownsItsChannels_data()
{
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("released");

    for (const bool calculated : {false, true}) {
        const char *kind = calculated ? "calculated" : "recorded";
        QTest::addRow("%s, replaced", kind) << calculated << "replace" << true;
        QTest::addRow("%s, removed", kind) << calculated << "remove" << true;
        QTest::addRow("%s, cleared", kind) << calculated << "clear" << true;
        QTest::addRow("%s, lap destroyed", kind) << calculated << "destroy" << true;
        QTest::addRow("%s, another one removed", kind) << calculated << "remove other" << false;
        QTest::addRow("%s, another one added", kind) << calculated << "add other" << false;
    }
}

void tst_LapCopies::ownsItsChannels()
{
    QFETCH(bool, calculated);
    QFETCH(QString, action);
    QFETCH(bool, released);

    const auto add = [calculated](ZEP::Lap &lap, const QString &name) {
        if (calculated)
            lap.addCalculatedChannel(newChannel({1}), name);
        else
            lap.addChannel(newChannel({1}), name);
    };
    const auto remove = [calculated](ZEP::Lap &lap, const QString &name) {
        if (calculated)
            lap.removeCalculatedChannel(name);
        else
            lap.removeChannel(name);
    };

    auto lap = std::make_unique<ZEP::Lap>();
    add(*lap, "apple");
    const QWeakPointer<ZEP::Channel> channel =
        (calculated ? lap->calculatedChannel("apple") : lap->channel("apple")).toWeakRef();
    QVERIFY(!channel.isNull());

    if (action == "replace")
        add(*lap, "apple");
    else if (action == "remove")
        remove(*lap, "apple");
    else if (action == "clear")
        lap->clear();
    else if (action == "destroy")
        lap.reset();
    else if (action == "remove other")
        remove(*lap, "Apple");
    else if (action == "add other")
        add(*lap, "Apple");
    QCOMPARE(channel.isNull(), released);
}

void tst_LapCopies::copiesShareChannels_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned") << true;
}

void tst_LapCopies::copiesShareChannels()
{
    QFETCH(bool, assigned);

    ZEP::Lap lap;
    lap.addChannel(newChannel({1, 2}), "a");
    lap.addCalculatedChannel(newChannel({3, 4}), "b");

    ZEP::Lap target;
    target.addChannel(newChannel({9}), "old");
    target = lap;
    ZEP::Lap copy = assigned ? target : ZEP::Lap(lap);

    QCOMPARE(copy.getAvailableChannels(), Names{"a"});
    QCOMPARE(copy.getAvailableCalculatedChannels(), Names{"b"});
    QCOMPARE(copy.channel("a"), lap.channel("a"));
    QCOMPARE(copy.calculatedChannel("b"), lap.calculatedChannel("b"));
    copy.channel("a")->setSample(0, 7);
    lap.calculatedChannel("b")->setSample(1, 8);
    COMPARE_BITS(lap.channel("a")->data, QVector<double>({7, 2}));
    COMPARE_BITS(copy.calculatedChannel("b")->data, QVector<double>({3, 8}));
}

void tst_LapCopies::copiesHaveTheirOwnMaps()
{
    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.addChannel(newChannel({1}), "a");
    lap.addCalculatedChannel(newChannel({2}), "b");
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");

    ZEP::Lap copy(lap);
    copy.setDriverName("Another Driver");
    copy.removeChannel("a");
    copy.addCalculatedChannel(newChannel({3}), "b");
    copy.addChannel(newChannel({4}), "c");
    copy.clear();
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
    COMPARE_COLUMNS(lap, (Columns{{"a", {1}}}));
    COMPARE_BITS(lap.calculatedChannel("b")->data, QVector<double>({2}));
    QCOMPARE(lap.value("Skies").print(), QString("Clear"));
    QCOMPARE(lap.value("gap").print(), QString("2.5 m"));
}

void tst_LapCopies::copiesCarryHeaderAndValues_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("copied") << "copied";
    QTest::newRow("assigned") << "assigned";
    QTest::newRow("move-assigned") << "moved";
}

void tst_LapCopies::copiesCarryHeaderAndValues()
{
    QFETCH(QString, how);

    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.setLapInSession(5);
    lap.setSession(ZEP::SessionRace);
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");

    ZEP::Lap target;
    target.setDriverName("Another Driver");
    target.addValue("old", 1, QString());
    target.setCalculatedValue("old", 1, QString());
    if (how == "copied")
        target = ZEP::Lap(static_cast<const ZEP::Lap &>(lap));
    else if (how == "assigned")
        target = lap;
    else
        target = std::move(lap);
    QCOMPARE(target.getDriverName(), QString("A Driver"));
    QCOMPARE(target.getLapInSession(), 5);
    QCOMPARE(target.getSession(), ZEP::SessionRace);
    QCOMPARE(target.valueNameList(), Names{"Skies"});
    QCOMPARE(target.calculatedValuesNames(), Names{"gap"});
    QCOMPARE(target.value("Skies").print(), QString("Clear"));
    QCOMPARE(target.calculatedValue("gap").print(), QString("2.5 m"));
}

void tst_LapCopies::channelsOutliveTheirLap()
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel({1, 2}), "a");
    ZEP::Lap copy(*lap);
    const auto handedOut = lap->channel("a");
    lap.reset();
    COMPARE_BITS(handedOut->data, QVector<double>({1, 2}));
    copy.clear();
    COMPARE_BITS(handedOut->data, QVector<double>({1, 2}));
}

void tst_LapCopies::movedLapHoldsEverything()
{
    ZEP::Lap lap;
    lap.addChannel(newChannel({1, 2}), "a");
    lap.addCalculatedChannel(newChannel({3, 4}), "b");
    const ZEP::Channel *recorded = lap.channel("a").data();
    const ZEP::Channel *calculated = lap.calculatedChannel("b").data();

    ZEP::Lap target;
    target.addChannel(newChannel({9}), "old");
    target = std::move(lap);
    QCOMPARE(target.getAvailableChannels(), Names{"a"});
    QCOMPARE(target.getAvailableCalculatedChannels(), Names{"b"});
    QCOMPARE(target.channel("a").data(), recorded);
    QCOMPARE(target.calculatedChannel("b").data(), calculated);
}

void tst_LapCopies::travelsInAVariant()
{
    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.addChannel(newChannel({1, 2}), "a");

    const QVariant variant = QVariant::fromValue(lap);
    QCOMPARE(variant.typeName(), "ZEP::Lap");
    auto unpacked = variant.value<ZEP::Lap>();
    QCOMPARE(unpacked.getDriverName(), QString("A Driver"));
    QCOMPARE(unpacked.channel("a"), lap.channel("a"));
}

NAPAMMUL_TEST(tst_LapCopies)

#include "tst_lap_copies.moc"
