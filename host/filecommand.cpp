#include "host/filecommand.h"

#include "host/format.h"
#include "host/lapsummary.h"
#include "host/terminal.h"

#include <CLI/CLI.hpp>

#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

void FileCommand::declareFiles(CLI::App &command)
{
    command.add_option("FILE", m_files, "Recordings to read")->required()->type_name("");
}

void FileCommand::declareLap(CLI::App &command)
{
    command
        .add_option("--lap", m_lap,
                    "Lap to show, by its # in the output of `laps`;\n"
                    "else the best timed lap, or the longest one")
        ->type_name("N")
        ->check([](const std::string &text) {
            const int number = QByteArray::fromStdString(text).toInt();
            return number >= 1 ? std::string() : "laps are numbered from 1, not " + text;
        });
}

void FileCommand::printLapHeading(const ImportedFile &file, int lap, Terminal &terminal)
{
    const ZEP::Lap &shown = *file.laps[std::size_t(lap)];
    const std::optional<int> time = lapTime(shown);
    terminal.printHeading(
        QStringLiteral("%1: lap #%2 of %3, %4%5")
            .arg(file.fileName, QString::number(lap + 1), QString::number(file.laps.size()),
                 lapKindName(lapKind(shown)),
                 time ? QString(QLatin1String(", ") % formatLapTime(time)) : QString()));
}

ExitCode FileCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = loadPlugins(terminal);
    if (!plugins)
        return ExitCode::Failure;

    Importer importer(*plugins, terminal, isVerbose());
    ExitCode result = ExitCode::Success;
    QJsonArray array;
    bool first = true;
    for (const std::string &name : m_files) {
        const std::optional<ImportedFile> file = importer.import(QFile::decodeName(name.c_str()));
        if (!file) {
            result = std::max(result, ExitCode::Failure);
            continue;
        }
        const int count = int(file->laps.size());
        if (m_lap > count) {
            terminal.complain(
                QStringLiteral("%1: there is no lap #%2; choose one of 1 to %3")
                    .arg(file->fileName, QString::number(m_lap), QString::number(count)));
            result = ExitCode::WrongUse;
            continue;
        }
        const int lap = m_lap > 0 ? m_lap - 1 : representativeLap(file->laps);
        if (wantsJson()) {
            QJsonObject object = json(*file, lap);
            object.insert(QStringLiteral("file"), file->fileName);
            array.append(object);
            continue;
        }
        if (!first)
            terminal.print(QStringLiteral("\n"));
        first = false;
        print(*file, lap, terminal);
    }
    if (wantsJson())
        terminal.print(QString::fromUtf8(QJsonDocument(array).toJson()));
    return result;
}
