#include "host/commands/lapscommand.h"

#include "analysis/lapsummary.h"
#include "analysis/sessionsummary.h"
#include "host/commands/commandline.h"
#include "host/text/displaytext.h"
#include "host/text/summaryjson.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "model/helpers.h"
#include "writers/jsonvalues.h"

#include <QJsonArray>

namespace {

QString formatGap(const LapSummary &summary)
{
    if (summary.isBest)
        return QStringLiteral("best");
    return summary.gap ? ZEP::printTime(*summary.gap) : QStringLiteral("-");
}

TableWriter::Style rowStyle(const LapSummary &summary)
{
    if (summary.isBest)
        return TableWriter::Style::Best;
    return summary.time ? TableWriter::Style::Plain : TableWriter::Style::Faint;
}

QString sessionTable(const SessionSummary &session, const Terminal &terminal)
{
    TableWriter table({{QString()}, {QString(), TableWriter::Align::Left, 0, 20}});
    table.addRow({QStringLiteral("Track"), formatText(session.track)});
    table.addRow({QStringLiteral("Configuration"), formatText(session.configuration)});
    table.addRow({QStringLiteral("Car"), formatText(session.car)});
    table.addRow({QStringLiteral("Driver"), formatText(session.driver)});
    table.addRow({QStringLiteral("Session"), formatText(session.session)});
    table.addRow({QStringLiteral("Date"),
                  formatDateTime(session.date)
                      % QLatin1String(session.isFileDate ? " (date of the file)" : "")});
    return table.text(terminal.width(), terminal.hasColour());
}

/// What the table cannot say: which laps were recorded in part, and where laps are missing.
QString lapNotes(const ChosenLaps &chosen, const QVector<LapSummary> &summaries, UnitSystem units)
{
    const auto text = [units](double metres) {
        return formatQuantity(shown(Quantity{metres, QStringLiteral("m")}, units), 0);
    };
    QStringList parts;
    QStringList missing;
    int before = -1; // the index in the row above
    for (const int i : chosen.indices) {
        const LapSummary &summary = summaries.at(i);
        if (summary.part) {
            parts.append(QStringLiteral("#%1 from %2 to %3")
                             .arg(QString::number(i + 1), text(summary.part->begin),
                                  text(summary.part->end)));
        }
        if (summary.missingBefore > 0 && i - 1 == before) {
            missing.append(QStringLiteral("%1 between #%2 and #%3")
                               .arg(QString::number(summary.missingBefore), QString::number(i),
                                    QString::number(i + 1)));
        }
        before = i;
    }
    QString notes;
    if (!parts.isEmpty()) {
        notes +=
            QStringLiteral("Recorded in part: %1. The times of partial laps are not compared.\n")
                .arg(parts.join(QStringLiteral(", ")));
    }
    if (!missing.isEmpty()) {
        notes += QStringLiteral("Laps left out, because the car entered the pits: %1.\n")
                     .arg(missing.join(QStringLiteral(", ")));
    }
    return notes.isEmpty() ? notes : QString(QLatin1Char('\n') % notes);
}

QString lapTable(const ChosenLaps &chosen, const QVector<LapSummary> &summaries, UnitSystem units,
                 const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("#"), Align::Right},
                       {QStringLiteral("Lap"), Align::Right, 2},
                       {QStringLiteral("Stint"), Align::Right, 4},
                       {QStringLiteral("In stint"), Align::Right, 5},
                       {QStringLiteral("Kind")},
                       {QStringLiteral("Time"), Align::Right},
                       {QStringLiteral("Gap"), Align::Right, 1},
                       {QStringLiteral("Samples"), Align::Right, 6},
                       {QStringLiteral("Top speed"), Align::Right, 3},
                       {QStringLiteral("Fuel used"), Align::Right, 3}});
    for (const int i : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(i);
        const LapSummary &summary = summaries.at(i);
        table.addRow({QString::number(i + 1), QString::number(lap.getLapInSession()),
                      QString::number(lap.getStintInSession()),
                      QString::number(lap.getLapInStint()), lapKindName(summary.kind),
                      formatLapTime(summary.time), formatGap(summary), QString::number(lap.size()),
                      formatQuantity(shown(summary.topSpeed, units), 1),
                      formatQuantity(shown(summary.fuelUsed, units), 2)},
                     rowStyle(summary));
    }
    return table.text(terminal.width(), terminal.hasColour());
}

/// A file in one row: its session, the best of the chosen laps, and how many of them are timed.
QJsonObject bestJson(const ChosenLaps &chosen)
{
    const QVector<LapSummary> summaries = summarize(chosen.file.laps);
    int timed = 0;
    std::optional<int> best;
    for (const int i : chosen.indices) {
        const LapSummary &summary = summaries.at(i);
        if (!summary.isTimed())
            continue;
        ++timed;
        if (!best || *summary.time < *summaries.at(*best).time)
            best = i;
    }
    QJsonObject object = sessionJson(sessionSummary(chosen.file.laps, chosen.file.lastModified()));
    object.insert(QStringLiteral("lap"), best ? QJsonValue(*best + 1) : QJsonValue());
    object.insert(QStringLiteral("time"), jsonTime(best ? summaries.at(*best).time : std::nullopt));
    object.insert(QStringLiteral("timedLaps"), timed);
    return object;
}

/// A table with a row for each of \a files, which bestJson() made.
QString bestTable(const QJsonArray &files, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("File"), Align::Left, 0, 12},
                       {QStringLiteral("Date"), Align::Left, 3},
                       {QStringLiteral("Track"), Align::Left, 1, 12},
                       {QStringLiteral("Car"), Align::Left, 2, 10},
                       {QStringLiteral("Driver"), Align::Left, 4, 10},
                       {QStringLiteral("Best lap"), Align::Right},
                       {QStringLiteral("#"), Align::Right, 5},
                       {QStringLiteral("Timed laps"), Align::Right, 2}});
    for (const QJsonValue &file : files) {
        const QJsonValue time = file[QLatin1String("time")];
        const bool hasTime = time.isDouble();
        constexpr int msPerSecond = 1000;
        const auto text = [&file](const char *key) {
            return formatText(file[QLatin1String(key)].toString());
        };
        table.addRow(
            {text("file"),
             formatDateTime(
                 QDateTime::fromString(file[QLatin1String("date")].toString(), Qt::ISODateWithMs)),
             text("track"), text("car"), text("driver"),
             formatLapTime(hasTime ? std::optional<int>(qRound(time.toDouble() * msPerSecond))
                                   : std::nullopt),
             hasTime ? QString::number(file[QLatin1String("lap")].toInt()) : QStringLiteral("-"),
             QString::number(file[QLatin1String("timedLaps")].toInt())},
            hasTime ? TableWriter::Style::Plain : TableWriter::Style::Faint);
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QJsonObject json(const ChosenLaps &chosen)
{
    QJsonArray laps;
    const QVector<LapSummary> summaries = summarize(chosen.file.laps);
    for (const int i : chosen.indices) {
        QJsonObject json = lapSummaryJson(chosen.lap(i), summaries.at(i));
        json.insert(QStringLiteral("lap"), i + 1);
        laps.append(json);
    }
    const SessionSummary session = sessionSummary(chosen.file.laps, chosen.file.lastModified());
    QJsonObject object = sessionJson(session);
    object.insert(QStringLiteral("laps"), laps);
    return object;
}

} // namespace

Command::Description LapsCommand::description() const
{
    return {"laps", "List the laps of recordings",
            "  zepimport laps practice.ibt\n"
            "  zepimport laps --best --jobs 4 -r season/\n"
            "  zepimport laps --json monday/*.ibt > laps.json"};
}

void LapsCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options, "Laps to show (default: all)");
    options.addChoice({"--sort", "KEY", "With --best: sort the rows by time or date"}, &m_sort,
                      {"time", "date"});
    options.addFlag("--best", &m_best, "Show one row per file, with its best lap");
    m_batch.declare(options);
    m_units.declare(options);
    m_listing.declare(options);
}

ExitCode LapsCommand::run(Terminal &terminal)
{
    if (!m_sort.empty() && !m_best) {
        terminal.complain(QStringLiteral("--sort sorts the table of --best; see zepimport laps "
                                         "--help"));
        return ExitCode::WrongUse;
    }
    FileWork work = m_listing.work(terminal);
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal, [&](ChosenLaps &&chosen) {
            show(chosen, terminal);
            return ExitCode::Success;
        });
    };
    work.arguments = [&](const RecordingFile &file) {
        // The one table is made of what JSON says of each file.
        return QStringList(description().name) + m_laps.arguments(file)
            + (m_best ? QStringList{"--best", "--json"}
                      : m_units.arguments() + m_listing.arguments());
    };
    if (m_best) {
        work.finish = [&] {
            if (!m_sort.empty())
                m_listing.sortJson(QString::fromStdString(m_sort));
            if (m_listing.wantsJson())
                m_listing.finish(terminal);
            else if (!m_listing.jsonArray().isEmpty())
                terminal.print(bestTable(m_listing.jsonArray(), terminal));
            return ExitCode::Success;
        };
    }
    return processFiles(m_files, work, terminal, m_batch);
}

void LapsCommand::show(const ChosenLaps &chosen, Terminal &terminal)
{
    const ImportedFile &file = chosen.file;
    if (m_best) {
        m_listing.addJson(file.fileName, bestJson(chosen));
        return;
    }
    if (m_listing.wantsJson()) {
        m_listing.addJson(file.fileName, json(chosen));
        return;
    }
    m_listing.printHeading(file.fileName, terminal);
    const QVector<LapSummary> summaries = summarize(file.laps);
    terminal.print(sessionTable(sessionSummary(file.laps, file.lastModified()), terminal)
                   % QLatin1Char('\n') % lapTable(chosen, summaries, m_units.system(), terminal)
                   % lapNotes(chosen, summaries, m_units.system()));
}
