#include "plugin/irpluginimport.h"

#include "ibt/ibtfile.h"
#include "plugin/boundedimport.h"
#include "plugin/laplist.h"
#include "reader/irtelemetryreader.h"

#include <QElapsedTimer>

#include <memory>
#include <new>

namespace {

constexpr int LevelInfo = 0;
constexpr int LevelError = -2;

const QString &ibtFormat()
{
    static const QString format = QStringLiteral("iRacing binary telemetry (*.ibt)");
    return format;
}

QString sessionInfoError()
{
    return QStringLiteral("IBT import error:  Failed to read sessionInfoString");
}

QString varHeaderError()
{
    return QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");
}

/// Adds the lap that was still being driven. There is always one, empty if nobody drove it.
void addLastLap(iRTelemetryReader *reader, LapList *laps)
{
    ZEP::Lap *lap = reader->myLap();
    // Without a player's car nobody else owns the lap.
    const std::unique_ptr<ZEP::Lap> unowned(reader->hasMyCar() ? nullptr : lap);
    laps->add(*lap);
}

/// Reads all laps of a recording. If that fails, returns what \a fail returns of the reason: hosts
/// hear of an error while the file is still open, and of a success once it is closed.
template <typename Fail>
bool readLaps(const QString &fileName, LapList *laps, const Fail &fail)
{
    IbtFile file(fileName.toLocal8Bit().constData());
    if (!file.isOpen())
        return fail(QLatin1String("Can't open file ") % fileName);
    if (!file.readHeader())
        return fail(QStringLiteral("IBT import error:  Error reading irsdk_header"));
    if (!file.readDiskSubHeader())
        return fail(QStringLiteral("IBT import error:  Error reading irsdk_diskSubHeader"));
    // Both claims first: the text is read for nothing if the table is missing.
    if (!file.holdsSessionInfo())
        return fail(sessionInfoError());
    if (!file.holdsVarHeaders())
        return fail(varHeaderError());
    if (!file.readSessionInfo())
        return fail(sessionInfoError());
    iRTelemetryReader reader;
    reader.setYaml(file.sessionInfo());
    if (!file.readVarHeaders())
        return fail(varHeaderError());

    if (!BoundedImport(&file, &reader, laps).run())
        return fail(varHeaderError());
    reader.processMyLap(false);
    addLastLap(&reader, laps);
    return true;
}

} // namespace

iRPluginImport::~iRPluginImport() = default;

QString iRPluginImport::pluginName() const
{
    return QStringLiteral("ZEP iRacing ibt import plugin");
}

QString iRPluginImport::sourceName() const
{
    return QStringLiteral("iRacing");
}

QString iRPluginImport::pluginVersion() const
{
    return QStringLiteral(NAPAMMUL_VERSION);
}

QStringList iRPluginImport::availableImportFormats() const
{
    return {ibtFormat()};
}

QVector<ZEP::Lap *> iRPluginImport::import(const QString &fileName, const QString &format,
                                           const QMap<QString, QVariant> &)
{
    try {
        message(QLatin1String("Importing file ") % fileName % QLatin1String(" ..."), LevelInfo);
        message(QLatin1String("Using format ") % format, LevelInfo);
        QElapsedTimer timer;
        timer.start();

        LapList laps;
        const auto fail = [this](const QString &error) {
            message(error, LevelError);
            return false;
        };
        const bool isRead = format == ibtFormat() ? readLaps(fileName, &laps, fail)
                                                  : fail(QStringLiteral("Unknown format"));
        if (!isRead)
            return {};
        message(QLatin1String("Done in ") % QString::number(timer.elapsed())
                    % QLatin1String(" ms; Laps readed ") % QString::number(laps.count()),
                LevelInfo);
        for (ZEP::Lap *lap : laps.all()) {
            lap->setSource(sourceName());
            lap->setPlugin(pluginName());
        }
        return laps.take();
    } catch (const std::bad_alloc &) {
        // The file contains what memory was asked for, but this machine has too little.
    }
    try {
        message(varHeaderError(), LevelError);
    } catch (const std::bad_alloc &) {
        // There is not even memory for the message.
    }
    return {};
}
