#include "host/commands/checkcommand.h"

#include "host/commands/filecheck.h"
#include "host/files/importer.h"
#include "host/files/recordingfiles.h"
#include "host/text/terminal.h"
#include "host/text/textwidth.h"
#include "writers/jsonvalues.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

using Verdict = FileCheck::Verdict;

/// For scripts.
QString verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Fine:
        return QStringLiteral("fine");
    case Verdict::Remarks:
        return QStringLiteral("remarks");
    case Verdict::Damaged:
        return QStringLiteral("damaged");
    case Verdict::NoRecording:
        break;
    }
    return QStringLiteral("no-recording");
}

/// "  session info, line 18: "   UserName: A: B" contains ..."
QString sentence(const Finding &finding)
{
    const QString place = finding.place();
    const QString line = (place.isEmpty() ? place : QString(place % QLatin1String(": ")))
        % (finding.quote.isEmpty() ? QString() : QString(finding.quote % QLatin1Char(' ')))
        % finding.text;
    return QLatin1String("  ") % printable(line) % QLatin1Char('\n');
}

QJsonValue jsonNumber(const std::optional<qint64> &number)
{
    return number ? QJsonValue(*number) : QJsonValue();
}

/// Names that a recording contains reach scripts as they reach people.
QJsonValue jsonPrintable(const QString &text)
{
    return jsonText(printable(text));
}

QJsonObject json(const Finding &finding)
{
    return {{QStringLiteral("kind"), findingKindName(finding.kind)},
            {QStringLiteral("damage"), finding.isDamage()},
            {QStringLiteral("text"), printable(finding.text)},
            {QStringLiteral("lost"), jsonPrintable(finding.lost)},
            {QStringLiteral("offset"), jsonNumber(finding.offset)},
            {QStringLiteral("wanted"), jsonNumber(finding.wanted)},
            {QStringLiteral("had"), jsonNumber(finding.had)},
            {QStringLiteral("variable"), jsonPrintable(finding.variable)},
            {QStringLiteral("line"), finding.line > 0 ? QJsonValue(finding.line) : QJsonValue()},
            {QStringLiteral("quote"), jsonText(finding.quote)},
            {QStringLiteral("others"), finding.others}};
}

QJsonObject json(const QString &fileName, const FileCheck &check)
{
    QJsonArray findings;
    for (const Finding &finding : check.findings())
        findings.append(json(finding));
    return {{QStringLiteral("file"), fileName},
            {QStringLiteral("verdict"), verdictName(check.verdict())},
            {QStringLiteral("summary"), printable(check.summary())},
            {QStringLiteral("laps"), check.laps()},
            {QStringLiteral("findings"), findings}};
}

} // namespace

CLI::App *CheckCommand::declare(CLI::App &program)
{
    CLI::App *command = declareNamed(program, "check", "Tell what is wrong with recordings",
                                     "  zepimport check practice.ibt\n"
                                     "  zepimport check -r season/\n"
                                     "  zepimport check --json monday/ > monday.json");
    command->add_option("FILE", m_files, "Recordings to check, or folders of them")
        ->required()
        ->type_name("");
    command->add_flag("-r,--recursive", m_recursive, "Check the folders below a folder, too");
    command->add_flag("--json", m_wantsJson, "Print JSON instead of sentences");
    return command;
}

ExitCode CheckCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = loadPlugins(terminal);
    if (!plugins)
        return ExitCode::Failure;

    const RecordingFiles recordings(m_files, m_recursive, *plugins);
    ExitCode result = ExitCode::Success;
    for (const RecordingFiles::Problem &problem : recordings.problems) {
        terminal.complain(problem.text);
        result = std::max(result, problem.isWrongUse ? ExitCode::WrongUse : ExitCode::Failure);
    }

    Importer importer(*plugins, terminal, isVerbose());
    QJsonArray array;
    for (const RecordingFile &recording : recordings.files) {
        if (recording.laps) {
            terminal.complain(recording.fileName
                              % QLatin1String(": is checked as a whole; name no laps behind it"));
            result = std::max(result, ExitCode::WrongUse);
            continue;
        }
        const FileCheck check(recording.fileName, &importer);
        const Verdict verdict = check.verdict();
        if (verdict == Verdict::Damaged || verdict == Verdict::NoRecording)
            result = std::max(result, ExitCode::Failure);
        if (m_wantsJson) {
            array.append(json(recording.fileName, check));
            continue;
        }
        terminal.printHeading(recording.fileName % QLatin1String(": ") % check.summary());
        for (const Finding &finding : check.findings())
            terminal.print(sentence(finding));
    }
    if (m_wantsJson)
        terminal.print(QString::fromUtf8(jsonBytes(array)));
    return result;
}
