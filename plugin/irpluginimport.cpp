#include "plugin/irpluginimport.h"

#include "ibt/ibtfile.h"
#include "reader/irtelemetryreader.h"

#include <QElapsedTimer>

#include <memory>
#include <new>
#include <utility>

namespace {

constexpr int LevelInfo = 0;
constexpr int LevelError = -2;

const QString &ibtFormat()
{
    static const QString format = QStringLiteral("iRacing binary telemetry (*.ibt)");
    return format;
}

/// The laps read so far; deletes those that nobody takes.
class LapList
{
public:
    LapList() = default;
    ~LapList() { clear(); }
    Q_DISABLE_COPY(LapList)

    void clear() { qDeleteAll(take()); }

    /// Adds a copy of the lap that the reader holds for the player's car.
    void addMyLap(iRTelemetryReader *reader)
    {
        // Without a player's car the reader hands out a lap that nobody else owns.
        ZEP::Lap *lap = reader->myLap();
        const std::unique_ptr<ZEP::Lap> unowned(reader->hasMyCar() ? nullptr : lap);

        auto copy = std::make_unique<ZEP::Lap>();
        *copy = *lap;
        m_laps.append(copy.get());
        copy.release();
    }

    int count() const { return m_laps.size(); }
    QVector<ZEP::Lap *> take() { return std::exchange(m_laps, {}); }

private:
    QVector<ZEP::Lap *> m_laps;
};

/// What the laps of a recording may take, whatever its size.
constexpr qint64 AllowedBytes = 256 * 1024 * 1024;
/// What they may take before it is known whether the recording will be refused.
constexpr qint64 UncountedBytes = 32 * 1024 * 1024;

/// Whether laps ask for more than \a allowedBytes, and for more than the records can stand for:
/// variables laid over each other, or a lap closed every other tick, could make terabytes of a
/// small file.
bool isTooLarge(const CollectedLaps &laps, qint64 recordBytesRead, qint64 allowedBytes)
{
    constexpr qint64 SampleBytes = 8;
    constexpr qint64 ChannelBytes = 256; // beside its samples
    constexpr qint64 LapBytes = 2 * 1024;
    // Variables side by side make at most 8 bytes of each byte read.
    constexpr qint64 AllowedPerByte = 64;

    const qint64 lapsMade = laps.finished + 1;
    const qint64 asked = laps.ticks * laps.channels * SampleBytes
        + lapsMade * (laps.channels * ChannelBytes + LapBytes);
    return asked > allowedBytes && asked > recordBytesRead * AllowedPerByte;
}

QString sessionInfoError()
{
    return QStringLiteral("IBT import error:  Failed to read sessionInfoString");
}

QString varHeaderError()
{
    return QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");
}

/// Follows the cars through all records, from a new start, and adds the laps to \a laps, if there
/// is a list. False when they become too large.
bool readRecords(IbtFile *file, iRTelemetryReader *reader, LapList *laps, qint64 allowedBytes)
{
    const irsdk_header &header = file->header();
    file->rewindRecords();
    reader->resize(iRTelemetryReader::CarCount);
    reader->setDiskLoading(true);
    reader->updateCarList();
    reader->compileVariables(&header, file->varHeaders());
    reader->setCounting(!laps);

    qint64 bytesRead = 0;
    while (char *record = file->nextRecord()) {
        reader->prepareTick();
        reader->getRawData(&header, file->varHeaders(), record);
        reader->processData();
        if (laps && reader->isMyLapReady())
            laps->addMyLap(reader);

        bytesRead += header.bufLen;
        if (isTooLarge(reader->collectedLaps(), bytesRead, allowedBytes))
            return false;
    }
    return true;
}

/// Likewise, but a recording that is refused for its size takes little memory: one that gets
/// suspicious has its laps counted first.
bool readRecords(IbtFile *file, iRTelemetryReader *reader, LapList *laps)
{
    if (readRecords(file, reader, laps, UncountedBytes))
        return true;
    laps->clear();
    return readRecords(file, reader, nullptr, AllowedBytes)
        && readRecords(file, reader, laps, AllowedBytes);
}

/// Reads all laps of a recording. Returns what went wrong, or a null string.
QString readLaps(const QString &fileName, LapList *laps)
{
    IbtFile file(fileName.toLocal8Bit().constData());
    if (!file.isOpen())
        return QLatin1String("Can't open file ") % fileName;
    if (!file.readHeader())
        return QStringLiteral("IBT import error:  Error reading irsdk_header");
    if (!file.readDiskSubHeader())
        return QStringLiteral("IBT import error:  Error reading irsdk_diskSubHeader");
    // Both claims first: reading a text is for nothing where the table is missing.
    if (!file.holdsSessionInfo())
        return sessionInfoError();
    if (!file.holdsVarHeaders())
        return varHeaderError();
    if (!file.readSessionInfo())
        return sessionInfoError();
    iRTelemetryReader reader;
    reader.setYaml(file.sessionInfo());
    if (!file.readVarHeaders())
        return varHeaderError();

    if (!readRecords(&file, &reader, laps))
        return varHeaderError();
    reader.processMyLap(false);
    laps->addMyLap(&reader);
    return QString();
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
    message(QLatin1String("Importing file ") % fileName % QLatin1String(" ..."), LevelInfo);
    message(QLatin1String("Using format ") % format, LevelInfo);
    QElapsedTimer timer;
    timer.start();

    LapList laps;
    QString error;
    try {
        error =
            format == ibtFormat() ? readLaps(fileName, &laps) : QStringLiteral("Unknown format");
    } catch (const std::bad_alloc &) {
        // The file backs what was asked for, but this machine does not.
        error = varHeaderError();
    }
    if (!error.isNull()) {
        message(error, LevelError);
        return {};
    }

    message(QLatin1String("Done in ") % QString::number(timer.elapsed())
                % QLatin1String(" ms; Laps readed ") % QString::number(laps.count()),
            LevelInfo);
    QVector<ZEP::Lap *> result = laps.take();
    for (ZEP::Lap *lap : qAsConst(result)) {
        lap->setSource(sourceName());
        lap->setPlugin(pluginName());
    }
    return result;
}
