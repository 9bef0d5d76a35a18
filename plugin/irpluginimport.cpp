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
    ~LapList() { qDeleteAll(m_laps); }
    Q_DISABLE_COPY(LapList)

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
        const qint64 channels = lap->channels().size();
        m_channels += channels;
        m_samples += channels * lap->size();
    }

    /// Channels of all laps.
    qint64 channels() const { return m_channels; }
    qint64 samples() const { return m_samples; }
    int count() const { return m_laps.size(); }
    QVector<ZEP::Lap *> take() { return std::exchange(m_laps, {}); }

private:
    QVector<ZEP::Lap *> m_laps;
    qint64 m_channels = 0;
    qint64 m_samples = 0;
};

/// What a recording may ask for: variables laid over each other, or a lap closed every other tick,
/// could make terabytes of a small file.
bool isTooLarge(const LapList &laps, const iRTelemetryReader &reader, qint64 recordBytesRead)
{
    constexpr qint64 SampleBytes = 8;
    constexpr qint64 ChannelBytes = 256; // beside its samples
    constexpr qint64 LapBytes = 2 * 1024;
    constexpr qint64 AlwaysAllowed = 256 * 1024 * 1024;
    // Variables side by side make at most 8 bytes of each byte read.
    constexpr qint64 AllowedPerByte = 64;

    const qint64 asked = (laps.samples() + reader.collectedSamples()) * SampleBytes
        + laps.channels() * ChannelBytes + laps.count() * LapBytes;
    return asked > AlwaysAllowed && asked > recordBytesRead * AllowedPerByte;
}

QString sessionInfoError()
{
    return QStringLiteral("IBT import error:  Failed to read sessionInfoString");
}

QString varHeaderError()
{
    return QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");
}

/// Reads all laps of a recording. Returns what went wrong, or a null string.
QString readLaps(const QString &fileName, LapList *laps)
{
    iRTelemetryReader reader;
    reader.setDiskLoading(true);

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
    reader.setYaml(file.sessionInfo());
    reader.updateCarList();
    if (!file.readVarHeaders())
        return varHeaderError();

    const irsdk_header &header = file.header();
    reader.compileVariables(&header, file.varHeaders());
    qint64 recordBytesRead = 0;
    while (char *record = file.nextRecord()) {
        reader.prepareTick();
        reader.getRawData(&header, file.varHeaders(), record);
        reader.processData();
        if (reader.isMyLapReady())
            laps->addMyLap(&reader);

        recordBytesRead += header.bufLen;
        if (isTooLarge(*laps, reader, recordBytesRead))
            return varHeaderError();
    }
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
