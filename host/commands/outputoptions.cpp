#include "host/commands/outputoptions.h"

#include "host/commands/commandline.h"
#include "host/files/recordingfiles.h"
#include "host/text/terminal.h"
#include "writers/outputfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

void OutputOptions::declareOutput(CommandOptions &options, const std::string &valueName,
                                  const std::string &text, Need need)
{
    const CommandOptions::Description description{"-o,--output", valueName, text};
    if (need == Need::Required)
        options.addRequiredText(description, &m_output);
    else
        options.addText(description, &m_output);
}

void OutputOptions::declareForce(CommandOptions &options, const std::string &text)
{
    options.addFlag("--force", &m_force, text);
}

QString OutputOptions::name() const
{
    return QFile::decodeName(m_output.c_str());
}

bool OutputOptions::open(OutputFile *file, Terminal &terminal) const
{
    QString problem;
    if (file->open(m_force, &problem))
        return true;
    terminal.complain(problem);
    return false;
}

bool OutputOptions::commit(OutputFile *file, Terminal &terminal)
{
    QString problem;
    if (file->commit(&problem))
        return true;
    terminal.complain(problem);
    return false;
}

bool OutputOptions::isRecording(const QString &output, const QVector<RecordingFile> &recordings,
                                Terminal &terminal)
{
    const QFileInfo info(output);
    if (!info.exists())
        return false;
    const auto same =
        std::find_if(recordings.begin(), recordings.end(), [&info](const RecordingFile &file) {
            return info == QFileInfo(file.fileName);
        });
    if (same == recordings.end())
        return false;
    terminal.complain(same->fileName
                      % QLatin1String(": is the recording itself; choose another output"));
    return true;
}

QStringList OutputOptions::arguments(const QString &name) const
{
    QStringList result;
    if (!name.isEmpty())
        result.append(QLatin1String("--output=") % name);
    if (m_force)
        result.append(QStringLiteral("--force"));
    return result;
}
