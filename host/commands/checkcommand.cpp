#include "host/commands/checkcommand.h"

#include "host/commands/filecheck.h"
#include "host/files/importer.h"
#include "host/files/recordingfiles.h"
#include "host/text/terminal.h"
#include "host/text/textwidth.h"
#include "writers/jsonvalues.h"

#include <QJsonArray>
#include <QJsonObject>

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

QJsonObject json(const FileCheck &check)
{
    QJsonArray findings;
    for (const Finding &finding : check.findings())
        findings.append(json(finding));
    return {{QStringLiteral("verdict"), verdictName(check.verdict())},
            {QStringLiteral("summary"), printable(check.summary())},
            {QStringLiteral("laps"), check.laps()},
            {QStringLiteral("findings"), findings}};
}

} // namespace

Command::Description CheckCommand::description() const
{
    return {"check", "Check recordings for damage",
            "  zepimport check practice.ibt\n"
            "  zepimport check --jobs 4 -r season/\n"
            "  zepimport check --json monday/ > monday.json"};
}

void CheckCommand::declare(CommandOptions &options)
{
    m_files.declare(options, "Recordings to check, or folders of recordings");
    m_batch.declare(options);
    m_listing.declare(options, "sentences");
}

ExitCode CheckCommand::run(Terminal &terminal)
{
    FileWork work = m_listing.work(terminal);
    work.objection = [](const RecordingFile &file) {
        return file.laps
            ? QString(file.fileName
                      % QLatin1String(": is checked as a whole; leave out the choice of laps"))
            : QString();
    };
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return check(file.fileName, importer, terminal);
    };
    work.arguments = [&](const RecordingFile &) {
        return QStringList(description().name) + m_listing.arguments();
    };
    work.takeOutput = [&](const QByteArray &output) {
        if (!m_listing.takeJson(output))
            terminal.print(QString::fromUtf8(output));
    };
    work.success = "passed";
    return processFiles(m_files, work, terminal, m_batch);
}

ExitCode CheckCommand::check(const QString &fileName, Importer &importer, Terminal &terminal)
{
    const FileCheck check(fileName, &importer);
    if (m_listing.wantsJson()) {
        m_listing.addJson(fileName, json(check));
    } else {
        terminal.printHeading(fileName % QLatin1String(": ") % check.summary());
        for (const Finding &finding : check.findings())
            terminal.print(sentence(finding));
    }
    const Verdict verdict = check.verdict();
    return verdict == Verdict::Damaged || verdict == Verdict::NoRecording ? ExitCode::Failure
                                                                          : ExitCode::Success;
}
