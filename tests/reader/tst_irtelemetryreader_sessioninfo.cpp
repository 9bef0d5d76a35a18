// What a lap takes over from the session info.

#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/sessioninfotext.h"
#include "tests/support/twocars.h"

#include <QColor>
#include <QTest>

#include <algorithm>

using Names = QList<QString>;

namespace {

const Names WeekendNames{"Air temperature",
                         "Category",
                         "Official",
                         "Skies",
                         "Track city",
                         "Track country",
                         "Track length",
                         "Track short name",
                         "Track surface temperature",
                         "Track turns",
                         "Weekend temperature",
                         "YawOffset"};
const Names DriverNames{"Class",
                        "Club",
                        "Division",
                        "Driver abbreviation",
                        "Driver initials",
                        "Licence color",
                        "License",
                        "Team",
                        "iRacing UserID",
                        "iRacing car ID",
                        "iRacing car class ID",
                        "iRacing car path",
                        "iRating"};
const Names FuelNames{"Kg per fuel litre", "Maximum fuel level", "Maximum fuel percent",
                      "Maximum fuel weight", "Preferred fuel unit"};

Names sorted(Names names)
{
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

class tst_IrTelemetryReaderSessionInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void header();
    void texts_data();
    void texts();
    void textsStayAsTheyAre_data();
    void textsStayAsTheyAre();
    void missingTextsAreNull_data();
    void missingTextsAreNull();
    void measurements_data();
    void measurements();
    void measurementText_data();
    void measurementText();
    void licenceColor_data();
    void licenceColor();
    void sections_data();
    void sections();
    void driverIsThatOfTheCar_data();
    void driverIsThatOfTheCar();
    void twiceIsOnce();
    void otherValuesOfTheLapStay();
};

void tst_IrTelemetryReaderSessionInfo::header()
{
    const ZEP::Lap lap = lapOf(wholeText());
    QCOMPARE(lap.getCarId().userType(), int(QMetaType::Int));
    QCOMPARE(lap.getCarId(), QVariant(Player));
    QCOMPARE(lap.getTrackName(), QString("A Track"));
    QCOMPARE(lap.getTrackConfig(), QString("A Layout"));
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
    QCOMPARE(lap.getCarName(), QString("A Car"));
    QCOMPARE(lap.getSessionId(), QUuid("{00000000-0000-0000-0000-000000001234}"));
    QCOMPARE(int(lap.getSession()), 1);
    QCOMPARE(lap.valueNameList(),
             sorted(WeekendNames + DriverNames + FuelNames + Names{"Session name"}));

    // Nothing else is touched.
    QVERIFY(lap.getLapId().isNull());
    QVERIFY(lap.getStintId().isNull());
    QVERIFY(lap.getLapTime().isNull());
    QVERIFY(lap.getDateTime().isNull());
    QVERIFY(lap.getFileName().isEmpty());
    QVERIFY(lap.getSource().isEmpty());
    QVERIFY(lap.getPlugin().isEmpty());
    QVERIFY(!lap.getCompleted());
    QVERIFY(lap.isEmpty());
    QVERIFY(lap.calculatedValuesNames().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::texts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString(name) << QString(text);
    };
    row("Track short name", "Track");
    row("Track city", "A City");
    row("Track country", "A Country");
    row("Track turns", "17");
    row("Skies", "Clear");
    row("Official", "0");
    row("Category", "Road");
    row("Team", "A Team");
    row("Driver abbreviation", "Driver, A");
    row("iRating", "1350");
    row("License", "R 0.01");
    row("Driver initials", "AD");
    row("iRacing UserID", "42");
    row("iRacing car path", "acar");
    row("iRacing car class ID", "43");
    row("iRacing car ID", "44");
    row("Class", "A Class");
    row("Club", "A Club");
    row("Division", "Division 1");
    row("Session name", "Practice");
}

void tst_IrTelemetryReaderSessionInfo::texts()
{
    QFETCH(QString, name);
    QFETCH(QString, text);

    const ZEP::Value value = lapOf(wholeText()).value(name);
    QCOMPARE(value.value.userType(), int(QMetaType::QString));
    QCOMPARE(value.value.toString(), text);
    QVERIFY(value.unit().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::textsStayAsTheyAre_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("quoted") << QByteArray("\"A City\"");
    QTest::newRow("blanks around it") << QByteArray("  A  City ");
    QTest::newRow("carriage return") << QByteArray("A City\r");
    QTest::newRow("Latin-1") << QByteArray("N\xfcrburg");
    QTest::newRow("empty") << QByteArray("");
}

void tst_IrTelemetryReaderSessionInfo::textsStayAsTheyAre()
{
    QFETCH(QByteArray, text);

    const QString expected = QString::fromLatin1(text);
    QCOMPARE(
        lapOf(textWith("TrackCity", "TrackCity: " + text)).value("Track city").value.toString(),
        expected);
    QCOMPARE(lapOf(textWith("TrackDisplayName", "TrackDisplayName: " + text)).getTrackName(),
             expected);
    QCOMPARE(lapOf(textWith("UserName", "UserName: " + text)).getDriverName(), expected);
    QCOMPARE(lapOf(textWith("ClubName", "ClubName: " + text)).value("Club").value.toString(),
             expected);
}

void tst_IrTelemetryReaderSessionInfo::missingTextsAreNull_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *key, const char *name) {
        QTest::newRow(key) << QByteArray(key) << QString(name);
    };
    row("TrackDisplayShortName", "Track short name");
    row("TrackCity", "Track city");
    row("TrackCountry", "Track country");
    row("TrackNumTurns", "Track turns");
    row("TrackSkies", "Skies");
    row("Official", "Official");
    row("Category", "Category");
    row("TeamName", "Team");
    row("AbbrevName", "Driver abbreviation");
    row("IRating", "iRating");
    row("LicString", "License");
    row("Initials", "Driver initials");
    row("UserID", "iRacing UserID");
    row("CarPath", "iRacing car path");
    row("CarClassID", "iRacing car class ID");
    row("CarID", "iRacing car ID");
    row("CarClassShortName", "Class");
    row("ClubName", "Club");
    row("DivisionName", "Division");
}

void tst_IrTelemetryReaderSessionInfo::missingTextsAreNull()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, name);

    const ZEP::Lap whole = lapOf(wholeText());
    const ZEP::Lap lap = lapOf(textWith(key, {}));
    QCOMPARE(lap.valueNameList(), whole.valueNameList());
    for (const QString &other : lap.valueNameList()) {
        if (other != name)
            QCOMPARE(lap.value(other).value, whole.value(other).value);
    }
    QCOMPARE(lap.value(name).value.userType(), int(QMetaType::QString));
    QVERIFY(lap.value(name).value.toString().isNull());
    QVERIFY(lap.value(name).unit().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::measurements_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("unit");

    const auto row = [](const char *name, const char *key, double number, const char *unit) {
        QTest::newRow(name) << QByteArray(key) << QString(name) << number << QString(unit);
    };
    row("Track length", "TrackLength", 3.7, "km");
    row("Track surface temperature", "TrackSurfaceTemp", 31.5, "C");
    row("Air temperature", "TrackAirTemp", 25.25, "C");
    row("Weekend temperature", "WeatherTemp", 26.75, "C");
    row("YawOffset", "TrackNorthOffset", 2.6253, "");
}

void tst_IrTelemetryReaderSessionInfo::measurements()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, name);
    QFETCH(double, number);
    QFETCH(QString, unit);

    const ZEP::Value value = lapOf(wholeText()).value(name);
    QCOMPARE(value.value.userType(), int(QMetaType::Double));
    COMPARE_BITS(value.value.toDouble(), number);
    QCOMPARE(value.unit(), unit);

    const ZEP::Value missing = lapOf(textWith(key, {})).value(name);
    QCOMPARE(missing.value.userType(), int(QMetaType::Double));
    COMPARE_BITS(missing.value.toDouble(), 0.0);
    QVERIFY(missing.unit().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::measurementText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("unit");

    QTest::newRow("number and unit") << QByteArray("3.70 km") << 3.7 << "km";
    QTest::newRow("number only") << QByteArray("3.70") << 3.7 << "";
    QTest::newRow("whole number") << QByteArray("4 km") << 4.0 << "km";
    QTest::newRow("negative number") << QByteArray("-3.5 C") << -3.5 << "C";
    QTest::newRow("exponent") << QByteArray("1e3 m") << 1000.0 << "m";
    QTest::newRow("blanks around and between") << QByteArray("  3.70   km  ") << 3.7 << "km";
    QTest::newRow("tab between") << QByteArray("3.70\tkm") << 3.7 << "km";
    QTest::newRow("carriage return behind") << QByteArray("3.70 km\r") << 3.7 << "km";
    QTest::newRow("more behind the unit") << QByteArray("3.70 km long") << 3.7 << "km";
    QTest::newRow("no blank between") << QByteArray("3.70km") << 0.0 << "";
    QTest::newRow("comma") << QByteArray("3,70 km") << 0.0 << "km";
    QTest::newRow("no number") << QByteArray("long km") << 0.0 << "km";
    QTest::newRow("unit only") << QByteArray("km") << 0.0 << "";
    QTest::newRow("quoted") << QByteArray("\"3.70 km\"") << 0.0 << "km\"";
    QTest::newRow("empty") << QByteArray("") << 0.0 << "";
    QTest::newRow("blanks only") << QByteArray("   ") << 0.0 << "";
}

void tst_IrTelemetryReaderSessionInfo::measurementText()
{
    QFETCH(QByteArray, text);
    QFETCH(double, number);
    QFETCH(QString, unit);

    const ZEP::Value length =
        lapOf(textWith("TrackLength", "TrackLength: " + text)).value("Track length");
    QCOMPARE(length.value.userType(), int(QMetaType::Double));
    COMPARE_BITS(length.value.toDouble(), number);
    QCOMPARE(length.unit(), unit);

    const ZEP::Value yaw =
        lapOf(textWith("TrackNorthOffset", "TrackNorthOffset: " + text)).value("YawOffset");
    COMPARE_BITS(yaw.value.toDouble(), number);
    QVERIFY(yaw.unit().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::licenceColor_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QColor>("color");

    QTest::newRow("six digits") << QByteArray("LicColor: 0xfc0706") << QColor(0xfc, 0x07, 0x06);
    QTest::newRow("black") << QByteArray("LicColor: 0x000000") << QColor(0, 0, 0);
    QTest::newRow("capitals") << QByteArray("LicColor: 0xFC0706") << QColor(0xfc, 0x07, 0x06);
    QTest::newRow("three digits") << QByteArray("LicColor: 0xf08") << QColor(0xff, 0x00, 0x88);
    QTest::newRow("hash") << QByteArray("LicColor: #fc0706") << QColor(0xfc, 0x07, 0x06);
    QTest::newRow("name") << QByteArray("LicColor: red") << QColor(0xff, 0, 0);
    QTest::newRow("prefix in capitals") << QByteArray("LicColor: 0Xfc0706") << QColor();
    QTest::newRow("prefix twice") << QByteArray("LicColor: 0x0xfc0706") << QColor();
    QTest::newRow("five digits") << QByteArray("LicColor: 0xfc070") << QColor();
    QTest::newRow("no digits") << QByteArray("LicColor: 0x") << QColor();
    QTest::newRow("number") << QByteArray("LicColor: 16516870") << QColor();
    QTest::newRow("unknown name") << QByteArray("LicColor: undefined") << QColor();
    QTest::newRow("empty") << QByteArray("LicColor: ") << QColor();
    QTest::newRow("missing") << QByteArray() << QColor();
}

void tst_IrTelemetryReaderSessionInfo::licenceColor()
{
    QFETCH(QByteArray, line);
    QFETCH(QColor, color);

    const ZEP::Lap lap = lapOf(textWith("LicColor", line));
    QVERIFY(lap.containsValue("Licence color"));
    const ZEP::Value value = lap.value("Licence color");
    QCOMPARE(value.value.userType(), int(QMetaType::QColor));
    QCOMPARE(value.value.value<QColor>().isValid(), color.isValid());
    QCOMPARE(value.value.value<QColor>(), color);
    QVERIFY(value.unit().isEmpty());
}

void tst_IrTelemetryReaderSessionInfo::sections_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Names>("names");

    const Names session{"Session name"};
    QTest::newRow("all") << wholeText() << WeekendNames + DriverNames + FuelNames + session;
    QTest::newRow("no weekend") << textWithout("WeekendInfo", "SessionInfo:")
                                << DriverNames + FuelNames + session;
    QTest::newRow("no drivers and fuel")
        << textWithout("DriverInfo", "CarSetup") << WeekendNames + session;
    QTest::newRow("no list of drivers")
        << textWithout(" Drivers", "CarSetup") << WeekendNames + FuelNames + session;
    QTest::newRow("no setup") << textWithout("CarSetup", "...")
                              << WeekendNames + DriverNames + FuelNames.mid(0, 4) + session;
    QTest::newRow("no sessions") << textWithout("SessionInfo:", "DriverInfo")
                                 << WeekendNames + DriverNames + FuelNames + session;
    QTest::newRow("empty weekend") << QByteArray("---\nWeekendInfo:\n") << WeekendNames + session;
    QTest::newRow("weekend without its options")
        << textWithout(" WeekendOptions", "SessionInfo:")
        << WeekendNames + DriverNames + FuelNames + session;
    QTest::newRow("no text") << QByteArray() << session;
    QTest::newRow("fuel without a list of drivers")
        << QByteArray("---\nDriverInfo:\n DriverCarIdx: 3\n")
        << Names{"Maximum fuel level", "Maximum fuel percent"} + session;
}

void tst_IrTelemetryReaderSessionInfo::sections()
{
    QFETCH(QByteArray, text);
    QFETCH(Names, names);

    const ZEP::Lap lap = lapOf(text);
    QCOMPARE(lap.valueNameList(), sorted(names));
    QCOMPARE(lap.getCarId(), QVariant(Player));
    const bool hasWeekend = names.contains("Track city");
    QCOMPARE(lap.getTrackName().isEmpty(), !text.contains("TrackDisplayName"));
    QCOMPARE(lap.getTrackConfig().isEmpty(), !text.contains("TrackConfigName"));
    QCOMPARE(lap.getSessionId().isNull(), !(hasWeekend && text.contains("SessionID")));
    QCOMPARE(lap.getDriverName().isEmpty(), !names.contains("Team"));
    QCOMPARE(lap.getCarName().isEmpty(), !names.contains("Team"));
}

void tst_IrTelemetryReaderSessionInfo::driverIsThatOfTheCar_data()
{
    QTest::addColumn<int>("car");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("carName");

    QTest::newRow("player") << Player << "A Driver"
                            << "A Car";
    QTest::newRow("another driver") << OtherInText << "Another Driver"
                                    << "Another Car";
    QTest::newRow("nobody") << 5 << ""
                            << "";
    QTest::newRow("car beyond the others") << 64 << ""
                                           << "";
    QTest::newRow("no car") << -1 << ""
                            << "";
}

void tst_IrTelemetryReaderSessionInfo::driverIsThatOfTheCar()
{
    QFETCH(int, car);
    QFETCH(QString, driver);
    QFETCH(QString, carName);

    const ZEP::Lap lap = lapOf(wholeText(), car, 1);
    QCOMPARE(lap.getCarId(), QVariant(car));
    QCOMPARE(lap.getDriverName(), driver);
    QCOMPARE(lap.getCarName(), carName);
    for (const QString &name : DriverNames)
        QCOMPARE(lap.containsValue(name), !driver.isEmpty());
    for (const QString &name : WeekendNames)
        QVERIFY(lap.containsValue(name));
    QCOMPARE(int(lap.getSession()), 5);
    QCOMPARE(lap.value("Session name").print(), QString("Race"));
}

void tst_IrTelemetryReaderSessionInfo::twiceIsOnce()
{
    iRTelemetryReader reader;
    reader.setYaml(wholeText().constData());
    reader.updateCarList();
    ZEP::Lap lap;
    reader.getSessionInfo(OtherInText, &lap);
    reader.getSessionInfo(Player, &lap);
    reader.getSessionInfo(Player, &lap);
    const ZEP::Lap once = lapOf(wholeText());
    QCOMPARE(lap.valueNameList(), once.valueNameList());
    for (const QString &name : lap.valueNameList()) {
        QCOMPARE(lap.value(name).value, once.value(name).value);
        QCOMPARE(lap.value(name).unit(), once.value(name).unit());
    }
    QCOMPARE(lap.getDriverName(), once.getDriverName());
    QCOMPARE(lap.getCarId(), once.getCarId());
}

void tst_IrTelemetryReaderSessionInfo::otherValuesOfTheLapStay()
{
    iRTelemetryReader reader;
    reader.setYaml(wholeText().constData());
    reader.updateCarList();
    ZEP::Lap lap;
    lap.addValue("mine", 1, "m");
    lap.addValue("Skies", 2, "m");
    lap.setCalculatedValue("Skies", 3, "m");
    lap.setLapInSession(4);
    reader.getSessionInfo(Player, &lap);
    QCOMPARE(lap.value("mine").print(), QString("1 m"));
    QCOMPARE(lap.value("Skies").print(), QString("Clear"));
    QCOMPARE(lap.calculatedValue("Skies").print(), QString("3 m"));
    QCOMPARE(lap.getLapInSession(), 4);
}

NAPAMMUL_TEST(tst_IrTelemetryReaderSessionInfo)

#include "tst_irtelemetryreader_sessioninfo.moc"
