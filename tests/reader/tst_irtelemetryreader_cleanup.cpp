// The channels that a finished lap does not keep.

#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <algorithm>

using Names = QList<QString>;

namespace {

constexpr int Car = 3;

const QStringList Removed{"IsOnTrack",
                          "IsOnTrackCar",
                          "PlayerCarClassPosition",
                          "PlayerCarDriverIncidentCount",
                          "PlayerCarIdx",
                          "PlayerCarMyIncidentCount",
                          "PlayerCarPosition",
                          "PlayerCarTeamIncidentCount",
                          "PlayerCarWeightPenalty",
                          "sessionnum",
                          "SessionUniqueID",
                          "TireLF_RumblePitch",
                          "TireLR_RumblePitch",
                          "TireRF_RumblePitch",
                          "TireRR_RumblePitch"};

} // namespace

class tst_IrTelemetryReaderCleanup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneChannel_data();
    void oneChannel();
    void allChannels();
    void onlyRecordedChannelsGo();
    void otherChannelsStayAsTheyAre();
    void onlyTheCarsLap();
    void emptyLap();
};

void tst_IrTelemetryReaderCleanup::oneChannel_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("removed");

    for (const QString &name : Removed) {
        QTest::newRow(qPrintable(name)) << name << true;
        if (name != name.toLower())
            QTest::newRow(qPrintable(name.toLower())) << name.toLower() << false;
    }
    QTest::newRow("SessionNum") << "SessionNum" << false;
    QTest::newRow("PlayerCarTowTime") << "PlayerCarTowTime" << false;
    QTest::newRow("TireLF_RumblePitch2") << "TireLF_RumblePitch2" << false;
    QTest::newRow("speed") << "speed" << false;
    QTest::newRow("no name") << "" << false;
}

void tst_IrTelemetryReaderCleanup::oneChannel()
{
    QFETCH(QString, name);
    QFETCH(bool, removed);

    iRTelemetryReader reader;
    reader.lap(Car).addChannel(new ZEP::Channel, name);
    reader.lap(Car).addChannel(new ZEP::Channel, "kept");
    reader.cleanupLap(Car);
    QCOMPARE(reader.lap(Car).channel(name).isNull(), removed);
    QVERIFY(reader.lap(Car).channel("kept"));
}

void tst_IrTelemetryReaderCleanup::allChannels()
{
    iRTelemetryReader reader;
    for (const QString &name : Removed) {
        reader.lap(Car).addChannel(new ZEP::Channel, name);
        reader.lap(Car).addChannel(new ZEP::Channel, name.toUpper());
    }
    Names kept;
    for (const QString &name : Removed)
        kept += name.toUpper();
    std::sort(kept.begin(), kept.end());
    for (int times = 0; times < 2; ++times) {
        reader.cleanupLap(Car);
        QCOMPARE(reader.lap(Car).getAvailableChannels(), kept);
    }
}

void tst_IrTelemetryReaderCleanup::onlyRecordedChannelsGo()
{
    iRTelemetryReader reader;
    ZEP::Lap &lap = reader.lap(Car);
    for (const QString &name : Removed) {
        lap.addCalculatedChannel(new ZEP::Channel, name);
        lap.setCalculatedValue(name, 1, QString());
        lap.addValue(name, 2, QString());
    }
    reader.cleanupLap(Car);
    QCOMPARE(lap.getAvailableCalculatedChannels().size(), Removed.size());
    QCOMPARE(lap.calculatedValuesNames().size(), Removed.size());
    QCOMPARE(lap.valueNameList().size(), Removed.size());
}

void tst_IrTelemetryReaderCleanup::otherChannelsStayAsTheyAre()
{
    iRTelemetryReader reader;
    auto *channel = new ZEP::Channel;
    channel->data = {1, 2, 3};
    channel->setUnit("m");
    reader.lap(Car).addChannel(channel, "isontrack");
    reader.cleanupLap(Car);
    QCOMPARE(reader.lap(Car).channel("isontrack").data(), channel);
    QCOMPARE(channel->data, QVector<double>({1, 2, 3}));
    QCOMPARE(channel->unit(), QString("m"));
}

void tst_IrTelemetryReaderCleanup::onlyTheCarsLap()
{
    iRTelemetryReader reader;
    reader.lap(Car).addChannel(new ZEP::Channel, "sessionnum");
    reader.lap(Car + 1).addChannel(new ZEP::Channel, "sessionnum");
    carOf(&reader, Car).nextLap.addChannel(new ZEP::Channel, "sessionnum");
    reader.cleanupLap(Car);
    QVERIFY(reader.lap(Car).isEmpty());
    QCOMPARE(reader.lap(Car + 1).getAvailableChannels(), Names{"sessionnum"});
    QVERIFY(!reader.car(Car).nextLap.isEmpty());
}

void tst_IrTelemetryReaderCleanup::emptyLap()
{
    iRTelemetryReader reader;
    reader.lap(Car).setDriverName("A Driver");
    reader.cleanupLap(Car);
    QVERIFY(reader.lap(Car).isEmpty());
    QCOMPARE(reader.lap(Car).getDriverName(), QString("A Driver"));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderCleanup)

#include "tst_irtelemetryreader_cleanup.moc"
