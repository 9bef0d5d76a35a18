#include "host/commands/comparecommand.h"

#include "analysis/lapsummary.h"
#include "host/commands/commandline.h"
#include "host/commands/filework.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "host/text/textchart.h"
#include "writers/jsonvalues.h"
#include "writers/outputbuffer.h"
#include "writers/outputfile.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr int ShownStretches = 10;

/// Finer than the distance between two ticks of a slow car.
constexpr double FinestGrid = 0.01;
constexpr double CoarsestGrid = 1000;

/// A lap of 25 km on the finest grid; in a damaged recording, a lap may be endless.
constexpr double MostPlaces = 2.5e6;

/// The part by which the lengths of two laps of one track may differ: each is calculated from the
/// last tick of its lap, in single precision.
constexpr double LengthTolerance = 0.002;

constexpr int ChartWidth = 100;
constexpr int ChartHeight = 11;

QString trackOf(const ZEP::Lap &lap)
{
    return lap.getTrackConfig().isEmpty()
        ? lap.getTrackName()
        : QString(lap.getTrackName() % QLatin1String(", ") % lap.getTrackConfig());
}

QString stretchTable(const LapComparison &comparison, UnitSystem units, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("From"), Align::Right},
                       {QStringLiteral("To"), Align::Right},
                       {QStringLiteral("Difference"), Align::Right},
                       {QStringLiteral("Mean speed A"), Align::Right, 1},
                       {QStringLiteral("Mean speed B"), Align::Right, 1}});
    const auto place = [units](double value) {
        return formatQuantity(shown(Quantity{value, QStringLiteral("m")}, units), 0);
    };
    const auto speed = [units](double value) {
        return formatQuantity(shown(Quantity{value, QStringLiteral("m/s")}, units), 1);
    };
    const std::size_t count = std::min<std::size_t>(ShownStretches, comparison.stretches.size());
    for (std::size_t i = 0; i < count; ++i) {
        const LapComparison::Stretch &stretch = comparison.stretches[i];
        table.addRow({place(stretch.begin), place(stretch.end),
                      formatTimeDifference(stretch.seconds) % QLatin1String(" s"),
                      speed(stretch.speeds[0]), speed(stretch.speeds[1])});
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QString charts(const LapComparison &comparison, UnitSystem units, const Terminal &terminal)
{
    const auto speed = [units](double value) {
        return shown(Quantity{value, QStringLiteral("m/s")}, units);
    };
    TextChart::Curve difference;
    TextChart::Curve speeds[2];
    for (const LapComparison::Point &point : comparison.points) {
        difference.values.append(point.difference());
        for (int side = 0; side < 2; ++side)
            speeds[side].values.append(speed(point.speeds[side]).value);
    }
    speeds[0].name = QStringLiteral("A");
    speeds[0].colour = TextChart::Colour::Cyan;
    speeds[1].name = QStringLiteral("B");
    speeds[1].colour = TextChart::Colour::Yellow;
    const Quantity length =
        shown(Quantity{comparison.points.back().distance, QStringLiteral("m")}, units);
    const TextChart chart(length.value, length.unit);
    const int width = std::min(ChartWidth, terminal.width());
    return chart.text(QStringLiteral("Time difference, s (above 0: B is behind A)"), {difference},
                      width, ChartHeight, terminal.hasColour())
        % QLatin1Char('\n')
        % chart.text(QLatin1String("Speed, ") % speed(0).unit, {speeds[0], speeds[1]}, width,
                     ChartHeight, terminal.hasColour());
}

void print(const std::vector<CompareCommand::Side> &sides, const LapComparison &comparison,
           UnitSystem units, Terminal &terminal)
{
    terminal.printHeading(QLatin1String("A  ") % sides[0].name());
    terminal.printHeading(QLatin1String("B  ") % sides[1].name());
    const double atLine = comparison.points.back().difference();
    terminal.print(QStringLiteral("\nAt the finish line, B is %1 s %2 than A.\n\n")
                       .arg(QString::number(std::abs(atLine), 'f', 3),
                            atLine < 0 ? QStringLiteral("faster") : QStringLiteral("slower")));
    if (terminal.width() >= TextChart::LeastWidth)
        terminal.print(charts(comparison, units, terminal) % QLatin1Char('\n'));
    terminal.print(stretchTable(comparison, units, terminal));
}

QJsonObject json(const std::vector<CompareCommand::Side> &sides, const LapComparison &comparison)
{
    const auto pair = [](const double(&values)[2]) { return QJsonArray{values[0], values[1]}; };
    QJsonArray laps;
    for (const CompareCommand::Side &side : sides) {
        laps.append(QJsonObject{{QStringLiteral("file"), side.fileName},
                                {QStringLiteral("lap"), side.number},
                                {QStringLiteral("time"), jsonTime(side.time)}});
    }
    QJsonArray stretches;
    for (const LapComparison::Stretch &stretch : comparison.stretches) {
        stretches.append(QJsonObject{{QStringLiteral("begin"), stretch.begin},
                                     {QStringLiteral("end"), stretch.end},
                                     {QStringLiteral("seconds"), stretch.seconds},
                                     {QStringLiteral("meanSpeeds"), pair(stretch.speeds)}});
    }
    QJsonArray points;
    for (const LapComparison::Point &point : comparison.points) {
        points.append(QJsonObject{{QStringLiteral("distance"), point.distance},
                                  {QStringLiteral("difference"), point.difference()},
                                  {QStringLiteral("times"), pair(point.times)},
                                  {QStringLiteral("speeds"), pair(point.speeds)}});
    }
    return {{QStringLiteral("laps"), laps},
            {QStringLiteral("difference"), comparison.points.back().difference()},
            {QStringLiteral("stretches"), stretches},
            {QStringLiteral("points"), points}};
}

/// Why \a a and \a b cannot be compared on a grid of so many metres; empty if they can.
QString obstacle(const CompareCommand::Side &a, const CompareCommand::Side &b, double grid)
{
    const auto metres = [](double length) { return QString::number(length, 'f', 0); };
    if (a.track != b.track) {
        return QStringLiteral("laps of different tracks cannot be compared: %1 on %2, %3 on %4")
            .arg(a.fileName, a.track, b.fileName, b.track);
    }
    if (std::abs(a.curve.length() - b.curve.length()) > LengthTolerance * a.curve.length()) {
        return QStringLiteral(
                   "laps of different lengths cannot be compared: %1 is %2 m, %3 is %4 m")
            .arg(a.name(), metres(a.curve.length()), b.name(), metres(b.curve.length()));
    }
    if (!(a.curve.length() / grid <= MostPlaces)) {
        return QStringLiteral(
                   "%1 is %2 m long, too long for a grid of %3 m; choose a larger --grid, "
                   "or another lap")
            .arg(a.name(), formatNumber(a.curve.length()), formatNumber(grid));
    }
    return QString();
}

/// The number of the fastest timed lap of \a laps but the one at \a index; none if there is no
/// other.
std::optional<int> otherTimedLap(const Laps &laps, int index)
{
    const QVector<LapSummary> summaries = summarize(laps);
    std::optional<int> fastest;
    for (int i = 0; i < summaries.size(); ++i) {
        const LapSummary &summary = summaries.at(i);
        if (i != index && summary.kind == LapKind::Timed && summary.time
            && (!fastest || *summary.time < *summaries.at(*fastest).time))
            fastest = i;
    }
    return fastest ? std::optional<int>(*fastest + 1) : std::nullopt;
}

} // namespace

QString CompareCommand::Side::name() const
{
    return QStringLiteral("%1: lap #%2, %3")
        .arg(fileName, QString::number(number), formatLapTime(time));
}

Command::Description CompareCommand::description() const
{
    return {"compare", "Show where one lap is faster than another",
            "  zepimport compare practice.ibt:best practice.ibt:3\n"
            "  zepimport compare monday.ibt tuesday.ibt --output gaps.csv"};
}

void CompareCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options, "Laps to compare (default: the best of each file)");
    options.addNumber({"--grid", "METRES", "Metres between the points compared"}, &m_grid,
                      FinestGrid, CoarsestGrid);
    m_units.declare(options);
    m_output.declareOutput(options, "PATH",
                           "CSV file for all points; - writes only them,\n"
                           "to standard output");
    m_output.declareForce(options, "Replace an existing file");
    m_batch.declareQuiet(options);
    m_json.declare(options);
}

ExitCode CompareCommand::run(Terminal &terminal)
{
    if (m_output.isStandardOutput() && m_json.isGiven()) {
        terminal.complain(QStringLiteral("--json and --output - both write to standard output; see "
                                         "zepimport compare --help"));
        return ExitCode::WrongUse;
    }
    FileWork work;
    work.success = nullptr; // two files are no batch
    work.accepts = [&](const QVector<RecordingFile> &files) {
        return !OutputOptions::isRecording(m_output.name(), files, terminal);
    };
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal,
                             [&](ChosenLaps &&chosen) { return collect(chosen, terminal); });
    };
    const ExitCode collected = processFiles(m_files, work, terminal, m_batch);
    if (collected != ExitCode::Success)
        return collected;
    if (m_sides.size() != 2) {
        terminal.complain(wrongNumber());
        return ExitCode::WrongUse;
    }
    const QString problem = obstacle(m_sides[0], m_sides[1], m_grid);
    if (!problem.isEmpty()) {
        terminal.complain(problem);
        return ExitCode::Failure;
    }
    return show(LapComparison(m_sides[0].curve, m_sides[1].curve, m_grid), terminal);
}

/// What to do about the number of laps that were chosen, which is not two.
QString CompareCommand::wrongNumber() const
{
    const auto lap = [](const QString &fileName, int number) {
        return QString(fileName % QLatin1Char(':') % QString::number(number));
    };
    const Side &first = m_sides.front();
    if (m_sides.size() > 2)
        return QStringLiteral("compare needs two laps, not %1; choose two of them, as in %2 %3")
            .arg(QString::number(m_sides.size()), lap(first.fileName, first.number),
                 lap(m_sides[1].fileName, m_sides[1].number));
    return m_otherLap
        ? QStringLiteral("compare needs two laps, not 1; choose another, as in %1 %2")
              .arg(lap(first.fileName, first.number), lap(first.fileName, *m_otherLap))
        : QStringLiteral("compare needs two laps, and %1 has no other timed one; add "
                         "a lap of another file")
              .arg(first.fileName);
}

ExitCode CompareCommand::collect(const ChosenLaps &chosen, Terminal &terminal)
{
    for (const int index : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(index);
        const auto refuse = [&](const QString &reason) {
            terminal.complain(QStringLiteral("%1: lap #%2 %3; choose another lap")
                                  .arg(chosen.file.fileName, QString::number(index + 1), reason));
            return ExitCode::Failure;
        };
        const std::optional<int> time = lapTime(lap);
        if (!time)
            return refuse(QStringLiteral("has no time (%1)").arg(missingTimeReason(lap)));
        QString problem;
        std::optional<LapByDistance> curve = LapByDistance::of(lap, &problem);
        if (!curve)
            return refuse(problem);
        m_sides.push_back(
            {chosen.file.fileName, index + 1, *time, trackOf(lap), std::move(*curve)});
    }
    if (m_sides.size() == 1)
        m_otherLap = otherTimedLap(chosen.file.laps, chosen.indices.first());
    return ExitCode::Success;
}

ExitCode CompareCommand::show(const LapComparison &comparison, Terminal &terminal) const
{
    if (m_output.isGiven() && !writeCsv(comparison, terminal))
        return ExitCode::Failure;
    if (m_output.isStandardOutput())
        return ExitCode::Success;
    if (m_json.isGiven())
        JsonOption::print(json(m_sides, comparison), terminal);
    else
        print(m_sides, comparison, m_units.system(), terminal);
    return ExitCode::Success;
}

/// Writes a line for each place, below one of names and one of units. False if that failed;
/// then that has been reported.
bool CompareCommand::writeCsv(const LapComparison &comparison, Terminal &terminal) const
{
    OutputFile file(m_output.name());
    if (!m_output.open(&file, terminal))
        return false;
    OutputBuffer buffer(file);
    buffer.append("distance,difference,time_a,time_b,speed_a,speed_b\nm,s,s,s,m/s,m/s\n");
    for (const LapComparison::Point &point : comparison.points) {
        const double values[] = {point.distance, point.difference(), point.times[0],
                                 point.times[1], point.speeds[0],    point.speeds[1]};
        char *place = buffer.room(std::size(values) * (OutputBuffer::NumberSize + 1));
        for (const double value : values) {
            place = OutputBuffer::writeNumber(place, value);
            *place++ = ',';
        }
        place[-1] = '\n';
        buffer.appendUntil(place);
    }
    buffer.flush();
    return OutputOptions::commit(&file, terminal);
}
