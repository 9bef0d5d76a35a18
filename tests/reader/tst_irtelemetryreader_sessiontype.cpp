// The kind of session that a car drives in.

#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/twocars.h"

#include <QTest>

namespace {

} // namespace

class tst_IrTelemetryReaderSessionType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessionType_data();
    void sessionType();
    void sessionTypeIsAskedForUntilItIsKnown();
    void sessionTypeIsThatOfTheSession_data();
    void sessionTypeIsThatOfTheSession();
    void sessionTypeIsKnownPerCar();
    void sessionIsNeverRestarted();
};

void tst_IrTelemetryReaderSessionType::sessionType_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("type");

    QTest::newRow("race") << QByteArray("Race") << 5;
    QTest::newRow("offline testing") << QByteArray("Offline testing") << 0;
    QTest::newRow("qualifying") << QByteArray("Qualify") << 2;
    QTest::newRow("practice") << QByteArray("Practice") << 1;
    QTest::newRow("warm-up") << QByteArray("Warmup") << 3;
    QTest::newRow("alone") << QByteArray("Lone Qualify") << -1;
    QTest::newRow("on one's own") << QByteArray("Offline Testing") << -1;
    QTest::newRow("open") << QByteArray("Open Qualify") << -1;
    QTest::newRow("small letters") << QByteArray("race") << -1;
    QTest::newRow("capitals") << QByteArray("RACE") << -1;
    QTest::newRow("more behind it") << QByteArray("Race 2") << -1;
    QTest::newRow("blank behind it") << QByteArray("Race ") << -1;
    QTest::newRow("carriage return behind it") << QByteArray("Race\r") << -1;
    QTest::newRow("quoted") << QByteArray("\"Race\"") << -1;
    QTest::newRow("empty") << QByteArray("") << -1;
}

void tst_IrTelemetryReaderSessionType::sessionType()
{
    QFETCH(QByteArray, text);
    QFETCH(int, type);

    iRTelemetryReader reader;
    addTwoCars(&reader, text);
    tick(&reader, {{Player, OnTrack}, {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QCOMPARE(reader.car(Player).current.sessionType, type);
    QCOMPARE(reader.car(Other).current.sessionType, type);
}

void tst_IrTelemetryReaderSessionType::sessionTypeIsAskedForUntilItIsKnown()
{
    iRTelemetryReader reader;
    addTwoCars(&reader, "Lone Qualify");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, -1);
    addTwoCars(&reader, "Practice");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    addTwoCars(&reader, "Race");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    addTwoCars(&reader, "Lone Qualify");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
}

void tst_IrTelemetryReaderSessionType::sessionTypeIsThatOfTheSession_data()
{
    QTest::addColumn<QVariant>("sessionNum"); // invalid: missing
    QTest::addColumn<int>("type");

    QTest::newRow("first session") << QVariant(0) << 1;
    QTest::newRow("session is missing") << QVariant() << 1;
    QTest::newRow("second session") << QVariant(1) << 2;
    QTest::newRow("third session") << QVariant(2) << 5;
    QTest::newRow("no such session") << QVariant(3) << -1;
    QTest::newRow("negative session") << QVariant(-1) << -1;
    QTest::newRow("session is no number") << QVariant(QString("two")) << 1;
    QTest::newRow("session is text of a number") << QVariant(QString("2")) << 5;
}

void tst_IrTelemetryReaderSessionType::sessionTypeIsThatOfTheSession()
{
    QFETCH(QVariant, sessionNum);
    QFETCH(int, type);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    reader.setYaml(sessionWithResults(1, "Qualify", "").constData());
    reader.setYaml(sessionWithResults(2, "Race", "").constData());
    TickMap values = OnTrack;
    if (sessionNum.isValid())
        values.insert("sessionnum", sessionNum);
    tick(&reader, Player, values);
    QCOMPARE(reader.car(Player).current.sessionType, type);
}

void tst_IrTelemetryReaderSessionType::sessionTypeIsKnownPerCar()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    reader.setYaml(sessionWithResults(1, "Race", "").constData());
    tick(&reader, Player, with(OnTrack, {{"sessionnum", 0}}));
    tick(&reader,
         {{Player, with(OnTrack, {{"sessionnum", 1}})},
          {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    QCOMPARE(reader.car(Other).current.sessionType, 5);
}

void tst_IrTelemetryReaderSessionType::sessionIsNeverRestarted()
{
    iRTelemetryReader reader;
    QVERIFY(!reader.isSessionRestarted());
    addTwoCars(&reader, "Race");
    for (const int session : {2, 1, 0}) {
        tick(&reader, Player,
             with(OnTrack, {{"sessionnum", session}, {"sessiontime", 0.0}, {"lap", 0}}));
        QVERIFY(!reader.isSessionRestarted());
    }
}

NAPAMMUL_TEST(tst_IrTelemetryReaderSessionType)

#include "tst_irtelemetryreader_sessiontype.moc"
