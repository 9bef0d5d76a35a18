#include "host/report/reportdata.h"
#include "tests/support/demofile.h"
#include "tests/support/importfixture.h"
#include "tests/support/roomtests.h"

#include <QtTest>

#include <cmath>
#include <numeric>

Q_DECLARE_METATYPE(DemoOptions)

/// The data of the page, of recordings that contain what those of the simulator do.
class tst_ReportData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void positions_data();
    void positions();
    void positionsFarApartInOneFile();
    void lapsIntoThePits_data();
    void lapsIntoThePits();
    void fileGivenTwice();
    void lapsOfSeveralFilesAreCompared();
    void gapsAreToALapOfThePage();
    void tyres_data();
    void tyres();

private:
    ChosenLaps imported(const DemoOptions &options, const QVector<int> &indices = {});

    ImportFixture m_import;
    QTemporaryDir m_dir;
    int m_files = 0;
};

namespace {

constexpr double MetresPerDegree = 111195;

DemoOptions demo(quint32 seed = 1)
{
    DemoOptions options;
    options.seed = seed;
    options.rate = 20;
    return options;
}

/// The samples of the page's column called \a name, lap by lap; NaN where one is missing.
QVector<QVector<double>> unpacked(const QJsonObject &data, const QString &name)
{
    QByteArray zlib =
        QByteArray::fromBase64(data.value(QLatin1String("samples")).toString().toLatin1());
    const QByteArray bytes = qUncompress(QByteArray(4, '\0') + zlib);
    int place = 0;
    const auto number = [&] {
        quint64 result = 0;
        for (int shift = 0;; shift += 7) {
            const auto byte = static_cast<unsigned char>(bytes.at(place++));
            result |= quint64(byte & 0x7f) << shift;
            if (byte < 0x80)
                return result;
        }
    };
    QVector<QVector<double>> laps;
    for (const QString &group : {QStringLiteral("places"), QStringLiteral("channels")}) {
        for (const QJsonValue &column : data.value(group).toArray()) {
            laps.clear();
            for (const QJsonValue &lap : data.value(QLatin1String("laps")).toArray()) {
                const QJsonValue packing =
                    column[QLatin1String("packings")][lap[QLatin1String("session")].toInt()];
                QVector<double> samples;
                qint64 steps = 0;
                for (int i = 0; i < lap[QLatin1String("samples")].toInt(); ++i) {
                    const quint64 change = number();
                    steps += change % 2 == 1 ? qint64(change - 1) / 2 : -qint64(change) / 2;
                    samples.append(change == 0 ? qQNaN()
                                               : packing[QLatin1String("base")].toDouble()
                                           + packing[QLatin1String("step")].toDouble()
                                               * double(steps));
                }
                laps.append(samples);
            }
            if (column[QLatin1String("name")] == name)
                return laps;
        }
    }
    return {};
}

} // namespace

ChosenLaps tst_ReportData::imported(const DemoOptions &options, const QVector<int> &indices)
{
    ChosenLaps chosen;
    chosen.file.fileName = m_dir.filePath(QStringLiteral("%1.ibt").arg(++m_files));
    QFile file(chosen.file.fileName);
    const QByteArray bytes = DemoFile(options).bytes;
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(chosen.file.fileName));
    file.close();
    chosen.file.laps = m_import.importFile(chosen.file.fileName).laps;
    chosen.indices = indices;
    if (indices.isEmpty()) {
        chosen.indices.resize(int(chosen.file.laps.size()));
        std::iota(chosen.indices.begin(), chosen.indices.end(), 0);
    }
    return chosen;
}

void tst_ReportData::positions_data()
{
    QTest::addColumn<bool>("resets");
    QTest::addColumn<bool>("abroad");

    QTest::newRow("one track") << false << false;
    QTest::newRow("a reset on the last lap") << true << false;
    QTest::newRow("two tracks far apart") << false << true;
    QTest::newRow("both") << true << true;
}

void tst_ReportData::positions()
{
    QFETCH(bool, resets);
    QFETCH(bool, abroad);
    QVector<DemoOptions> files{demo()};
    files.first().resets = resets;
    if (abroad) {
        files.append(files.first());
        files.last().abroad = true;
    }
    ReportData report;
    std::vector<ChosenLaps> chosen;
    for (const DemoOptions &options : qAsConst(files)) {
        chosen.push_back(imported(options));
        report.add(chosen.back(), {});
    }
    const QJsonObject data = report.json();
    int nowhere = 0;
    for (const char *name : {"lat", "lon"}) {
        const QVector<QVector<double>> shown = unpacked(data, QLatin1String(name));
        int next = 0;
        for (const ChosenLaps &file : chosen) {
            for (const auto &lap : file.file.laps) {
                const QVector<double> recorded = lap->channel(QLatin1String(name))->data;
                const QVector<double> page = shown.at(next++);
                QCOMPARE(page.size(), recorded.size());
                for (int i = 0; i < page.size(); ++i) {
                    QCOMPARE(std::isnan(page.at(i)), recorded.at(i) == 0);
                    nowhere += std::isnan(page.at(i));
                    if (!std::isnan(page.at(i)))
                        QVERIFY(std::abs(page.at(i) - recorded.at(i)) * MetresPerDegree < 0.05);
                }
            }
        }
    }
    QCOMPARE(nowhere, resets ? 4 * files.size() : 0); // getting in, and the reset
}

void tst_ReportData::positionsFarApartInOneFile()
{
    ChosenLaps chosen = imported(demo(), {0});
    auto latitude = chosen.lap(0).channel(QStringLiteral("lat"));
    latitude->data.first() = -60;
    ReportData report;
    report.add(chosen, {});
    const QVector<double> page = unpacked(report.json(), QStringLiteral("lat")).first();
    for (int i = 0; i < page.size(); ++i)
        QVERIFY(std::abs(page.at(i) - latitude->data.at(i)) * MetresPerDegree < 0.05);
}

void tst_ReportData::lapsIntoThePits_data()
{
    QTest::addColumn<SessionKind>("session");
    QTest::addColumn<bool>("resets");

    QTest::newRow("practice") << SessionKind::Practice << false;
    QTest::newRow("practice with a record of getting in") << SessionKind::Practice << true;
    QTest::newRow("race") << SessionKind::Race << false;
    QTest::newRow("race with a record of getting in") << SessionKind::Race << true;
}

void tst_ReportData::lapsIntoThePits()
{
    QFETCH(SessionKind, session);
    DemoOptions options = demo();
    options.session = session;
    QFETCH(bool, resets);
    options.resets = resets;
    const ChosenLaps chosen = imported(options);
    int stint = 1;
    const QVector<LapSummary> summaries = summarize(chosen.file.laps);
    for (int i = 0; i < summaries.size(); ++i) {
        const int next = chosen.lap(i).getStintInSession();
        QCOMPARE(summaries.at(i).missingBefore, next - stint);
        stint = next;
    }
    QCOMPARE(stint, 2);
}

void tst_ReportData::fileGivenTwice()
{
    ChosenLaps first = imported(demo(), {2, 0});
    ChosenLaps again = imported(demo());
    const QString link = m_dir.filePath(QStringLiteral("link.ibt"));
    QVERIFY(QFile::link(first.file.fileName, link));
    again.file.fileName = link;
    again.indices = {1, 2};
    ReportData report;
    report.add(first, {});
    report.add(imported(demo(2), {0}), {});
    report.add(again, {});
    const QJsonObject data = report.json();
    QCOMPARE(data.value(QStringLiteral("sessions")).toArray().size(), 2);
    QVector<QPair<int, int>> laps;
    for (const QJsonValue &lap : data.value(QStringLiteral("laps")).toArray())
        laps.append({lap[QLatin1String("session")].toInt(), lap[QLatin1String("number")].toInt()});
    QCOMPARE(laps, (QVector<QPair<int, int>>{{0, 1}, {0, 2}, {0, 3}, {1, 1}}));

    const QVector<QVector<double>> speeds = unpacked(data, QStringLiteral("speed"));
    for (int i = 0; i < 3; ++i) {
        const QVector<double> recorded =
            first.file.laps[std::size_t(i)]->channel(QStringLiteral("speed"))->data;
        QCOMPARE(speeds.at(i).size(), recorded.size());
        for (int tick = 0; tick < recorded.size(); ++tick)
            QVERIFY(std::abs(speeds.at(i).at(tick) - recorded.at(tick)) < 0.001);
    }
}

void tst_ReportData::lapsOfSeveralFilesAreCompared()
{
    ReportData report;
    double best = 1e9;
    for (quint32 seed = 1; seed <= 4; ++seed) {
        DemoOptions options = demo(seed);
        options.abroad = seed == 4;
        const ChosenLaps chosen = imported(options);
        if (seed < 4) {
            for (const LapSummary &lap : summarize(chosen.file.laps))
                best = lap.isTimed() ? std::min(best, *lap.time / 1000.0) : best;
        }
        report.add(chosen, {});
    }
    int marked = 0;
    int ofFiles = 0;
    for (const QJsonValue &lap : report.json().value(QStringLiteral("laps")).toArray()) {
        const bool isBest = lap[QLatin1String("best")].toBool();
        marked += isBest;
        ofFiles += lap[QLatin1String("bestOfFile")].toBool();
        if (lap[QLatin1String("session")].toInt() == 3 || !lap[QLatin1String("time")].isDouble())
            continue;
        const double time = lap[QLatin1String("time")].toDouble();
        QCOMPARE(isBest, time == best);
        QVERIFY(std::abs(lap[QLatin1String("gap")].toDouble() - (time - best)) < 1e-9);
    }
    QCOMPARE(marked, 2); // one of each track
    QCOMPARE(ofFiles, 4);
}

void tst_ReportData::gapsAreToALapOfThePage()
{
    ReportData report;
    report.add(imported(demo(), {4, 5}), {});
    double least = 1e9;
    for (const QJsonValue &lap : report.json().value(QStringLiteral("laps")).toArray())
        least = std::min(least, lap[QLatin1String("gap")].toDouble(1e9));
    QCOMPARE(least, 0.0);
}

void tst_ReportData::tyres_data()
{
    QTest::addColumn<DemoOptions>("options");
    QTest::addColumn<bool>("atStops");

    DemoOptions race = demo();
    race.session = SessionKind::Race;
    QTest::newRow("measured all the way") << race << false;
    race.tyresAtStops = true;
    QTest::newRow("seen at stops") << race << true;
    race.surfaceTemperatures = false;
    QTest::newRow("seen at stops, without surface temperatures") << race << true;
}

void tst_ReportData::tyres()
{
    QFETCH(DemoOptions, options);
    QFETCH(bool, atStops);
    const ChosenLaps chosen = imported(options);
    ReportData report;
    report.add(chosen, {});
    const QJsonObject data = report.json();
    QCOMPARE(data.value(QStringLiteral("sessions"))[0][QLatin1String("tyresSeenAtStops")].toBool(),
             atStops);
    const QJsonArray laps = data.value(QStringLiteral("laps")).toArray();
    for (int i = 0; i < laps.size(); ++i) {
        const QJsonValue tyre = laps.at(i)[QLatin1String("tyres")][QLatin1String("rf")];
        const QVector<double> carcass = chosen.lap(i).channel(QStringLiteral("rftempcm"))->data;
        const double mean = std::accumulate(carcass.begin(), carcass.end(), 0.0) / carcass.size();
        const double shown = tyre[QLatin1String("carcass")][1][QLatin1String("value")].toDouble();
        QVERIFY(std::abs(shown - (atStops ? carcass.last() : mean)) < 1e-9);
        QCOMPARE(tyre[QLatin1String("surface")][1].isNull(), !options.surfaceTemperatures);
    }
}

NAPAMMUL_TEST(tst_ReportData)
#include "tst_reportdata.moc"
