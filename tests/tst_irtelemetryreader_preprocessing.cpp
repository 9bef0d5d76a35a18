// The corrected and derived channels of a finished lap.

#include "tests/readerticks.h"
#include "tests/samebits.h"

#include <QTest>

#include <cmath>
#include <limits>

using Names = QList<QString>;
using Samples = QVector<double>;

namespace {

constexpr int Player = 3;
constexpr int Other = 7;
constexpr double None = 9.999999562023526e24;
constexpr double Infinity = std::numeric_limits<double>::infinity();

void prepare(iRTelemetryReader *reader)
{
    reader->setYaml(sessionInfoOf(Player, {Player, Other}).constData());
    reader->updateCarList();
}

ZEP::Channel *newChannel(const Samples &samples, const QString &unit = QString())
{
    auto *channel = new ZEP::Channel;
    channel->data = samples;
    channel->setUnit(unit);
    return channel;
}

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
    void percentUnitsOfDerivedChannels();
    void percentUnitsOfCalculatedChannelsStay();

    void playersCarHasNoMotionChannels();
    void motion_data();
    void motion();
    void motionUnits_data();
    void motionUnits();
    void motionNeedsPlaceAndTime_data();
    void motionNeedsPlaceAndTime();
    void trackLength_data();
    void trackLength();
    void trackLengthIsLookedUpAsAnyValue_data();
    void trackLengthIsLookedUpAsAnyValue();
    void motionReplacesWhatIsThere();
    void standingClockMakesInfiniteSpeed();
    void withoutAPlayerEveryCarMoves();
    void sourcesStayAsTheyAre();
    void emptyLap();
};

void tst_IrTelemetryReaderPreprocessing::yaw_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<QVariant>("offset");
    QTest::addColumn<Samples>("samples");

    const Samples plain{1.0, 2.0, None, -3.0};
    const Samples shifted{1.5, 2.5, None + 0.5, -2.5};
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
        prepare(&reader);
        ZEP::Lap &lap = reader.lap(car);
        lap.addChannel(newChannel({1.0, 2.0, None, -3.0}, "rad"), channel);
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
    prepare(&reader);
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
    prepare(&reader);
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
    QTest::newRow("missing tick") << Samples{10, None, 20} << QVariant(0.75) << true
                                  << Samples{7.5, 7.499999671517645e24, 15};
    QTest::newRow("missing tick, light fuel")
        << Samples{None} << QVariant(0.1) << true << Samples{None * 0.1};
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
        prepare(&reader);
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
    if (derived && level.value(0) == None)
        QCOMPARE(weight.first() < 1.0000000138484279e24, density.toDouble() <= 0.1);
}

void tst_IrTelemetryReaderPreprocessing::fuelWeightNeedsAFuelLevel()
{
    iRTelemetryReader reader;
    prepare(&reader);
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
    prepare(&reader);
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
    prepare(&reader);
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
        prepare(&reader);
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

/// The unit of the speed is made of that of the time after it was corrected.
void tst_IrTelemetryReaderPreprocessing::percentUnitsOfDerivedChannels()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0, 1}, "%"), "lapdistpct");
    lap.addChannel(newChannel({0, 1}, "%"), "sessiontime");
    reader.preprocessLap(Other);
    QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
    QCOMPARE(lap.channel("speed")->unit(), QString("m/pu"));
}

void tst_IrTelemetryReaderPreprocessing::percentUnitsOfCalculatedChannelsStay()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addCalculatedChannel(newChannel({1}, "%"), "throttle");
    lap.addValue("Share", 1, "%");
    lap.setCalculatedValue("Share", 1, "%");
    reader.preprocessLap(Player);
    QCOMPARE(lap.calculatedChannel("throttle")->unit(), QString("%"));
    QCOMPARE(lap.value("Share").unit(), QString("%"));
    QCOMPARE(lap.calculatedValue("Share").unit(), QString("%"));
}

void tst_IrTelemetryReaderPreprocessing::playersCarHasNoMotionChannels()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel({0, 0.1}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Player);
    QCOMPARE(lap.getAvailableChannels(), (Names{"lapdistpct", "sessiontime"}));
}

void tst_IrTelemetryReaderPreprocessing::motion_data()
{
    QTest::addColumn<Samples>("pct");
    QTest::addColumn<Samples>("time");
    QTest::addColumn<Samples>("dt");
    QTest::addColumn<Samples>("lapdist");
    QTest::addColumn<Samples>("speed");

    // The track is two kilometres long.
    const auto row = [](const char *name, const Samples &pct, const Samples &time,
                        const Samples &dt, const Samples &lapdist, const Samples &speed) {
        QTest::newRow(name) << pct << time << dt << lapdist << speed;
    };
    row("even", {0.0, 0.25, 0.5}, {100, 101, 102}, {1, 1, 1}, {0, 500, 1000}, {500, 500, 500});
    row("uneven", {0.0, 0.25, 1.0}, {100, 101, 105}, {1, 4, 4}, {0, 500, 2000}, {500, 375, 375});
    row("two ticks", {0.25, 0.5}, {100, 102}, {2, 2}, {500, 1000}, {250, 250});
    row("one tick repeats nothing", {0.25}, {100}, {None}, {500}, {None});
    row("no ticks", {}, {}, {}, {}, {});
    row("no ticks of the place", {}, {100, 101}, {}, {}, {});
    row("backwards", {0.5, 0.25}, {100, 101}, {1, 1}, {1000, 500}, {-500, -500});
    row("clock runs backwards", {0.25, 0.5}, {101, 100}, {-1, -1}, {500, 1000}, {-500, -500});
    row("standing", {0.5, 0.5}, {100, 101}, {1, 1}, {1000, 1000}, {0, 0});
    row("time is shorter", {0.0, 0.25, 0.5}, {100, 101}, {1, None - 101, None - 101},
        {0, 500, 1000}, {500, 500 / (None - 101), 500 / (None - 101)});
    row("time is longer", {0.0, 0.25}, {100, 102, 103}, {2, 2}, {0, 500}, {250, 250});
    row("no ticks of the time", {0.25, 0.5}, {}, {0, 0}, {500, 1000}, {Infinity, Infinity});
    row("missing place", {0.25, None, 0.5}, {100, 101, 102}, {1, 1, 1},
        {500, None * 2.0 * 1000.0, 1000},
        {None * 2.0 * 1000.0 - 500, 1000 - None * 2.0 * 1000.0, 1000 - None * 2.0 * 1000.0});
    row("missing time", {0.25, 0.5, 0.75}, {100, None, 102}, {None - 100, 102 - None, 102 - None},
        {500, 1000, 1500}, {500 / (None - 100), 500 / (102 - None), 500 / (102 - None)});
}

void tst_IrTelemetryReaderPreprocessing::motion()
{
    QFETCH(Samples, pct);
    QFETCH(Samples, time);
    QFETCH(Samples, dt);
    QFETCH(Samples, lapdist);
    QFETCH(Samples, speed);

    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel(pct, "%"), "lapdistpct");
    lap.addChannel(newChannel(time, "s"), "sessiontime");
    reader.preprocessLap(Other);
    QCOMPARE(lap.getAvailableChannels(),
             (Names{"dt", "lapdist", "lapdistpct", "sessiontime", "speed"}));
    QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
    COMPARE_BITS(lap.channel("dt")->data, dt);
    COMPARE_BITS(lap.channel("lapdist")->data, lapdist);
    COMPARE_BITS(lap.channel("speed")->data, speed);
}

void tst_IrTelemetryReaderPreprocessing::motionUnits_data()
{
    QTest::addColumn<QString>("timeUnit");
    QTest::addColumn<QString>("speedUnit");

    QTest::newRow("seconds") << "s"
                             << "m/s";
    QTest::newRow("hours") << "h"
                           << "m/h";
    QTest::newRow("none") << ""
                          << "m/";
}

void tst_IrTelemetryReaderPreprocessing::motionUnits()
{
    QFETCH(QString, timeUnit);

    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel({0, 1}, "%"), "lapdistpct");
    lap.addChannel(newChannel({0, 1}, timeUnit), "sessiontime");
    reader.preprocessLap(Other);
    QTEST(lap.channel("speed")->unit(), "speedUnit");
    QCOMPARE(lap.channel("lapdist")->unit(), QString("m"));
    QVERIFY(lap.channel("dt")->unit().isEmpty());
}

void tst_IrTelemetryReaderPreprocessing::motionNeedsPlaceAndTime_data()
{
    QTest::addColumn<QStringList>("channels");

    QTest::newRow("no place") << QStringList{"sessiontime"};
    QTest::newRow("no time") << QStringList{"lapdistpct"};
    QTest::newRow("neither") << QStringList{"rpm"};
    QTest::newRow("place in capitals") << QStringList{"LapDistPct", "sessiontime"};
    QTest::newRow("time in capitals") << QStringList{"SessionTime", "lapdistpct"};
}

void tst_IrTelemetryReaderPreprocessing::motionNeedsPlaceAndTime()
{
    QFETCH(QStringList, channels);

    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addCalculatedChannel(newChannel({0, 1}), "lapdistpct");
    lap.addCalculatedChannel(newChannel({0, 1}), "sessiontime");
    for (const QString &name : qAsConst(channels))
        lap.addChannel(newChannel({0, 1}), name);
    reader.preprocessLap(Other);
    QCOMPARE(lap.getAvailableChannels(), Names(channels));
}

void tst_IrTelemetryReaderPreprocessing::trackLength_data()
{
    QTest::addColumn<QVariant>("length"); // invalid: missing
    QTest::addColumn<Samples>("lapdist");

    QTest::newRow("plain") << QVariant(2.0) << Samples{0, 1000};
    QTest::newRow("missing") << QVariant() << Samples{};
    QTest::newRow("zero") << QVariant(0.0) << Samples{0, 0};
    QTest::newRow("text") << QVariant(QString("2.0")) << Samples{0, 1000};
    QTest::newRow("no number") << QVariant(QString("2.0 km")) << Samples{0, 0};
    QTest::newRow("fraction first, then metres") << QVariant(0.1) << Samples{0, 0.5 * 0.1 * 1000.0};
}

void tst_IrTelemetryReaderPreprocessing::trackLength()
{
    QFETCH(QVariant, length);
    QFETCH(Samples, lapdist);

    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    if (length.isValid())
        lap.addValue("Track length", length, "furlong");
    lap.addChannel(newChannel({0, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({1, 1}));
    QCOMPARE(!lap.channel("lapdist").isNull(), length.isValid());
    QCOMPARE(!lap.channel("speed").isNull(), length.isValid());
    if (length.isValid())
        COMPARE_BITS(lap.channel("lapdist")->data, lapdist);
}

void tst_IrTelemetryReaderPreprocessing::trackLengthIsLookedUpAsAnyValue_data()
{
    QTest::addColumn<bool>("inHeader");
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<double>("length");

    QTest::newRow("in the header") << true << false << 1000.0;
    QTest::newRow("calculated") << false << true << 3000.0;
    QTest::newRow("in both") << true << true << 1000.0;
}

void tst_IrTelemetryReaderPreprocessing::trackLengthIsLookedUpAsAnyValue()
{
    QFETCH(bool, inHeader);
    QFETCH(bool, calculated);
    QFETCH(double, length);

    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    if (inHeader)
        lap.addValue("Track length", 1.0, "km");
    if (calculated)
        lap.setCalculatedValue("Track length", 3.0, "km");
    lap.addChannel(newChannel({0, 1}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({0, length}));
}

void tst_IrTelemetryReaderPreprocessing::motionReplacesWhatIsThere()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addChannel(newChannel({0, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}, "s"), "sessiontime");
    for (const char *name : {"dt", "lapdist", "speed"})
        lap.addChannel(newChannel({7, 8, 9}, "old"), name);
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({1, 1}));
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({7, 8, 9}));
    COMPARE_BITS(lap.channel("speed")->data, Samples({7, 8, 9}));
    lap.addValue("Track length", 1.0, "km");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({0, 500}));
    COMPARE_BITS(lap.channel("speed")->data, Samples({500, 500}));
    QCOMPARE(lap.channel("speed")->unit(), QString("m/s"));
}

void tst_IrTelemetryReaderPreprocessing::standingClockMakesInfiniteSpeed()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0.0, 0.5, 0.25, 0.25, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 100, 100, 100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({0, 0, 0, 1, 1}));
    const Samples speed = lap.channel("speed")->data;
    QCOMPARE(speed.size(), 5);
    COMPARE_BITS(speed.at(0), Infinity);
    COMPARE_BITS(speed.at(1), -Infinity);
    QVERIFY(std::isnan(speed.at(2)));
    COMPARE_BITS(speed.at(3), 250.0);
    COMPARE_BITS(speed.at(4), 250.0);
}

void tst_IrTelemetryReaderPreprocessing::withoutAPlayerEveryCarMoves()
{
    iRTelemetryReader reader;
    for (const int car : {0, Player, 63}) {
        reader.lap(car).addChannel(newChannel({0, 0.5}), "lapdistpct");
        reader.lap(car).addChannel(newChannel({100, 101}), "sessiontime");
        reader.preprocessLap(car);
        QVERIFY(reader.lap(car).channel("dt"));
    }
}

void tst_IrTelemetryReaderPreprocessing::sourcesStayAsTheyAre()
{
    iRTelemetryReader reader;
    prepare(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0, 0.5}, "pu"), "lapdistpct");
    lap.addChannel(newChannel({100, 101}, "s"), "sessiontime");
    lap.addChannel(newChannel({1, 2}, "1/min"), "rpm");
    lap.setDriverName("A Driver");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdistpct")->data, Samples({0, 0.5}));
    COMPARE_BITS(lap.channel("sessiontime")->data, Samples({100, 101}));
    COMPARE_BITS(lap.channel("rpm")->data, Samples({1, 2}));
    QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
    QCOMPARE(lap.channel("sessiontime")->unit(), QString("s"));
    QCOMPARE(lap.channel("rpm")->unit(), QString("1/min"));
    QCOMPARE(lap.valueNameList(), Names{"Track length"});
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
}

void tst_IrTelemetryReaderPreprocessing::emptyLap()
{
    iRTelemetryReader reader;
    prepare(&reader);
    for (const int car : {Player, Other}) {
        reader.lap(car).addValue("Track length", 1.0, "km");
        reader.lap(car).addValue("Kg per fuel litre", 0.75, QString());
        reader.preprocessLap(car);
        QVERIFY(reader.lap(car).isEmpty());
        QCOMPARE(reader.lap(car).valueNameList(), (Names{"Kg per fuel litre", "Track length"}));
    }
}

QTEST_APPLESS_MAIN(tst_IrTelemetryReaderPreprocessing)

#include "tst_irtelemetryreader_preprocessing.moc"
