#include "analysis/channelstatistics.h"
#include "analysis/lapsummary.h"
#include "analysis/sessionsummary.h"
#include "host/files/importedfile.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QTemporaryFile>
#include <QTest>

using ZEP::Channel;

Q_DECLARE_METATYPE(LapKind)

class tst_LapSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kind_data();
    void kind();
    void time_data();
    void time();
    void bestAndGap();
    void partialLaps_data();
    void partialLaps();
    void partialLapsDoNotCount();
    void missingLaps_data();
    void missingLaps();
    void withoutBestLap();
    void topSpeed_data();
    void topSpeed();
    void fuelUsed_data();
    void fuelUsed();
    void representativeLap();
    void statistics_data();
    void statistics();
    void session();
    void sessionNames();
    void dateOfTheFile();
};

namespace {

using Samples = QVector<double>;

void addChannel(ZEP::Lap &lap, const QString &name, const QString &unit, const Samples &samples)
{
    auto *channel = new Channel;
    channel->setUnit(unit);
    channel->data = samples;
    lap.addChannel(channel, name);
}

/// A completed lap of \a samples samples.
std::unique_ptr<ZEP::Lap> newLap(ZEP::LapType type, int time, int samples = 1)
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->setLapType(type);
    lap->setCompleted(true);
    lap->setLapTime(QTime::fromMSecsSinceStartOfDay(time));
    addChannel(*lap, QStringLiteral("gear"), QString(), Samples(samples, 1.0));
    return lap;
}

} // namespace

void tst_LapSummary::kind_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("completed");
    QTest::addColumn<int>("samples");
    QTest::addColumn<LapKind>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("missingTime");

    const char *notValid = "no valid time was recorded";
    const char *unfinished = "still being driven when the recording ended";
    QTest::newRow("out-lap") << 0 << true << 1 << LapKind::OutLap << "out-lap"
                             << "out-laps are not timed";
    QTest::newRow("timed") << 1 << true << 1 << LapKind::Timed << "timed" << notValid;
    QTest::newRow("no type") << -1 << true << 1 << LapKind::Other << "other" << notValid;
    QTest::newRow("type of another source")
        << 3 << true << 1 << LapKind::Other << "other" << notValid;
    QTest::newRow("unfinished out-lap")
        << 0 << false << 1 << LapKind::Unfinished << "unfinished" << unfinished;
    QTest::newRow("neither type nor completed")
        << -1 << false << 1 << LapKind::Unfinished << "unfinished" << unfinished;
    QTest::newRow("empty") << 1 << true << 0 << LapKind::Empty << "empty"
                           << "nothing was recorded of it";
}

void tst_LapSummary::kind()
{
    QFETCH(int, type);
    QFETCH(bool, completed);
    QFETCH(int, samples);
    QFETCH(LapKind, kind);
    const auto lap = newLap(static_cast<ZEP::LapType>(type), 60000, samples);
    lap->setCompleted(completed);
    QCOMPARE(lapKind(*lap), kind);
    QTEST(lapKindName(kind), "name");
    QTEST(missingTimeReason(*lap), "missingTime");
}

void tst_LapSummary::time_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<int>("milliseconds"); // -1: none

    QTest::newRow("not set") << QTime() << -1;
    QTest::newRow("mark of no time") << QTime(0, 59, 59, 0) << -1;
    QTest::newRow("just below the mark") << QTime(0, 59, 58, 999) << 3598999;
    QTest::newRow("just above the mark") << QTime(0, 59, 59, 1) << 3599001;
    QTest::newRow("a lap") << QTime(0, 1, 5, 123) << 65123;
}

void tst_LapSummary::time()
{
    QFETCH(QTime, time);
    ZEP::Lap lap;
    lap.setLapTime(time);
    QTEST(lapTime(lap).value_or(-1), "milliseconds");
}

void tst_LapSummary::bestAndGap()
{
    Laps laps;
    laps.push_back(newLap(ZEP::LapTypeOutLap, 64000));
    laps.push_back(newLap(ZEP::LapTypeTimed, 65500));
    laps.push_back(newLap(ZEP::LapTypeTimed, 65000));
    laps.push_back(newLap(ZEP::LapTypeTimed, 65000));
    laps.push_back(newLap(ZEP::LapTypeTimed, 3599000));
    laps.push_back(newLap(ZEP::LapTypeTimed, 60000));
    laps.back()->setCompleted(false);

    const QVector<LapSummary> summaries = summarize(laps);
    QCOMPARE(summaries.size(), 6);
    QVector<int> gaps;
    QVector<bool> best;
    for (const LapSummary &summary : summaries) {
        gaps.append(summary.gap.value_or(99999));
        best.append(summary.isBest);
    }
    QCOMPARE(gaps, (QVector<int>{-1000, 500, 0, 0, 99999, -5000}));
    QCOMPARE(best, (QVector<bool>{false, false, true, false, false, false}));
}

void tst_LapSummary::partialLaps_data()
{
    QTest::addColumn<Samples>("distances"); // of a track of 100 m
    QTest::addColumn<LapKind>("kind");

    QTest::newRow("from line to line") << Samples{0.1, 50, 99.9} << LapKind::Timed;
    QTest::newRow("from the grid") << Samples{90, 95, 3, 50, 99.9} << LapKind::Timed;
    QTest::newRow("a hundredth after the line") << Samples{0.9, 1, 50, 99.9} << LapKind::Timed;
    QTest::newRow("more than that") << Samples{1.1, 1.2, 50, 99.9} << LapKind::Partial;
    QTest::newRow("up to two hundredths before the line") << Samples{0, 98.1} << LapKind::Timed;
    QTest::newRow("less than that") << Samples{0, 97.8, 97.9} << LapKind::Partial;
    QTest::newRow("few ticks a second") << Samples{5, 11, 50, 89, 95} << LapKind::Timed;
    QTest::newRow("a reset is no long tick") << Samples{0.1, 0.2, 50, 85} << LapKind::Partial;
    QTest::newRow("out of the pits after the line")
        << Samples{5, 5.2, 50, 99.9} << LapKind::Partial;
    QTest::newRow("only to the end of the pits") << Samples{0.1, 0.2, 5} << LapKind::Partial;
    QTest::newRow("missing in the middle") << Samples{0.1, NaN, NaN, 99.9} << LapKind::Timed;
    QTest::newRow("no distances") << Samples{NaN, NaN} << LapKind::Timed;
}

void tst_LapSummary::partialLaps()
{
    QFETCH(Samples, distances);
    QFETCH(LapKind, kind);
    const auto lap = newLap(ZEP::LapTypeTimed, 60000, distances.size());
    addChannel(*lap, QStringLiteral("lapdist"), QStringLiteral("m"), distances);
    QCOMPARE(lapKind(*lap), LapKind::Timed); // of a track without a length
    lap->addValue(QStringLiteral("Track length"), 0.1, QStringLiteral("km"));
    QCOMPARE(lapKind(*lap), kind);

    lap->setLapType(ZEP::LapTypeOutLap);
    QCOMPARE(lapKind(*lap), kind == LapKind::Timed ? LapKind::OutLap : kind);
    lap->setLapTime(QTime::fromMSecsSinceStartOfDay(ZEP::LapHeader::NoLapTime));
    QCOMPARE(lapKind(*lap), LapKind::OutLap);
    lap->setCompleted(false);
    QCOMPARE(lapKind(*lap), LapKind::Unfinished);
}

void tst_LapSummary::partialLapsDoNotCount()
{
    Laps laps;
    for (const int time : {50000, 40000, 51000}) {
        laps.push_back(newLap(ZEP::LapTypeTimed, time, 3));
        addChannel(*laps.back(), QStringLiteral("lapdist"), QStringLiteral("m"),
                   time < 50000 ? Samples{46, 47, 844} : Samples{0.1, 400, 844});
        laps.back()->addValue(QStringLiteral("Track length"), 845, QStringLiteral("m"));
    }
    const QVector<LapSummary> summaries = summarize(laps);
    QCOMPARE(bestLap(laps).value_or(-1), 0);
    QVERIFY(summaries.at(0).isBest && summaries.at(0).isTimed() && !summaries.at(0).part);
    QVERIFY(!summaries.at(1).isBest && !summaries.at(1).isTimed() && !summaries.at(1).gap);
    QCOMPARE(summaries.at(1).time.value_or(-1), 40000);
    QCOMPARE(summaries.at(1).part->begin, 46.0);
    QCOMPARE(summaries.at(1).part->end, 844.0);
    QCOMPARE(summaries.at(1).part->length, 845.0);
    QCOMPARE(summaries.at(2).gap.value_or(-1), 1000);
    QCOMPARE(lapKindName(LapKind::Partial), QStringLiteral("partial"));
}

void tst_LapSummary::missingLaps_data()
{
    QTest::addColumn<Samples>("first");
    QTest::addColumn<Samples>("second");
    QTest::addColumn<int>("missing");

    QTest::newRow("none") << Samples{3, 3} << Samples{4, 4} << 0;
    QTest::newRow("one") << Samples{3, 3} << Samples{5} << 1;
    QTest::newRow("three") << Samples{3} << Samples{NaN, 7} << 3;
    QTest::newRow("the counter is late") << Samples{3, 4} << Samples{4, 5} << 0;
    QTest::newRow("gets into the car before the line") << Samples{3, 3, 3} << Samples{4, 5, 5} << 1;
    QTest::newRow("one lap in two parts") << Samples{5, 5} << Samples{5, 5} << 0;
    QTest::newRow("another session") << Samples{12} << Samples{1} << 0;
    QTest::newRow("not counted") << Samples{NaN} << Samples{4} << 0;
    QTest::newRow("no counter of laps") << Samples{3} << Samples{1e9} << 0;
}

void tst_LapSummary::missingLaps()
{
    QFETCH(Samples, first);
    QFETCH(Samples, second);
    Laps laps;
    for (const Samples &counter : {first, second}) {
        laps.push_back(newLap(ZEP::LapTypeTimed, 60000, counter.size()));
        addChannel(*laps.back(), QStringLiteral("lap"), QString(), counter);
    }
    const QVector<LapSummary> summaries = summarize(laps);
    QCOMPARE(summaries.at(0).missingBefore, 0);
    QTEST(summaries.at(1).missingBefore, "missing");
}

void tst_LapSummary::withoutBestLap()
{
    Laps laps;
    laps.push_back(newLap(ZEP::LapTypeOutLap, 64000));
    const QVector<LapSummary> summaries = summarize(laps);
    QVERIFY(!summaries.first().isBest);
    QVERIFY(!summaries.first().gap);
    QVERIFY(summarize({}).isEmpty());
}

void tst_LapSummary::topSpeed_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<double>("top"); // NaN: none

    QTest::newRow("rises and falls") << Samples{1, 61.5, 2} << 61.5;
    QTest::newRow("missing samples") << Samples{Channel::NoData, 3, NaN, 2} << 3.0;
    QTest::newRow("only backwards") << Samples{-3, -2} << -2.0;
    QTest::newRow("all missing") << Samples{Channel::NoData, NaN} << NaN;
    QTest::newRow("empty") << Samples{} << NaN;
}

void tst_LapSummary::topSpeed()
{
    QFETCH(Samples, samples);
    Laps laps;
    laps.push_back(newLap(ZEP::LapTypeTimed, 60000));
    QVERIFY(!summarize(laps).first().topSpeed);
    addChannel(*laps.front(), QStringLiteral("speed"), QStringLiteral("m/s"), samples);
    const std::optional<Quantity> top = summarize(laps).first().topSpeed;
    QTEST(top ? top->value : NaN, "top");
    if (top)
        QCOMPARE(top->unit, QStringLiteral("m/s"));
}

void tst_LapSummary::fuelUsed_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<double>("used"); // NaN: none
    QTest::addColumn<double>("added"); // NaN: none

    QTest::newRow("falls") << Samples{50, 49, 48.5} << 1.5 << NaN;
    QTest::newRow("missing at both ends") << Samples{NaN, 50, 40, Channel::NoData} << 10.0 << NaN;
    QTest::newRow("refuelled") << Samples{10, 60} << 0.0 << 50.0;
    QTest::newRow("refuelled bit by bit")
        << Samples{10, 8, 8.01, 8.02, NaN, 8.03, 11, 10.99, 9} << 4.0 << 3.0;
    QTest::newRow("refuelled twice") << Samples{10, 8, 9, 7, 9} << 4.0 << 3.0;
    QTest::newRow("a sensor that flutters") << Samples{10, 9.9, 9.91, 9.8, 9.81} << 0.19 << NaN;
    QTest::newRow("minus infinity is no level") << Samples{10, -Infinity, 9} << 1.0 << NaN;
    QTest::newRow("one sample") << Samples{10} << 0.0 << NaN;
    QTest::newRow("all missing") << Samples{NaN, NaN} << NaN << NaN;
    QTest::newRow("empty") << Samples{} << NaN << NaN;
}

void tst_LapSummary::fuelUsed()
{
    QFETCH(Samples, samples);
    Laps laps;
    laps.push_back(newLap(ZEP::LapTypeTimed, 60000));
    QVERIFY(!summarize(laps).first().fuelUsed);
    addChannel(*laps.front(), QStringLiteral("fuellevel"), QStringLiteral("l"), samples);
    const std::optional<Quantity> used = summarize(laps).first().fuelUsed;
    QTEST(used ? used->value : NaN, "used");
    if (used)
        QCOMPARE(used->unit, QStringLiteral("l"));
    const std::optional<Quantity> added = summarize(laps).first().fuelAdded;
    QTEST(added ? added->value : NaN, "added");
    if (added)
        QCOMPARE(added->unit, QStringLiteral("l"));
}

void tst_LapSummary::representativeLap()
{
    Laps laps;
    laps.push_back(newLap(ZEP::LapTypeOutLap, 3599000, 5));
    QCOMPARE(::representativeLap(laps), 0);
    laps.push_back(newLap(ZEP::LapTypeTimed, 3599000, 9));
    laps.push_back(newLap(ZEP::LapTypeOutLap, 50000, 9));
    QCOMPARE(::representativeLap(laps), 1);
    laps.push_back(newLap(ZEP::LapTypeTimed, 60000, 3));
    QCOMPARE(::representativeLap(laps), 3);
}

void tst_LapSummary::statistics_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<Samples>("expected"); // valid, minimum, mean, maximum

    QTest::newRow("empty") << Samples{} << Samples{0, 0, 0, 0};
    QTest::newRow("all missing") << Samples{NaN, Channel::NoData} << Samples{0, 0, 0, 0};
    QTest::newRow("some missing") << Samples{4, NaN, -1, 3, Channel::NoData}
                                  << Samples{3, -1, 2, 4};
    QTest::newRow("one") << Samples{-7} << Samples{1, -7, -7, -7};
    QTest::newRow("constant") << Samples(1000, 0.1) << Samples{1000, 0.1, 0.1, 0.1};
    QTest::newRow("minus infinity is a sample")
        << Samples{-Infinity, 1} << Samples{2, -Infinity, -Infinity, 1};
    QTest::newRow("the largest valid one")
        << Samples{1e24, Channel::ValidBelow} << Samples{1, 1e24, 1e24, 1e24};
}

void tst_LapSummary::statistics()
{
    QFETCH(Samples, samples);
    Channel channel;
    channel.data = samples;
    const ChannelStatistics result = channelStatistics(channel);
    QTEST((Samples{double(result.valid), result.minimum, result.mean, result.maximum}), "expected");
    QVERIFY(result.minimum <= result.mean && result.mean <= result.maximum);
}

void tst_LapSummary::session()
{
    ImportedFile file;
    file.laps.push_back(std::make_unique<ZEP::Lap>());
    file.laps.push_back(newLap(ZEP::LapTypeTimed, 60000));
    file.laps.push_back(std::make_unique<ZEP::Lap>());

    ZEP::Lap &lap = *file.laps[1];
    lap.setTrackName(QStringLiteral("Lakeside"));
    lap.setTrackConfig(QStringLiteral("Short"));
    lap.setCarName(QStringLiteral("Formula Junior"));
    lap.setDriverName(QStringLiteral("A. Driver"));
    lap.setSession(ZEP::SessionRace);
    const QDateTime date(QDate(2024, 5, 31), QTime(18, 30));
    lap.setDateTime(date);

    SessionSummary summary = sessionSummary(file.laps, file.lastModified());
    QCOMPARE(summary.track, QStringLiteral("Lakeside"));
    QCOMPARE(summary.configuration, QStringLiteral("Short"));
    QCOMPARE(summary.car, QStringLiteral("Formula Junior"));
    QCOMPARE(summary.driver, QStringLiteral("A. Driver"));
    QCOMPARE(summary.session, QStringLiteral("race"));
    QCOMPARE(summary.date, date);
    QVERIFY(!summary.isFileDate);

    lap.addValue(QStringLiteral("Session name"), QStringLiteral("Lone Qualify"), QString());
    QCOMPARE(sessionSummary(file.laps, file.lastModified()).session,
             QStringLiteral("Lone Qualify"));
}

void tst_LapSummary::sessionNames()
{
    QCOMPARE(sessionName(ZEP::SessionOfflineTesting), QStringLiteral("offline testing"));
    QCOMPARE(sessionName(ZEP::SessionPractice), QStringLiteral("practice"));
    QCOMPARE(sessionName(ZEP::SessionQualify), QStringLiteral("qualifying"));
    QCOMPARE(sessionName(ZEP::SessionWarmup), QStringLiteral("warm-up"));
    QCOMPARE(sessionName(ZEP::SessionRace), QStringLiteral("race"));
    QCOMPARE(sessionName(ZEP::SessionNotSet), QString());
    QCOMPARE(sessionName(static_cast<ZEP::Session>(4)), QString());
}

void tst_LapSummary::dateOfTheFile()
{
    QTemporaryFile onDisk;
    QVERIFY(onDisk.open());
    const QDateTime date(QDate(2023, 1, 2), QTime(3, 4, 5));
    QVERIFY(onDisk.setFileTime(date, QFileDevice::FileModificationTime));

    ImportedFile file;
    file.fileName = onDisk.fileName();
    file.laps.push_back(newLap(ZEP::LapTypeTimed, 60000));
    const SessionSummary summary = sessionSummary(file.laps, file.lastModified());
    QCOMPARE(summary.date, date);
    QVERIFY(summary.isFileDate);
}

NAPAMMUL_TEST(tst_LapSummary)
#include "tst_lapsummary.moc"
