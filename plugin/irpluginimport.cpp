#include "plugin/irpluginimport.h"

#include "ibt/ibtfile.h"
#include "ibt/ibtlimits.h"
#include "reader/irtelemetryreader.h"

#include <QElapsedTimer>

#include <limits>
#include <memory>
#include <new>
#include <optional>
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

    const QVector<ZEP::Lap *> &all() const { return m_laps; }
    int count() const { return m_laps.size(); }
    QVector<ZEP::Lap *> take() { return std::exchange(m_laps, {}); }

private:
    QVector<ZEP::Lap *> m_laps;
};

/// What \a laps take, in bytes.
qint64 askedBytes(const CollectedLaps &laps)
{
    constexpr qint64 SampleBytes = 8;
    constexpr qint64 ChannelBytes = 256; // beside its samples
    constexpr qint64 LapBytes = 2 * 1024;
    return laps.ticks * laps.channels * SampleBytes
        + laps.laps * (laps.channels * ChannelBytes + LapBytes);
}

/// Whether records of \a recordBytes bytes can make more of laps of \a channels channels than those
/// may take.
bool canGetOutOfProportion(qint64 channels, qint64 recordBytes)
{
    CollectedLaps most;
    most.laps = 1;
    most.ticks = 2; // a lap ends every other tick at most
    most.channels = channels;
    return askedBytes(most) > IbtLapMemory::AllowedPerRecordByte * recordBytes * most.ticks;
}

QString sessionInfoError()
{
    return QStringLiteral("IBT import error:  Failed to read sessionInfoString");
}

QString varHeaderError()
{
    return QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");
}

/// What came of a pass through all records.
struct Pass {
    qint64 recordBytes = 0;
    qint64 mostAsked = 0; ///< at any tick, since a lap that gets dropped took its bytes as well
};

/// Follows the cars through all records, from a new start. The laps go to \a laps, or are only
/// counted if there is no list. Returns nothing as soon as they take more than \a most.
std::optional<Pass> readRecords(IbtFile *file, iRTelemetryReader *reader, LapList *laps,
                                qint64 most)
{
    const irsdk_header &header = file->header();
    file->rewindRecords();
    reader->resize(iRTelemetryReader::CarCount);
    reader->setDiskLoading(true);
    reader->updateCarList();
    reader->compileVariables(&header, file->varHeaders());
    if (!laps)
        reader->startCounting();

    Pass pass;
    while (char *record = file->nextRecord()) {
        reader->prepareTick();
        reader->getRawData(&header, file->varHeaders(), record);
        reader->processData();
        if (laps && reader->isMyLapReady())
            laps->addMyLap(reader);

        pass.recordBytes += header.bufLen;
        const CollectedLaps collected = reader->collectedLaps();
        pass.mostAsked = qMax(pass.mostAsked, askedBytes(collected));
        if (pass.mostAsked > most && canGetOutOfProportion(collected.channels, header.bufLen))
            return std::nullopt;
    }
    return pass;
}

/// Reads the records into \a laps, unless those would take too much. It takes all records to tell,
/// so laps that can get out of proportion are counted before many of them are made.
bool readLapsInProportion(IbtFile *file, iRTelemetryReader *reader, LapList *laps)
{
    constexpr qint64 Uncounted = 32 * IbtLapMemory::MB;
    constexpr qint64 Countable = std::numeric_limits<qint64>::max() / 4;

    if (readRecords(file, reader, laps, Uncounted))
        return true;
    laps->clear();
    const std::optional<Pass> counted = readRecords(file, reader, nullptr, Countable);
    if (!counted)
        return false;
    // Binding the third time, whatever else the file may hold by then.
    const qint64 allowed = qMax<qint64>(counted->recordBytes * IbtLapMemory::AllowedPerRecordByte,
                                        IbtLapMemory::AlwaysAllowed);
    return counted->mostAsked <= allowed && readRecords(file, reader, laps, allowed);
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

    if (!readLapsInProportion(&file, &reader, laps))
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
    try {
        message(QLatin1String("Importing file ") % fileName % QLatin1String(" ..."), LevelInfo);
        message(QLatin1String("Using format ") % format, LevelInfo);
        QElapsedTimer timer;
        timer.start();

        LapList laps;
        const QString error =
            format == ibtFormat() ? readLaps(fileName, &laps) : QStringLiteral("Unknown format");
        if (!error.isNull()) {
            message(error, LevelError);
            return {};
        }
        for (ZEP::Lap *lap : laps.all()) {
            lap->setSource(sourceName());
            lap->setPlugin(pluginName());
        }
        message(QLatin1String("Done in ") % QString::number(timer.elapsed())
                    % QLatin1String(" ms; Laps readed ") % QString::number(laps.count()),
                LevelInfo);
        return laps.take();
    } catch (const std::bad_alloc &) {
        // The file backs what was asked for, but this machine does not.
    }
    try {
        message(varHeaderError(), LevelError);
    } catch (const std::bad_alloc &) {
        // Not even for words.
    }
    return {};
}
