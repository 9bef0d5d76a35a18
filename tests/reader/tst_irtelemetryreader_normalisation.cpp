// The repaired beginning of channels that count from zero in every lap.

#include "tests/support/extremes.h"
#include "tests/support/lapchannels.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cmath>

using Names = QList<QString>;
using Samples = QVector<double>;

namespace {

constexpr int Car = 3;

} // namespace

class tst_IrTelemetryReaderNormalisation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginning_data();
    void beginning();
    void zeroFractionMakesNoNumber();
    void needsBothChannels_data();
    void needsBothChannels();
    void onlyTheNamedChannelChanges();
    void fractionItself();
    void calculatedChannelsAreLeftAlone();
    void sharedSamplesChange();
};

void tst_IrTelemetryReaderNormalisation::beginning_data()
{
    QTest::addColumn<Samples>("before");
    QTest::addColumn<Samples>("pct");
    QTest::addColumn<Samples>("after");

    const auto row = [](const char *name, const Samples &before, const Samples &pct,
                        const Samples &after) { QTest::newRow(name) << before << pct << after; };
    const auto unchanged = [&row](const char *name, const Samples &samples, const Samples &pct) {
        row(name, samples, pct, samples);
    };

    unchanged("rises throughout", {0.5, 1.0, 1.5}, {0.25, 0.5, 0.75});
    unchanged("stands", {0.5, 0.5, 0.5}, {0.25, 0.5, 0.75});
    unchanged("rises from below zero", {-2.0, -1.0, 1.0}, {0.25, 0.5, 0.75});
    unchanged("two samples that rise", {0.5, 1.0}, {0.25, 0.5});
    unchanged("one sample", {0.0}, {0.25});
    unchanged("no samples", {}, {});
    unchanged("last sample is zero", {0.0, 0.0}, {0.25, 0.5});
    unchanged("falls to zero at the end", {5.0, 6.0, 0.0}, {0.9, 0.95, 0.0});

    row("carries the lap before, then zero", {5.0, 0.0, 0.5, 1.0}, {0.97, 0.0, 0.02, 0.04},
        {0.97 * 0.5 / 0.02, 0.0 * 0.5 / 0.02, 0.5, 1.0});
    row("carries two ticks of the lap before, then zero", {5.0, 6.0, 0.0, 0.5},
        {0.9, 0.95, 0.0, 0.1}, {0.9 * 0.5 / 0.1, 0.95 * 0.5 / 0.1, 0.0, 0.5});
    row("carries the lap before, no zero", {80.0, 0.5, 1.0}, {0.25, 0.5, 0.75}, {0.25, 0.5, 1.0});
    row("begins with zero", {0.0, 0.5, 1.0}, {0.25, 0.5, 0.75}, {0.25, 0.5, 1.0});
    row("begins with zeros", {0.0, 0.0, 0.0, 2.0}, {0.125, 0.25, 0.375, 0.5}, {0.5, 1.0, 1.5, 2.0});
    row("minus zero", {-0.0, 2.0}, {0.25, 0.5}, {1.0, 2.0});
    row("nearly zero", {1e-12, 2.0}, {0.25, 0.5}, {1.0, 2.0});
    row("minus nearly zero", {-1e-12, 2.0}, {0.25, 0.5}, {1.0, 2.0});
    unchanged("just above nearly zero", {std::nextafter(1e-12, 1.0), 2.0}, {0.25, 0.5});
    unchanged("just below minus nearly zero", {std::nextafter(-1e-12, -1.0), 2.0}, {0.25, 0.5});
    row("two samples that fall", {4.0, 2.0}, {0.25, 0.5}, {1.0, 2.0});

    // A repaired sample is what the one before it is compared with.
    row("repaired sample is compared with", {1.5, 4.0, 2.0}, {0.25, 0.25, 0.5}, {1.0, 1.0, 2.0});
    row("repaired sample stops the repair", {0.5, 4.0, 2.0}, {0.25, 0.25, 0.5}, {0.5, 1.0, 2.0});
    row("falls in the middle of the lap", {1.0, 2.0, 1.5, 3.0}, {0.25, 0.5, 0.75, 1.0},
        {1.0, 1.0, 1.5, 3.0});
    row("first reference from the end stays", {9.0, 1.0, 4.0, 2.0}, {0.125, 0.25, 0.375, 0.5},
        {0.5, 1.0, 1.5, 2.0});
    row("zero in the middle of the lap", {1.0, 0.0, 2.0}, {0.25, 0.5, 1.0}, {1.0, 1.0, 2.0});

    row("negative reference: taken anew at the next one", {8.0, 4.0, -1.0, -2.0, 1.0},
        {0.125, 0.25, 0.5, 0.75, 1.0},
        {0.125 * (0.5 * -2.0 / 0.75) / 0.5, 0.25 * (0.5 * -2.0 / 0.75) / 0.5, 0.5 * -2.0 / 0.75,
         -2.0, 1.0});
    row("negative reference, then a positive one", {0.0, 2.0, -1.0, -2.0}, {0.25, 0.5, 0.75, 1.0},
        {0.25 * (0.5 * (0.75 * -2.0 / 1.0) / 0.75) / 0.5, 0.5 * (0.75 * -2.0 / 1.0) / 0.75,
         0.75 * -2.0 / 1.0, -2.0});
    row("negative reference, taken anew as nearly zero, ends it", {5.0, -0.5, -2.0, 1.0},
        {0.25, 1e-14, 0.5, 1.0}, {5.0, 1e-14 * -2.0 / 0.5, -2.0, 1.0});
    unchanged("reference is nearly zero", {5.0, 6.0, 1e-13}, {0.25, 0.5, 0.75});
    unchanged("reference is minus nearly zero", {5.0, 6.0, -1e-13}, {0.25, 0.5, 0.75});

    row("missing at the end", {5.0, 2.0, NoSample}, {0.25, 0.5, 0.75},
        {0.25 * 2.0 / 0.5, 2.0, NoSample});
    row("missing before the end", {1.0, NoSample, 2.0}, {0.25, 0.5, 1.0}, {1.0, 1.0, 2.0});
    row("missing throughout, then a value", {NoSample, NoSample, 2.0}, {0.25, 0.5, 1.0},
        {0.5, 1.0, 2.0});
    unchanged("missing throughout", {NoSample, NoSample, NoSample}, {0.25, 0.5, 1.0});
    row("infinite", {Infinity, 2.0}, {0.25, 0.5}, {1.0, 2.0});
    unchanged("NaN is never repaired", {NaN, 2.0}, {0.25, 0.5});
    unchanged("nothing falls to NaN", {2.0, NaN}, {0.25, 0.5});
    row("NaN between", {3.0, NaN, 4.0, 2.0}, {0.125, 0.25, 0.375, 0.5}, {3.0, NaN, 1.5, 2.0});

    row("fraction is shorter", {4.0, 3.0, 2.0}, {0.25, 0.5},
        {0.25 * 2.0 / NoSample, 0.5 * 2.0 / NoSample, 2.0});
    row("fraction is longer", {4.0, 2.0}, {0.25, 0.5, 0.75}, {1.0, 2.0});
    row("fraction is missing at the repair", {4.0, 2.0}, {NoSample, 0.5},
        {NoSample * 2.0 / 0.5, 2.0});
    row("fraction falls", {4.0, 2.0}, {0.75, 0.25}, {6.0, 2.0});
}

void tst_IrTelemetryReaderNormalisation::beginning()
{
    QFETCH(Samples, before);
    QFETCH(Samples, pct);
    QFETCH(Samples, after);

    for (const char *name : {"lapcurrentlaptime", "any other name"}) {
        iRTelemetryReader reader;
        ZEP::Lap &lap = reader.lap(Car);
        lap.addChannel(newChannel(before, "s"), name);
        lap.addChannel(newChannel(pct, "%"), "lapdistpct");
        reader.normalizeChannelBeginning(Car, name);
        COMPARE_BITS(lap.channel(name)->data, after);
        QCOMPARE(lap.channel(name)->unit(), QString("s"));
        COMPARE_BITS(lap.channel("lapdistpct")->data, pct);
        QCOMPARE(lap.channel("lapdistpct")->unit(), QString("%"));
    }
}

void tst_IrTelemetryReaderNormalisation::zeroFractionMakesNoNumber()
{
    iRTelemetryReader reader;
    ZEP::Lap &lap = reader.lap(Car);
    // The reference lies at the line itself.
    ZEP::Channel *channel = newChannel({6.0, 7.0, 8.0, 0.0, 0.5});
    lap.addChannel(channel, "lapcurrentlaptime");
    lap.addChannel(newChannel({0.25, 0.5, 0.75, 0.25, 0.0}), "lapdistpct");
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    // A positive fraction over zero is infinite, and nothing falls to that.
    COMPARE_BITS(channel->data, Samples({6.0, 7.0, 8.0, Infinity, 0.5}));

    channel->data = {9.0, 0.5};
    lap.channel("lapdistpct")->data = {0.0, 0.0};
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    QVERIFY(std::isnan(channel->data.at(0)));
    COMPARE_BITS(channel->data.at(1), 0.5);

    channel->data = {9.0, 0.5};
    lap.channel("lapdistpct")->data = {-0.25, 0.0};
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    COMPARE_BITS(channel->data, Samples({-Infinity, 0.5}));
}

void tst_IrTelemetryReaderNormalisation::needsBothChannels_data()
{
    QTest::addColumn<QStringList>("channels");

    QTest::newRow("no such channel") << QStringList{"lapdistpct"};
    QTest::newRow("channel in capitals") << QStringList{"LapCurrentLapTime", "lapdistpct"};
    QTest::newRow("no fraction") << QStringList{"lapcurrentlaptime"};
    QTest::newRow("fraction in capitals") << QStringList{"LapDistPct", "lapcurrentlaptime"};
    QTest::newRow("neither") << QStringList{};
}

void tst_IrTelemetryReaderNormalisation::needsBothChannels()
{
    QFETCH(QStringList, channels);

    iRTelemetryReader reader;
    ZEP::Lap &lap = reader.lap(Car);
    for (const QString &name : qAsConst(channels))
        lap.addChannel(newChannel({5.0, 0.0, 0.5}), name);
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    QCOMPARE(lap.getAvailableChannels(), Names(channels));
    for (const QString &name : qAsConst(channels))
        COMPARE_BITS(lap.channel(name)->data, Samples({5.0, 0.0, 0.5}));
}

void tst_IrTelemetryReaderNormalisation::onlyTheNamedChannelChanges()
{
    iRTelemetryReader reader;
    for (const int car : {Car, Car + 1}) {
        reader.lap(car).addChannel(newChannel({4.0, 2.0}), "one");
        reader.lap(car).addChannel(newChannel({4.0, 2.0}), "other");
        reader.lap(car).addChannel(newChannel({0.25, 0.5}), "lapdistpct");
    }
    reader.normalizeChannelBeginning(Car, "one");
    COMPARE_BITS(reader.lap(Car).channel("one")->data, Samples({1.0, 2.0}));
    COMPARE_BITS(reader.lap(Car).channel("other")->data, Samples({4.0, 2.0}));
    COMPARE_BITS(reader.lap(Car + 1).channel("one")->data, Samples({4.0, 2.0}));
}

/// The fraction in proportion to itself: what needs repair meets the line again.
void tst_IrTelemetryReaderNormalisation::fractionItself()
{
    iRTelemetryReader reader;
    reader.lap(Car).addChannel(newChannel({0.97, 0.0, 0.25, 0.5}), "lapdistpct");
    reader.normalizeChannelBeginning(Car, "lapdistpct");
    COMPARE_BITS(reader.lap(Car).channel("lapdistpct")->data, Samples({0.97, 0.0, 0.25, 0.5}));
}

void tst_IrTelemetryReaderNormalisation::calculatedChannelsAreLeftAlone()
{
    iRTelemetryReader reader;
    ZEP::Lap &lap = reader.lap(Car);
    lap.addCalculatedChannel(newChannel({4.0, 2.0}), "lapcurrentlaptime");
    lap.addChannel(newChannel({0.25, 0.5}), "lapdistpct");
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    COMPARE_BITS(lap.calculatedChannel("lapcurrentlaptime")->data, Samples({4.0, 2.0}));
}

void tst_IrTelemetryReaderNormalisation::sharedSamplesChange()
{
    iRTelemetryReader reader;
    ZEP::Lap &lap = reader.lap(Car);
    lap.addChannel(newChannel({4.0, 2.0}), "lapcurrentlaptime");
    lap.addChannel(newChannel({0.25, 0.5}), "lapdistpct");
    const ZEP::Lap copy(lap);
    reader.normalizeChannelBeginning(Car, "lapcurrentlaptime");
    COMPARE_BITS(copy.channel("lapcurrentlaptime")->data, Samples({1.0, 2.0}));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderNormalisation)

#include "tst_irtelemetryreader_normalisation.moc"
