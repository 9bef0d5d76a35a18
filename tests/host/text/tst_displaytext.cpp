#include "host/files/pluginregistry.h"
#include "host/text/displaytext.h"
#include "tests/support/roomtests.h"
#include "writers/jsonvalues.h"

#include <QColor>
#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(ZEP::Value)

class tst_DisplayText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_data();
    void number();
    void quantity_data();
    void quantity();
    void lapTime_data();
    void lapTime();
    void duration_data();
    void duration();
    void timeDifference_data();
    void timeDifference();
    void value_data();
    void value();
    void missingForJson();
    void wildcards_data();
    void wildcards();
};

void tst_DisplayText::number_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("whole") << 1234567890123.0 << "1234567890123";
    QTest::newRow("whole, but huge") << 1e24 << "1e+24";
    QTest::newRow("fraction") << 36.149512345 << "36.1495";
    QTest::newRow("small") << -0.00001234 << "-1.234e-05";
    QTest::newRow("minus infinity") << -std::numeric_limits<double>::infinity() << "-inf";
}

void tst_DisplayText::number()
{
    QFETCH(double, number);
    QTEST(formatNumber(number), "text");
}

void tst_DisplayText::quantity_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");

    QTest::newRow("with unit") << 61.24 << "m/s" << 1 << "61.2 m/s";
    QTest::newRow("without unit") << 61.26 << "" << 1 << "61.3";
    QTest::newRow("rounds to zero") << -0.004 << "l" << 2 << "0.00 l";
    QTest::newRow("just does not") << -0.006 << "l" << 2 << "-0.01 l";
    QTest::newRow("huge") << 1.5e20 << "m/s" << 1 << "1.5e+20 m/s";
}

void tst_DisplayText::quantity()
{
    QFETCH(double, number);
    QFETCH(QString, unit);
    QFETCH(int, decimals);
    QTEST(formatQuantity(Quantity{number, unit}, decimals), "text");
}

void tst_DisplayText::lapTime_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0 << "0:00.000";
    QTest::newRow("below a minute") << 59999 << "0:59.999";
    QTest::newRow("a lap") << 65123 << "1:05.123";
    QTest::newRow("below an hour") << 3599999 << "59:59.999";
    QTest::newRow("above an hour") << 3723004 << "1:02:03.004";
}

void tst_DisplayText::lapTime()
{
    QFETCH(int, milliseconds);
    QTEST(formatLapTime(milliseconds), "text");
}

void tst_DisplayText::duration_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << qint64(0) << "0:00";
    QTest::newRow("seconds") << qint64(5) << "0:05";
    QTest::newRow("minutes") << qint64(59 * 60 + 59) << "59:59";
    QTest::newRow("an hour") << qint64(3600) << "1:00:00";
    QTest::newRow("days") << qint64(100 * 3600 + 62) << "100:01:02";
}

void tst_DisplayText::duration()
{
    QFETCH(qint64, seconds);
    QTEST(formatDuration(seconds), "text");
}

void tst_DisplayText::timeDifference_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << 0.0 << "0.000";
    QTest::newRow("longer") << 0.3226 << "+0.323";
    QTest::newRow("shorter") << -1.2 << "-1.200";
    QTest::newRow("longer, rounds to zero") << 0.0004 << "0.000";
    QTest::newRow("shorter, rounds to zero") << -0.0004 << "0.000";
    QTest::newRow("a minute") << 61.5 << "+61.500";
}

void tst_DisplayText::timeDifference()
{
    QFETCH(double, seconds);
    QTEST(formatTimeDifference(seconds), "text");
}

void tst_DisplayText::value_data()
{
    QTest::addColumn<ZEP::Value>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QJsonValue>("json");

    const auto row = [](const char *name, const QVariant &variant, const char *unit,
                        const QString &text, const QJsonValue &json) {
        QTest::newRow(name) << ZEP::Value(variant, QLatin1String(unit)) << text << json;
    };
    const QJsonValue null;
    row("not set", QVariant(), "", "-", null);
    row("null text", QString(), "", "-", null);
    row("blank text", " ", "", "-", " ");
    row("text", " Partly Cloudy ", "", "Partly Cloudy", " Partly Cloudy ");
    row("text with unit", "14", "turns", "14 turns", "14");
    row("missing, with a unit", QString(), "km", "-", null);
    row("whole number", 7, "", "7", 7);
    row("double", 3.7, "km", "3.7 km", 3.7);
    row("float", 0.5F, "pu", "0.5 pu", 0.5);
    row("no number", std::numeric_limits<double>::quiet_NaN(), "", "nan", null);
    row("flag", true, "", "true", true);
    row("time", QTime(0, 1, 23, 456), "", "1:23.456", 83.456);
    row("invalid time", QTime(), "", "-", null);
    row("date", QDateTime(QDate(2024, 5, 31), QTime(18, 30)), "", "2024-05-31 18:30:00",
        "2024-05-31T18:30:00.000");
    row("invalid date", QDateTime(), "", "-", null);
    row("colour", QColor(255, 0, 128), "", "#ff0080", "#ff0080");
    row("invalid colour", QColor(), "", "-", null);
}

void tst_DisplayText::value()
{
    QFETCH(ZEP::Value, value);
    QFETCH(QJsonValue, json);
    QTEST(formatValue(value), "text");
    const QJsonObject object = jsonValue(value);
    QCOMPARE(object.value(QStringLiteral("value")), json);
    QCOMPARE(object.value(QStringLiteral("unit")), QJsonValue(value.unit()));
}

void tst_DisplayText::missingForJson()
{
    QVERIFY(jsonText(QString()).isNull());
    QVERIFY(jsonTime(std::nullopt).isNull());
    QVERIFY(jsonDateTime(QDateTime()).isNull());
    QVERIFY(jsonQuantity(std::nullopt).isNull());
    QCOMPARE(formatLapTime(std::nullopt), QStringLiteral("-"));
    QCOMPARE(formatQuantity(std::nullopt, 1), QStringLiteral("-"));
}

void tst_DisplayText::wildcards_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("one") << "Lap sheet (*.laps)" << QStringList{"*.laps"};
    QTest::newRow("several") << "Sheets (*.a *.b;*.c; *.d)"
                             << QStringList{"*.a", "*.b", "*.c", "*.d"};
    QTest::newRow("the last parentheses") << "Sheet (old) (*.old) " << QStringList{"*.old"};
    QTest::newRow("none") << "Sheet" << QStringList();
    QTest::newRow("empty") << "Sheet ()" << QStringList();
}

void tst_DisplayText::wildcards()
{
    QFETCH(QString, format);
    QTEST(formatWildcards(format), "expected");
}

NAPAMMUL_TEST(tst_DisplayText)
#include "tst_displaytext.moc"
