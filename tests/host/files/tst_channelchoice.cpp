#include "host/files/channelchoice.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_ChannelChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chosen_data();
    void chosen();
    void problem_data();
    void problem();
    void channelsOfALap();
};

namespace {

const QStringList firstLap{"brake", "gear", "lap", "lat", "lftempl", "oiltemp", "speed", "lfspeed"};
const QStringList firstCalculated{"delta", "lap"};

void add(ZEP::Lap &lap, const QStringList &recorded, const QStringList &calculated)
{
    for (const QString &name : recorded)
        lap.addChannel(new ZEP::Channel, name);
    for (const QString &name : calculated)
        lap.addCalculatedChannel(new ZEP::Channel, name);
}

/// What \a choices find in two laps, "=" in front of a calculated channel.
QStringList find(const QStringList &choices, QString *problem)
{
    ZEP::Lap first;
    add(first, firstLap, firstCalculated);
    ZEP::Lap second;
    add(second, {"speed", "Driver", "rpm"}, {});
    QStringList found;
    for (const ChosenChannel &channel : ChannelChoice(choices).channels({&first, &second}, problem))
        found.append((channel.isCalculated ? QStringLiteral("=") : QString()) + channel.name);
    return found;
}

} // namespace

void tst_ChannelChoice::chosen_data()
{
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QStringList>("found");

    QTest::newRow("everything that any lap has")
        << QStringList{} << QStringList{"Driver",  "brake",   "gear", "lap",   "lat",    "lfspeed",
                                        "lftempl", "oiltemp", "rpm",  "speed", "=delta", "=lap"};
    QTest::newRow("names in their own order")
        << QStringList{"speed", "brake"} << QStringList{"speed", "brake"};
    QTest::newRow("in capitals") << QStringList{"SPEED"} << QStringList{"speed"};
    QTest::newRow("of the second lap only") << QStringList{"rpm"} << QStringList{"rpm"};
    QTest::newRow("calculated") << QStringList{"delta"} << QStringList{"=delta"};
    QTest::newRow("recorded and calculated") << QStringList{"lap"} << QStringList{"lap", "=lap"};
    QTest::newRow("wildcard") << QStringList{"*SPEED"} << QStringList{"lfspeed", "speed"};
    QTest::newRow("one letter") << QStringList{"la?"} << QStringList{"lap", "lat", "=lap"};
    QTest::newRow("set of letters") << QStringList{"la[tx]"} << QStringList{"lat"};
    QTest::newRow("each once") << QStringList{"speed", "*", "speed"}
                               << QStringList{"speed",   "Driver", "brake",   "gear",
                                              "lap",     "lat",    "lfspeed", "lftempl",
                                              "oiltemp", "rpm",    "=delta",  "=lap"};
    QTest::newRow("preset") << QStringList{"engine"} << QStringList{"rpm", "gear", "oiltemp"};
    QTest::newRow("preset in capitals")
        << QStringList{"Tyres"} << QStringList{"lftempl", "lfspeed"};
    QTest::newRow("channel called like a preset") << QStringList{"driver"} << QStringList{"Driver"};
    QTest::newRow("preset and more")
        << QStringList{"position", "l*"} << QStringList{"lat", "lap", "lfspeed", "lftempl", "=lap"};
}

void tst_ChannelChoice::chosen()
{
    QFETCH(QStringList, choices);
    QString problem;
    QTEST(find(choices, &problem), "found");
    QCOMPARE(problem, QString());
}

void tst_ChannelChoice::problem_data()
{
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<QString>("problem");

    QTest::newRow("mistyped") << QStringList{"sped"}
                              << "there is no channel 'sped'; did you mean speed?";
    QTest::newRow("one of two") << QStringList{"gear", "oil"}
                                << "there is no channel 'oil'; did you mean oiltemp?";
    QTest::newRow("preset mistyped")
        << QStringList{"engin"} << "there is no channel 'engin'; did you mean engine?";
    QTest::newRow("wildcard without any")
        << QStringList{"gaer*"} << "there is no channel 'gaer*'; did you mean gear?";
    QTest::newRow("letters from last to first")
        << QStringList{"[z-a]"} << "there is no channel '[z-a]'";
    QTest::newRow("nothing like it") << QStringList{"zzz"} << "there is no channel 'zzz'";
    QTest::newRow("nothing") << QStringList{""} << "there is no channel ''";
}

void tst_ChannelChoice::problem()
{
    QFETCH(QStringList, choices);
    QString problem;
    QCOMPARE(find(choices, &problem), QStringList());
    QTEST(problem, "problem");
}

void tst_ChannelChoice::channelsOfALap()
{
    ZEP::Lap lap;
    add(lap, {"speed", "lap"}, {"lap"});
    QCOMPARE((ChosenChannel{"speed", false}.in(lap)), lap.channel("speed"));
    QVERIFY(!(ChosenChannel{"speed", true}.in(lap)));
    QCOMPARE((ChosenChannel{"lap", true}.in(lap)), lap.calculatedChannel("lap"));
    QVERIFY((ChosenChannel{"lap", false}.in(lap)) != lap.calculatedChannel("lap"));
}

NAPAMMUL_TEST(tst_ChannelChoice)
#include "tst_channelchoice.moc"
