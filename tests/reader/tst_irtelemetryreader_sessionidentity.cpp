// Which session a lap belongs to, and of what kind that is.

#include "tests/support/roomtests.h"
#include "tests/support/sessioninfotext.h"
#include "tests/support/twocars.h"

#include <QTest>

namespace {

} // namespace

class tst_IrTelemetryReaderSessionIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessionId_data();
    void sessionId();
    void sessionIdOfALap_data();
    void sessionIdOfALap();
    void session_data();
    void session();
    void sessionNumber_data();
    void sessionNumber();
    void sessionIsNeverUnset();
};

void tst_IrTelemetryReaderSessionIdentity::sessionId_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QUuid>("id");

    const QString full = "0123456789abcdef0123456789abcdef";
    QTest::newRow("short") << "1a" << QUuid("{00000000-0000-0000-0000-00000000001a}");
    QTest::newRow("capitals") << "1A" << QUuid("{00000000-0000-0000-0000-00000000001a}");
    QTest::newRow("one digit") << "7" << QUuid("{00000000-0000-0000-0000-000000000007}");
    QTest::newRow("reaches into the next group")
        << "1234567890123" << QUuid("{00000000-0000-0000-0001-234567890123}");
    QTest::newRow("all digits") << full << QUuid("{01234567-89ab-cdef-0123-456789abcdef}");
    QTest::newRow("empty") << "" << QUuid();
    QTest::newRow("null") << QString() << QUuid();
    QTest::newRow("zeros") << "0000" << QUuid();
    QTest::newRow("no digits") << "session" << QUuid();
    QTest::newRow("one letter beyond") << "12g4" << QUuid();
    QTest::newRow("negative") << "-1" << QUuid();
    QTest::newRow("quoted") << "\"12\"" << QUuid();
    QTest::newRow("blank in it") << "1 2" << QUuid();
    QTest::newRow("place marker") << "%1" << QUuid();
}

void tst_IrTelemetryReaderSessionIdentity::sessionId()
{
    QFETCH(QString, text);
    QTEST(iRTelemetryReader::sessionId(text), "id");
}

void tst_IrTelemetryReaderSessionIdentity::sessionIdOfALap_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QByteArray>("subId");
    QTest::addColumn<QUuid>("expected");

    const QByteArray missing;
    QTest::newRow("both") << QByteArray("12") << QByteArray("34")
                          << QUuid("{00000000-0000-0000-0000-000000001234}");
    QTest::newRow("without separator")
        << QByteArray("123") << QByteArray("4") << QUuid("{00000000-0000-0000-0000-000000001234}");
    QTest::newRow("offline") << QByteArray("0") << QByteArray("0") << QUuid();
    QTest::newRow("first is missing")
        << missing << QByteArray("34") << QUuid("{00000000-0000-0000-0000-000000000034}");
    QTest::newRow("second is missing")
        << QByteArray("12") << missing << QUuid("{00000000-0000-0000-0000-000000000012}");
    QTest::newRow("both are missing") << missing << missing << QUuid();
    QTest::newRow("no digits") << QByteArray("none") << QByteArray("34") << QUuid();
}

void tst_IrTelemetryReaderSessionIdentity::sessionIdOfALap()
{
    QFETCH(QByteArray, id);
    QFETCH(QByteArray, subId);

    QByteArray text = "---\nWeekendInfo:\n TrackCity: A City\n";
    if (!id.isNull())
        text += " SessionID: " + id + '\n';
    if (!subId.isNull())
        text += " SubSessionID: " + subId + '\n';
    QTEST(lapOf(text).getSessionId(), "expected");
}

void tst_IrTelemetryReaderSessionIdentity::session_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("session");

    QTest::newRow("race") << QByteArray("Race") << 5;
    QTest::newRow("offline testing") << QByteArray("Offline testing") << 0;
    QTest::newRow("qualifying") << QByteArray("Qualify") << 2;
    QTest::newRow("practice") << QByteArray("Practice") << 1;
    QTest::newRow("warm-up") << QByteArray("Warmup") << 3;
    QTest::newRow("capital T") << QByteArray("Offline Testing") << -1;
    QTest::newRow("alone") << QByteArray("Lone Qualify") << -1;
    QTest::newRow("small letters") << QByteArray("race") << -1;
    QTest::newRow("blank behind") << QByteArray("Race ") << -1;
    QTest::newRow("quoted") << QByteArray("\"Race\"") << -1;
    QTest::newRow("empty") << QByteArray("") << -1;
}

void tst_IrTelemetryReaderSessionIdentity::session()
{
    QFETCH(QByteArray, text);
    QFETCH(int, session);

    const ZEP::Lap lap = lapOf(textWith("SessionType", "SessionType: " + text));
    QCOMPARE(int(lap.getSession()), session);
    QCOMPARE(lap.value("Session name").value, QVariant(QString(text)));
    QVERIFY(lap.value("Session name").unit().isEmpty());
}

void tst_IrTelemetryReaderSessionIdentity::sessionNumber_data()
{
    QTest::addColumn<QByteArray>("player");
    QTest::addColumn<QVariant>("sessionNum"); // invalid: missing
    QTest::addColumn<QString>("name"); // null: none

    QTest::newRow("first") << QByteArray("3") << QVariant(0) << "Practice";
    QTest::newRow("second") << QByteArray("3") << QVariant(1) << "Race";
    QTest::newRow("missing") << QByteArray("3") << QVariant() << "Practice";
    QTest::newRow("no such session") << QByteArray("3") << QVariant(2) << QString();
    QTest::newRow("negative") << QByteArray("3") << QVariant(-1) << QString();
    QTest::newRow("text of a number") << QByteArray("3") << QVariant(QString("1")) << "Race";
    QTest::newRow("no number") << QByteArray("3") << QVariant(QString("one")) << "Practice";
    QTest::newRow("another car's does not count") << QByteArray("7") << QVariant(1) << "Practice";
    QTest::newRow("no player") << QByteArray("-1") << QVariant(1) << "Practice";
    QTest::newRow("player is no car") << QByteArray("64") << QVariant(1) << "Practice";
}

/// The session of a lap is the one that the player's car is in at this moment.
void tst_IrTelemetryReaderSessionIdentity::sessionNumber()
{
    QFETCH(QByteArray, player);
    QFETCH(QVariant, sessionNum);
    QFETCH(QString, name);

    iRTelemetryReader reader;
    reader.setYaml(textWith("DriverCarIdx", "DriverCarIdx: " + player).constData());
    reader.updateCarList();
    if (sessionNum.isValid())
        reader.sample(3).addValue("sessionnum", sessionNum, QString());
    for (const int car : {3, 7}) {
        ZEP::Lap lap;
        reader.getSessionInfo(car, &lap);
        QVERIFY(lap.containsValue("Session name"));
        QCOMPARE(lap.value("Session name").value.userType(), int(QMetaType::QString));
        QCOMPARE(lap.value("Session name").value.toString(), name);
        QCOMPARE(lap.value("Session name").value.toString().isNull(), name.isNull());
        QCOMPARE(int(lap.getSession()), name == "Race" ? 5 : name == "Practice" ? 1 : -1);
    }
}

void tst_IrTelemetryReaderSessionIdentity::sessionIsNeverUnset()
{
    iRTelemetryReader reader;
    reader.setYaml(textWith("SessionType", "SessionType: Lone Qualify").constData());
    reader.updateCarList();
    ZEP::Lap lap;
    lap.setSession(ZEP::SessionQualify);
    reader.getSessionInfo(Player, &lap);
    QCOMPARE(lap.getSession(), ZEP::SessionQualify);
    QCOMPARE(lap.value("Session name").print(), QString("Lone Qualify"));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderSessionIdentity)

#include "tst_irtelemetryreader_sessionidentity.moc"
