#include "host/commands/comparecommand.h"

#include "analysis/lapsummary.h"
#include "host/files/recordingfiles.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "host/text/textchart.h"
#include "writers/jsonvalues.h"
#include "writers/outputbuffer.h"
#include "writers/outputfile.h"

#include <CLI/CLI.hpp>

#include <QFile>
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

/// A lap of 25 km on the finest grid; a damaged recording may tell of one without end.
constexpr double MostPlaces = 2.5e6;

/// The part by which the lengths of two laps of one track may differ: each is reckoned from the
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

QString stretchTable(const LapComparison &comparison, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("From"), Align::Right},
                       {QStringLiteral("To"), Align::Right},
                       {QStringLiteral("Difference"), Align::Right},
                       {QStringLiteral("Mean speed A"), Align::Right, 1},
                       {QStringLiteral("Mean speed B"), Align::Right, 1}});
    const auto metres = [](double value) {
        return formatQuantity(Quantity{value, QStringLiteral("m")}, 0);
    };
    const auto speed = [](double value) {
        return formatQuantity(Quantity{value, QStringLiteral("m/s")}, 1);
    };
    const std::size_t count = std::min<std::size_t>(ShownStretches, comparison.stretches.size());
    for (std::size_t i = 0; i < count; ++i) {
        const LapComparison::Stretch &stretch = comparison.stretches[i];
        table.addRow({metres(stretch.begin), metres(stretch.end),
                      formatTimeDifference(stretch.seconds) % QLatin1String(" s"),
                      speed(stretch.speeds[0]), speed(stretch.speeds[1])});
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QString charts(const LapComparison &comparison, const Terminal &terminal)
{
    TextChart::Curve difference;
    TextChart::Curve speeds[2];
    for (const LapComparison::Point &point : comparison.points) {
        difference.values.append(point.difference());
        for (int side = 0; side < 2; ++side)
            speeds[side].values.append(point.speeds[side]);
    }
    speeds[0].name = QStringLiteral("A");
    speeds[0].colour = TextChart::Colour::Cyan;
    speeds[1].name = QStringLiteral("B");
    speeds[1].colour = TextChart::Colour::Yellow;
    const TextChart chart(comparison.points.back().distance, QStringLiteral("m"));
    const int width = std::min(ChartWidth, terminal.width());
    return chart.text(QStringLiteral("Time difference, s (above 0: B is behind A)"), {difference},
                      width, ChartHeight, terminal.hasColour())
        % QLatin1Char('\n')
        % chart.text(QStringLiteral("Speed, m/s"), {speeds[0], speeds[1]}, width, ChartHeight,
                     terminal.hasColour());
}

void print(const std::vector<CompareCommand::Side> &sides, const LapComparison &comparison,
           Terminal &terminal)
{
    terminal.printHeading(QLatin1String("A  ") % sides[0].name());
    terminal.printHeading(QLatin1String("B  ") % sides[1].name());
    const double atLine = comparison.points.back().difference();
    terminal.print(QStringLiteral("\nAt the line B is %1 s %2 A.\n\n")
                       .arg(QString::number(std::abs(atLine), 'f', 3),
                            atLine < 0 ? QStringLiteral("ahead of") : QStringLiteral("behind")));
    if (terminal.width() >= TextChart::LeastWidth)
        terminal.print(charts(comparison, terminal) % QLatin1Char('\n'));
    terminal.print(stretchTable(comparison, terminal));
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

} // namespace

QString CompareCommand::Side::name() const
{
    return QStringLiteral("%1: lap #%2, %3")
        .arg(fileName, QString::number(number), formatLapTime(time));
}

CLI::App *CompareCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "compare", "Show where one lap gains on another",
                     "  zepimport compare practice.ibt:best practice.ibt:3\n"
                     "  zepimport compare monday.ibt tuesday.ibt --output gaps.csv");
    declareFiles(*command);
    declareLaps(*command, LapChoice::best(), "Laps to compare instead of the best ones");
    command->add_option("--grid", m_grid, "Metres from one place to the next")
        ->type_name("METRES")
        ->check(CLI::Range(FinestGrid, CoarsestGrid))
        ->check([](const std::string &metres) { // which every range lets through
            return std::isnan(std::stod(metres)) ? "'" + metres + "' is no number of metres"
                                                 : std::string();
        })
        ->capture_default_str();
    command
        ->add_option("-o,--output", m_output,
                     "CSV file to write all places to, also;\n- is the standard output, alone")
        ->type_name("PATH");
    command->add_flag("--force", m_force, "Replace a file that exists already");
    command->add_flag("--json", m_wantsJson, "Print JSON instead of tables");
    return command;
}

bool CompareCommand::accepts(const QVector<RecordingFile> &files, Terminal &terminal)
{
    const QString output = QFile::decodeName(m_output.c_str());
    return std::none_of(files.begin(), files.end(), [&](const RecordingFile &file) {
        return isRecording(output, file, terminal);
    });
}

ExitCode CompareCommand::process(ChosenLaps &&chosen, Terminal &terminal)
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
    return ExitCode::Success;
}

ExitCode CompareCommand::run(Terminal &terminal)
{
    if (m_output == "-" && m_wantsJson) {
        terminal.complain(QStringLiteral("--json and --output - both need the standard output; see "
                                         "zepimport compare --help"));
        return ExitCode::WrongUse;
    }
    const ExitCode collected = FileCommand::run(terminal);
    if (collected != ExitCode::Success)
        return collected;
    if (m_sides.size() != 2) {
        terminal.complain(QStringLiteral("compare takes two laps, not %1; choose them as in "
                                         "%2:best %2:3")
                              .arg(QString::number(m_sides.size()), m_sides.front().fileName));
        return ExitCode::WrongUse;
    }
    const Side &a = m_sides[0];
    const Side &b = m_sides[1];
    if (a.track != b.track) {
        terminal.complain(QStringLiteral("laps of different tracks cannot be compared: %1 on %2, "
                                         "%3 on %4")
                              .arg(a.fileName, a.track, b.fileName, b.track));
        return ExitCode::Failure;
    }
    if (std::abs(a.curve.length() - b.curve.length()) > LengthTolerance * a.curve.length()) {
        terminal.complain(
            QStringLiteral("laps of different length cannot be compared: %1 is %2 m, %3 is %4 m")
                .arg(a.name(), QString::number(a.curve.length(), 'f', 0), b.name(),
                     QString::number(b.curve.length(), 'f', 0)));
        return ExitCode::Failure;
    }

    if (!(a.curve.length() / m_grid <= MostPlaces)) {
        terminal.complain(QStringLiteral("%1 is %2 m long, too much for a grid of %3 m; choose a "
                                         "wider --grid, or another lap")
                              .arg(a.name(), formatNumber(a.curve.length()), formatNumber(m_grid)));
        return ExitCode::Failure;
    }

    const LapComparison comparison(a.curve, b.curve, m_grid);
    if (!m_output.empty() && !writeCsv(comparison, terminal))
        return ExitCode::Failure;
    if (m_output == "-")
        return ExitCode::Success;
    if (m_wantsJson)
        terminal.print(QString::fromUtf8(jsonBytes(json(m_sides, comparison))));
    else
        print(m_sides, comparison, terminal);
    return ExitCode::Success;
}

/// Writes a line for each place, below one of names and one of units. False if that failed, and the
/// user knows.
bool CompareCommand::writeCsv(const LapComparison &comparison, Terminal &terminal) const
{
    OutputFile file(QFile::decodeName(m_output.c_str()));
    QString problem;
    if (!file.open(m_force, &problem)) {
        terminal.complain(problem);
        return false;
    }
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
    if (!file.commit(&problem)) {
        terminal.complain(problem);
        return false;
    }
    return true;
}
