#include "host/files/nearestnames.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_NearestNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nearest_data();
    void nearest();
    void question_data();
    void question();
};

void tst_NearestNames::nearest_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("nearest");

    QTest::newRow("letter missing") << "sped" << QStringList{"speed"};
    QTest::newRow("letter too many") << "speeed" << QStringList{"speed"};
    QTest::newRow("wrong letter") << "gesr" << QStringList{"gear"};
    QTest::newRow("swapped letters") << "baRke" << QStringList{"Brake"};
    QTest::newRow("in capitals") << "GEARS" << QStringList{"gear"};
    QTest::newRow("part of names, the nearest first")
        << "temp" << QStringList{"lftempl", "oiltemp", "watertemp"};
    QTest::newRow("the name itself before others") << "speed" << QStringList{"speed", "lfspeed"};
    QTest::newRow("nothing near") << "yawrate" << QStringList{};
    QTest::newRow("nothing typed") << "" << QStringList{};
    QTest::newRow("a letter is no part") << "e" << QStringList{};
}

void tst_NearestNames::nearest()
{
    QFETCH(QString, text);
    const QStringList names{"Brake",   "gear",  "lfspeed",   "lftempl",
                            "oiltemp", "speed", "watertemp", "watertempmax"};
    QTEST(nearestNames(text, names), "nearest");
}

void tst_NearestNames::question_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("question");

    QTest::newRow("none") << QStringList{"lat"} << "";
    QTest::newRow("one") << QStringList{"gear", "lat"} << "; did you mean gear?";
    QTest::newRow("two") << QStringList{"gear", "gears"} << "; did you mean gear or gears?";
    QTest::newRow("three") << QStringList{"gear", "gears", "tgear"}
                           << "; did you mean gear, gears or tgear?";
    QTest::newRow("four") << QStringList{"agear", "bgear", "cgear", "dgear"}
                          << "; did you mean agear, bgear or cgear?";
}

void tst_NearestNames::question()
{
    QFETCH(QStringList, names);
    QTEST(didYouMean(QStringLiteral("gear"), names), "question");
}

NAPAMMUL_TEST(tst_NearestNames)
#include "tst_nearestnames.moc"
