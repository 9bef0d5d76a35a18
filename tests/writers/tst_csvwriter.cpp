#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"
#include "writers/csvwriter.h"
#include "writers/outputfile.h"

#include <QTest>

Q_DECLARE_METATYPE(CsvWriter::Units)

class tst_CsvWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void header_data();
    void header();
    void titlesThatWouldBeTheSame();
    void namesThatSpreadsheetsWouldRun_data();
    void namesThatSpreadsheetsWouldRun();
    void rows();
    void timeOfEachTick();
    void channelsOfOtherLaps();
    void noLaps();

private:
    QByteArray written(CsvWriter::Units units, char separator, bool hasTime = false);

    QTemporaryDir m_dir;
    std::vector<std::unique_ptr<ZEP::Lap>> m_laps;
};

namespace {

using Samples = QVector<double>;

ZEP::Channel *newChannel(const QString &unit, const Samples &samples)
{
    auto *channel = new ZEP::Channel;
    channel->setUnit(unit);
    channel->data = samples;
    return channel;
}

} // namespace

QByteArray tst_CsvWriter::written(CsvWriter::Units units, char separator, bool hasTime)
{
    QVector<const ZEP::Lap *> laps;
    for (const auto &lap : m_laps)
        laps.append(lap.get());
    QString problem;
    const QVector<ChosenChannel> channels = allChannels(laps);
    const QString name = m_dir.filePath(QStringLiteral("laps.csv"));
    OutputFile file(name);
    file.open(true, &problem);
    CsvWriter writer(file, channels, laps, {units, separator, hasTime});
    int number = 0;
    for (auto &lap : m_laps)
        writer.write(++number, std::move(lap));
    m_laps.clear();
    writer.finish(&problem);
    file.commit(&problem);
    QFile input(name);
    return input.open(QIODevice::ReadOnly) && problem.isEmpty() ? input.readAll() : QByteArray();
}

void tst_CsvWriter::header_data()
{
    QTest::addColumn<CsvWriter::Units>("units");
    QTest::addColumn<char>("separator");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("units in a row")
        << CsvWriter::Units::Row << ','
        << QByteArray("lap,tick,\"a,b\",\"c\"\"d\",lap_channel,speed,tick_calculated\n"
                      ",,m,\"m,s\",,m/s,s\n");
    QTest::newRow("units in the header")
        << CsvWriter::Units::Header << ';'
        << QByteArray("lap;tick;a,b [m];\"c\"\"d [m,s]\";lap_channel;speed [m/s];"
                      "tick_calculated [s]\n");
    QTest::newRow("no units") << CsvWriter::Units::None << '\t'
                              << QByteArray("lap\ttick\ta,b\t\"c\"\"d\"\tlap_channel\tspeed\t"
                                            "tick_calculated\n");
}

void tst_CsvWriter::header()
{
    QFETCH(CsvWriter::Units, units);
    QFETCH(char, separator);
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel(QStringLiteral("m"), {}), QStringLiteral("a,b"));
    lap->addChannel(newChannel(QStringLiteral("m,s"), {}), QStringLiteral("c\"d"));
    lap->addChannel(newChannel(QString(), {}), QStringLiteral("lap"));
    lap->addChannel(newChannel(QStringLiteral("m/s"), {}), QStringLiteral("speed"));
    lap->addCalculatedChannel(newChannel(QStringLiteral("s"), {}), QStringLiteral("tick"));
    m_laps.push_back(std::move(lap));
    QTEST(written(units, separator), "text");
}

void tst_CsvWriter::titlesThatWouldBeTheSame()
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel(QStringLiteral("m/s"), {}), QStringLiteral("speed"));
    lap->addChannel(newChannel(QString(), {}), QStringLiteral("speed [m/s]"));
    lap->addCalculatedChannel(newChannel(QStringLiteral("km/h"), {}), QStringLiteral("speed"));
    lap->addCalculatedChannel(newChannel(QString(), {}), QStringLiteral("speed [m/s]"));
    m_laps.push_back(std::move(lap));
    QCOMPARE(written(CsvWriter::Units::Header, ','),
             QByteArray("lap,tick,speed [m/s],speed [m/s]_channel,speed_calculated [km/h],"
                        "speed [m/s]_calculated\n"));
}

void tst_CsvWriter::namesThatSpreadsheetsWouldRun_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("formula") << "=1+1" << QByteArray("'=1+1");
    QTest::newRow("formula that has to be quoted")
        << "=A(1,\"b\")" << QByteArray("\"'=A(1,\"\"b\"\")\"");
    QTest::newRow("plus") << "+1" << QByteArray("'+1");
    QTest::newRow("minus") << "-1" << QByteArray("'-1");
    QTest::newRow("at") << "@A1" << QByteArray("'@A1");
    QTest::newRow("tab") << "\t=1" << QByteArray("'\t=1");
    QTest::newRow("carriage return") << "\r=1" << QByteArray("\"'\r=1\"");
    QTest::newRow("line feed") << "\n=1" << QByteArray("\"'\n=1\"");
    QTest::newRow("an apostrophe of its own") << "'=1" << QByteArray("''=1");
    QTest::newRow("elsewhere") << "a=1+'@-" << QByteArray("a=1+'@-");
}

void tst_CsvWriter::namesThatSpreadsheetsWouldRun()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, written);
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel(name, {}), name);
    m_laps.push_back(std::move(lap));
    QCOMPARE(this->written(CsvWriter::Units::Row, ','),
             QByteArray("lap,tick," + written + "\n,," + written + '\n'));
}

void tst_CsvWriter::rows()
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel({}, {0, 0, -0.0, 0.1, 0.1}), QStringLiteral("a"));
    lap->addChannel(newChannel({}, {ZEP::Channel::NoData, NaN, ZEP::Channel::ValidBelow, 5}),
                    QStringLiteral("b"));
    lap->addChannel(newChannel({}, {1, NaN, 1, 1e22, -1e30}), QStringLiteral("c"));
    m_laps.push_back(std::move(lap));
    QCOMPARE(written(CsvWriter::Units::None, ','),
             QByteArray("lap,tick,a,b,c\n"
                        "1,0,0,,1\n"
                        "1,1,0,,\n"
                        "1,2,-0,,1\n"
                        "1,3,0.1,5,1e+22\n"
                        "1,4,0.1,,-1e+30\n"));
}

void tst_CsvWriter::timeOfEachTick()
{
    const auto addLaps = [&] {
        // The second of four ticks was dropped; the lap begins at its first tick.
        auto lap = std::make_unique<ZEP::Lap>();
        lap->addChannel(newChannel(QStringLiteral("s"), {100, 100.5, 100.75}),
                        QStringLiteral("sessiontime"));
        lap->addChannel(newChannel({}, {7, 8, 9}), QStringLiteral("time"));
        m_laps.push_back(std::move(lap));
        auto without = std::make_unique<ZEP::Lap>();
        without->addChannel(newChannel({}, {5}), QStringLiteral("time"));
        m_laps.push_back(std::move(without));
    };
    addLaps();
    QCOMPARE(written(CsvWriter::Units::Row, ',', true),
             QByteArray("lap,tick,time,sessiontime,time_channel\n"
                        ",,s,s,\n"
                        "1,0,0,100,7\n"
                        "1,1,0.5,100.5,8\n"
                        "1,2,0.75,100.75,9\n"
                        "2,0,,,5\n"));
    addLaps();
    QVERIFY(written(CsvWriter::Units::Header, ',', true)
                .startsWith("lap,tick,time [s],sessiontime [s],time_channel\n"));
}

void tst_CsvWriter::channelsOfOtherLaps()
{
    auto first = std::make_unique<ZEP::Lap>();
    first->addChannel(newChannel(QStringLiteral("x"), {1, 2}), QStringLiteral("a"));
    auto empty = std::make_unique<ZEP::Lap>();
    auto last = std::make_unique<ZEP::Lap>();
    last->addChannel(newChannel(QStringLiteral("y"), {3}), QStringLiteral("b"));
    m_laps.push_back(std::move(first));
    m_laps.push_back(std::move(empty));
    m_laps.push_back(std::move(last));
    QCOMPARE(written(CsvWriter::Units::Row, ','),
             QByteArray("lap,tick,a,b\n"
                        ",,x,y\n"
                        "1,0,1,\n"
                        "1,1,2,\n"
                        "3,0,,3\n"));
}

void tst_CsvWriter::noLaps()
{
    QCOMPARE(written(CsvWriter::Units::Row, ','), QByteArray("lap,tick\n,\n"));
}

NAPAMMUL_TEST(tst_CsvWriter)
#include "tst_csvwriter.moc"
