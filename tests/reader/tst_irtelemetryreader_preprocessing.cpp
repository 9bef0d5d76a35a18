// The corrected channels of a finished lap, and the weight of its fuel.

#include "tests/support/extremes.h"
#include "tests/support/lapchannels.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/twocars.h"

#include <QTest>

#include <cmath>

using Names = QList<QString>;
using Samples = QVector<double>;

namespace {

} // namespace

class tst_IrTelemetryReaderPreprocessing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void yaw_data();
    void yaw();
    void yawOffsetIsRemovedFromTheHeaderOnly_data();
    void yawOffsetIsRemovedFromTheHeaderOnly();
    void yawIsShiftedInPlace();
    void fuelWeight_data();
    void fuelWeight();
    void fuelWeightNeedsAFuelLevel();
    void fuelWeightReplacesWhatIsThere();
    void densityMayBeCalculated();
    void percentUnits_data();
    void percentUnits();
    void percentUnitsOfCalculatedChannelsStay();
    void emptyLap();
};

void tst_IrTelemetryReaderPreprocessing::yaw_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<QVariant>("offset");
    QTest::addColumn<Samples>("samples");

    const Samples plain{1.0, 2.0, NoSample, -3.0};
    const Samples shifted{1.5, 2.5, NoSample + 0.5, -2.5};
    QTest::newRow("offset and channel") << "Yaw"
                                        << "yawOffset" << false << QVariant(0.5) << shifted;
    QTest::newRow("calculated offset") << "Yaw"
                                       << "yawOffset" << true << QVariant(0.5) << shifted;
    QTest::newRow("offset of a recording") << "Yaw"
                                           << "YawOffset" << false << QVariant(0.5) << plain;
    QTest::newRow("channel of a recording") << "yaw"
                                            << "yawOffset" << false << QVariant(0.5) << plain;
    QTest::newRow("both of a recording") << "yaw"
                                         << "YawOffset" << false << QVariant(0.5) << plain;
    QTest::newRow("offset is text") << "Yaw"
                                    << "yawOffset" << false << QVariant(QString("0.5")) << shifted;
    QTest::newRow("offset is no number")
        << "Yaw"
        << "yawOffset" << false << QVariant(QString("north")) << plain;
    QTest::newRow("offset is invalid") << "Yaw"
                                       << "yawOffset" << false << QVariant() << plain;
    QTest::newRow("offset is a single") << "Yaw"
                                        << "yawOffset" << false << QVariant(0.5f) << shifted;
}

void tst_IrTelemetryReaderPreprocessing::yaw()
{
    QFETCH(QString, channel);
    QFETCH(QString, value);
    QFETCH(bool, calculated);
    QFETCH(QVariant, offset);
    QFETCH(Samples, samples);

    for (const int car : {Player, Other}) {
        iRTelemetryReader reader;
        addTwoCars(&reader);
        ZEP::Lap &lap = reader.lap(car);
        lap.addChannel(newChannel({1.0, 2.0, NoSample, -3.0}, "rad"), channel);
        if (calculated)
            lap.setCalculatedValue(value, offset, "rad");
        else
            lap.addValue(value, offset, "rad");
        reader.preprocessLap(car);
        COMPARE_BITS(lap.channel(channel)->data, samples);
        QCOMPARE(lap.channel(channel)->unit(), QString("rad"));
        QCOMPARE(lap.containsValue("YawOffset"), value == "YawOffset");
    }
}

void tst_IrTelemetryReaderPreprocessing::yawOffsetIsRemovedFromTheHeaderOnly_data()
{
    QTest::addColumn<bool>("hasChannel");

    QTest::newRow("with a channel") << true;
    QTest::newRow("without a channel") << false;
}

void tst_IrTelemetryReaderPreprocessing::yawOffsetIsRemovedFromTheHeaderOnly()
{
    QFETCH(bool, hasChannel);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    if (hasChannel)
        lap.addChannel(newChannel({1.0}), "Yaw");
    lap.addValue("yawOffset", 0.5, "rad");
    lap.addValue("YawOffset", 0.25, "rad");
    lap.setCalculatedValue("yawOffset", 4.0, "rad");
    reader.preprocessLap(Player);
    QCOMPARE(lap.valueNameList(), Names{"YawOffset"});
    QCOMPARE(lap.calculatedValuesNames(), Names{"yawOffset"});
    if (hasChannel)
        COMPARE_BITS(lap.channel("Yaw")->data, Samples({1.5})); // that of the header counts
}

void tst_IrTelemetryReaderPreprocessing::yawIsShiftedInPlace()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    ZEP::Channel *channel = newChannel({1.0, 2.0});
    lap.addChannel(channel, "Yaw");
    lap.addValue("yawOffset", 0.5, "rad");
    const ZEP::Lap copy(lap);
    reader.preprocessLap(Player);
    QCOMPARE(lap.channel("Yaw").data(), channel);
    COMPARE_BITS(copy.channel("Yaw")->data, Samples({1.5, 2.5}));

    // The offset is gone: another time changes nothing.
    reader.preprocessLap(Player);
    COMPARE_BITS(channel->data, Samples({1.5, 2.5}));
}

void tst_IrTelemetryReaderPreprocessing::fuelWeight_data()
{
    QTest::addColumn<Samples>("level");
    QTest::addColumn<QVariant>("density"); // invalid: missing
    QTest::addColumn<bool>("derived");
    QTest::addColumn<Samples>("weight");

    QTest::newRow("plain") << Samples{10, 20} << QVariant(0.75) << true << Samples{7.5, 15};
    QTest::newRow("no ticks") << Samples{} << QVariant(0.75) << true << Samples{};
    QTest::newRow("missing tick") << Samples{10, NoSample, 20} << QVariant(0.75) << true
                                  << Samples{7.5, 7.499999671517645e24, 15};
    QTest::newRow("missing tick, light fuel")
        << Samples{NoSample} << QVariant(0.1) << true << Samples{NoSample * 0.1};
    QTest::newRow("infinite tick")
        << Samples{Infinity} << QVariant(0.75) << true << Samples{Infinity};
    QTest::newRow("negative density") << Samples{10} << QVariant(-0.75) << true << Samples{-7.5};
    QTest::newRow("density is missing") << Samples{10} << QVariant() << false << Samples{};
    QTest::newRow("density is zero") << Samples{10} << QVariant(0.0) << false << Samples{};
    QTest::newRow("density is nearly zero") << Samples{10} << QVariant(1e-13) << false << Samples{};
    QTest::newRow("density is at the threshold")
        << Samples{10} << QVariant(1e-12) << false << Samples{};
    QTest::newRow("density is just above it") << Samples{10} << QVariant(std::nextafter(1e-12, 1.0))
                                              << true << Samples{10 * std::nextafter(1e-12, 1.0)};
    QTest::newRow("density is minus nearly zero")
        << Samples{10} << QVariant(-1e-12) << false << Samples{};
    QTest::newRow("density is text")
        << Samples{10} << QVariant(QString("0.75")) << true << Samples{7.5};
    QTest::newRow("density is no number")
        << Samples{10} << QVariant(QString("heavy")) << false << Samples{};
}

void tst_IrTelemetryReaderPreprocessing::fuelWeight()
{
    QFETCH(Samples, level);
    QFETCH(QVariant, density);
    QFETCH(bool, derived);
    QFETCH(Samples, weight);

    for (const int car : {Player, Other}) {
        iRTelemetryReader reader;
        addTwoCars(&reader);
        ZEP::Lap &lap = reader.lap(car);
        lap.addChannel(newChannel(level, "l"), "fuellevel");
        if (density.isValid())
            lap.addValue("Kg per fuel litre", density, QString());
        reader.preprocessLap(car);
        QCOMPARE(!lap.channel("fuelweight").isNull(), derived);
        if (derived) {
            COMPARE_BITS(lap.channel("fuelweight")->data, weight);
            QCOMPARE(lap.channel("fuelweight")->unit(), QString("kg"));
        }
        COMPARE_BITS(lap.channel("fuellevel")->data, level);
        QCOMPARE(lap.channel("fuellevel")->unit(), QString("l"));
        QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
        QCOMPARE(lap.containsValue("Kg per fuel litre"), density.isValid());
    }
    // Whether it counts as measured is decided by the number alone.
    if (derived && level.value(0) == NoSample)
        QCOMPARE(weight.first() < 1.0000000138484279e24, density.toDouble() <= 0.1);
}

void tst_IrTelemetryReaderPreprocessing::fuelWeightNeedsAFuelLevel()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addValue("Kg per fuel litre", 0.75, QString());
    lap.addChannel(newChannel({1}), "FuelLevel");
    lap.addCalculatedChannel(newChannel({1}), "fuellevel");
    reader.preprocessLap(Player);
    QCOMPARE(lap.getAvailableChannels(), Names{"FuelLevel"});
}

void tst_IrTelemetryReaderPreprocessing::fuelWeightReplacesWhatIsThere()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addValue("Kg per fuel litre", 0.75, QString());
    lap.addChannel(newChannel({10}), "fuellevel");
    lap.addChannel(newChannel({1, 2, 3}, "lb"), "fuelweight");
    reader.preprocessLap(Player);
    COMPARE_BITS(lap.channel("fuelweight")->data, Samples({7.5}));
    QCOMPARE(lap.channel("fuelweight")->unit(), QString("kg"));
}

void tst_IrTelemetryReaderPreprocessing::densityMayBeCalculated()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addChannel(newChannel({10}), "fuellevel");
    lap.setCalculatedValue("Kg per fuel litre", 0.5, QString());
    reader.preprocessLap(Player);
    COMPARE_BITS(lap.channel("fuelweight")->data, Samples({5}));
    lap.addValue("Kg per fuel litre", 0.75, QString());
    reader.preprocessLap(Player);
    COMPARE_BITS(lap.channel("fuelweight")->data, Samples({7.5}));
}

void tst_IrTelemetryReaderPreprocessing::percentUnits_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("after");

    QTest::newRow("percent") << "%"
                             << "pu";
    QTest::newRow("kilograms") << "kg"
                               << "kg";
    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("blank behind") << "% "
                                  << "% ";
    QTest::newRow("percent of something") << "%/s"
                                          << "%/s";
    QTest::newRow("two percent signs") << "%%"
                                       << "%%";
    QTest::newRow("per unit already") << "pu"
                                      << "pu";
}

void tst_IrTelemetryReaderPreprocessing::percentUnits()
{
    QFETCH(QString, unit);

    for (const int car : {Player, Other}) {
        iRTelemetryReader reader;
        addTwoCars(&reader);
        ZEP::Lap &lap = reader.lap(car);
        for (const char *name : {"throttle", "Brake", "clutch"})
            lap.addChannel(newChannel({50, 100}, unit), name);
        reader.preprocessLap(car);
        for (const char *name : {"throttle", "Brake", "clutch"}) {
            QTEST(lap.channel(name)->unit(), "after");
            COMPARE_BITS(lap.channel(name)->data, Samples({50, 100}));
        }
    }
}

void tst_IrTelemetryReaderPreprocessing::percentUnitsOfCalculatedChannelsStay()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addCalculatedChannel(newChannel({1}, "%"), "throttle");
    lap.addValue("Share", 1, "%");
    lap.setCalculatedValue("Share", 1, "%");
    reader.preprocessLap(Player);
    QCOMPARE(lap.calculatedChannel("throttle")->unit(), QString("%"));
    QCOMPARE(lap.value("Share").unit(), QString("%"));
    QCOMPARE(lap.calculatedValue("Share").unit(), QString("%"));
}

void tst_IrTelemetryReaderPreprocessing::emptyLap()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    for (const int car : {Player, Other}) {
        reader.lap(car).addValue("Track length", 1.0, "km");
        reader.lap(car).addValue("Kg per fuel litre", 0.75, QString());
        reader.preprocessLap(car);
        QVERIFY(reader.lap(car).isEmpty());
        QCOMPARE(reader.lap(car).valueNameList(), (Names{"Kg per fuel litre", "Track length"}));
    }
}

NAPAMMUL_TEST(tst_IrTelemetryReaderPreprocessing)

#include "tst_irtelemetryreader_preprocessing.moc"
