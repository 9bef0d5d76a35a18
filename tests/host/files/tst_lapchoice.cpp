#include "host/files/lapchoice.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_LapChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chosen_data();
    void chosen();
    void senseless_data();
    void senseless();
    void representative();
    void withoutTimedLap();
};

namespace {

using Indices = QVector<int>;

void addLap(Laps &laps, ZEP::LapType type, int time, int samples)
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->setLapType(type);
    lap->setCompleted(true);
    lap->setLapTime(QTime::fromMSecsSinceStartOfDay(time));
    auto *channel = new ZEP::Channel;
    channel->data.resize(samples);
    lap->addChannel(channel, QStringLiteral("gear"));
    laps.push_back(std::move(lap));
}

/// An out-lap, the longest, and four timed ones, the third of them the best.
Laps fiveLaps()
{
    Laps laps;
    addLap(laps, ZEP::LapTypeOutLap, 70000, 9);
    for (const int time : {62000, 61000, 60000, 63000})
        addLap(laps, ZEP::LapTypeTimed, time, 5);
    return laps;
}

} // namespace

void tst_LapChoice::chosen_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Indices>("indices");
    QTest::addColumn<QString>("problem");

    const QString none;
    QTest::newRow("number") << "2" << Indices{1} << none;
    QTest::newRow("list in its own order") << "5,1" << Indices{4, 0} << none;
    QTest::newRow("range") << "2-4" << Indices{1, 2, 3} << none;
    QTest::newRow("range of one") << "5-5" << Indices{4} << none;
    QTest::newRow("list with a range") << "1,3-5" << Indices{0, 2, 3, 4} << none;
    QTest::newRow("each once") << "3,2-4,3" << Indices{2, 1, 3} << none;
    QTest::newRow("leading zeros") << "002" << Indices{1} << none;
    QTest::newRow("all") << "all" << Indices{0, 1, 2, 3, 4} << none;
    QTest::newRow("best") << "best" << Indices{3} << none;
    QTest::newRow("capitals") << "Best" << Indices{3} << none;
    QTest::newRow("best and another") << "best,2" << Indices{3, 1} << none;
    QTest::newRow("from one on") << "3-" << Indices{2, 3, 4} << none;
    QTest::newRow("only the last one") << "5-" << Indices{4} << none;
    QTest::newRow("last") << "LAST,1" << Indices{4, 0} << none;
    QTest::newRow("best, then all others") << "best,all" << Indices{3, 0, 1, 2, 4} << none;
    QTest::newRow("from beyond the last")
        << "7-" << Indices{} << "there is no lap #7; choose from 1 to 5";
    QTest::newRow("beyond the last")
        << "6" << Indices{} << "there is no lap #6; choose from 1 to 5";
    QTest::newRow("range beyond the last")
        << "1,4-9" << Indices{} << "there is no lap #6; choose from 1 to 5";
    QTest::newRow("range far beyond the last")
        << "8-2000000000" << Indices{} << "there is no lap #8; choose from 1 to 5";
}

void tst_LapChoice::chosen()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);
    QString found;
    const std::optional<LapChoice> choice = LapChoice::parse(text, &found);
    QVERIFY2(choice, qPrintable(found));
    const Laps laps = fiveLaps();
    QTEST(choice->indices(laps, &found), "indices");
    QCOMPARE(found, problem);

    const std::optional<LapChoice> again = LapChoice::parse(choice->text(), &found);
    QVERIFY2(again, qPrintable(found));
    QTEST(again->indices(laps, &found), "indices");
}

void tst_LapChoice::senseless_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"", "0", "0-2", "-1", "5-3", "3x", "-3", "1,,2", "1,", "1 2", "1-2-3", "3--", "best,",
          "first", "best-3", "1-best", "99999999999", "1.5", "best\n"})
        QTest::newRow(text) << text;
}

void tst_LapChoice::senseless()
{
    QFETCH(QString, text);
    QString problem;
    QVERIFY(!LapChoice::parse(text, &problem));
    QCOMPARE(
        problem,
        QStringLiteral("'%1' is not a choice of laps; use best, last, all, or numbers such as 3, "
                       "3,5-7 or 3-")
            .arg(text));
}

void tst_LapChoice::representative()
{
    QString problem;
    Laps laps = fiveLaps();
    QCOMPARE(LapChoice::representative().indices(laps, &problem), Indices{3});
    laps.resize(1);
    QCOMPARE(LapChoice::representative().indices(laps, &problem), Indices{0});
    QCOMPARE(problem, QString());
}

void tst_LapChoice::withoutTimedLap()
{
    Laps laps = fiveLaps();
    laps.resize(1);
    QString problem;
    QCOMPARE(LapChoice::best().indices(laps, &problem), Indices{});
    QCOMPARE(problem, QStringLiteral("there is no timed lap; the only lap is #1"));
}

NAPAMMUL_TEST(tst_LapChoice)
#include "tst_lapchoice.moc"
