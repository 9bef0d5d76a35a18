#include "tests/reference/importfile.h"

#include "tests/reference/reader.h"

#include <QElapsedTimer>

#include <cstdio>
#include <cstring>

namespace reference {

namespace {

const QString PluginName = QStringLiteral("ZEP iRacing ibt import plugin");

/// False if the file cannot be opened.
bool readAll(const QString &fileName, QByteArray *content)
{
    std::FILE *file = std::fopen(fileName.toLocal8Bit().constData(), "rb");
    if (!file)
        return false;
    char block[65536];
    while (const std::size_t size = std::fread(block, 1, sizeof block, file))
        content->append(block, int(size));
    std::fclose(file);
    return true;
}

/// True if \a size bytes from \a offset on are within a file of \a fileSize bytes.
bool isInside(qint64 offset, qint64 size, qint64 fileSize)
{
    return offset >= 0 && size >= 0 && (size == 0 || offset + size <= fileSize);
}

/// Memory of the samples of \a lap.
qint64 sampleBytes(const Lap &lap)
{
    qint64 samples = 0;
    for (const auto &channel : lap.channels)
        samples += channel->data.size();
    return samples * qint64(sizeof(double));
}

/// Limits the memory of an import, in proportion to what it has read.
class Budget
{
public:
    void addRecord(qint64 bytes) { m_read += bytes; }
    void addLap(const Lap &lap) { m_laps += 2048 + 256 * lap.channels.size() + sampleBytes(lap); }
    /// True if the laps so far and \a open bytes of samples are too much.
    bool isExceededWith(qint64 open) const
    {
        return m_laps + open > qMax(qint64(256) * 1024 * 1024, 64 * m_read);
    }

private:
    qint64 m_read = 0;
    qint64 m_laps = 0;
};

/// Memory of the samples of the car's laps that no finished lap shares.
qint64 openBytes(const Reader &reader)
{
    const int i = reader.myCarIdx();
    if (i < 0 || i >= reader.carCount())
        return 0;
    const CarTracker &car = reader.car(i);
    return sampleBytes(car.nextLap) + (car.lapReady ? 0 : sampleBytes(car.lap));
}

/// The player's lap as it is now.
Lap copyOfMyLap(Reader *reader)
{
    const bool owned = reader->myCarIdx() < 0 || reader->myCarIdx() >= reader->carCount();
    Lap *lap = reader->myLap();
    const Lap copy = *lap;
    if (owned)
        delete lap;
    return copy;
}

} // namespace

Import importFile(const QString &fileName, const QString &format)
{
    Import result;
    const auto message = [&result](const QString &text, int level) {
        result.messages.append(
            {QStringLiteral("[") + PluginName + QStringLiteral(" plugin] ") + text, level});
    };
    const auto failure = [&result, &message](const QString &text) {
        message(text, -2);
        result.laps.clear();
        return result;
    };
    const QString tableError = QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");

    message(QStringLiteral("Importing file ") + fileName + QStringLiteral(" ..."), 0);
    message(QStringLiteral("Using format ") + format, 0);
    QElapsedTimer timer;
    timer.start();
    if (format != QLatin1String("iRacing binary telemetry (*.ibt)"))
        return failure(QStringLiteral("Unknown format"));

    Reader reader;
    reader.setDiskLoading(true);

    QByteArray file;
    if (!readAll(fileName, &file))
        return failure(QStringLiteral("Can't open file ") + fileName);

    irsdk_header header;
    if (file.size() < int(sizeof header))
        return failure(QStringLiteral("IBT import error:  Error reading irsdk_header"));
    std::memcpy(&header, file.constData(), sizeof header);
    if (file.size() < int(sizeof header + sizeof(irsdk_diskSubHeader)))
        return failure(QStringLiteral("IBT import error:  Error reading irsdk_diskSubHeader"));

    if (!isInside(header.sessionInfoOffset, header.sessionInfoLen, file.size()))
        return failure(QStringLiteral("IBT import error:  Failed to read sessionInfoString"));
    // The terminating zero replaces the last byte, whatever that is.
    const QByteArray text = file.mid(header.sessionInfoOffset, qMax(header.sessionInfoLen - 1, 0));
    reader.setYaml(text.constData());
    reader.updateCarList();

    const qint64 tableSize = header.numVars * qint64(sizeof(irsdk_varHeader));
    if (!isInside(header.varHeaderOffset, tableSize, file.size()))
        return failure(tableError);
    QVector<irsdk_varHeader> variables(header.numVars);
    if (tableSize > 0)
        std::memcpy(variables.data(), file.constData() + header.varHeaderOffset, size_t(tableSize));

    Budget budget;
    const qint64 recordSize = header.bufLen;
    qint64 offset = header.varBuf[0].bufOffset;
    while (offset >= 0 && recordSize > 0 && offset + recordSize <= file.size()) {
        reader.prepareTick();
        reader.getRawData(&header, variables.constData(), file.constData() + offset);
        reader.processData();
        if (reader.isMyLapReady()) {
            result.laps.append(copyOfMyLap(&reader));
            budget.addLap(result.laps.last());
        }
        budget.addRecord(recordSize);
        if (budget.isExceededWith(openBytes(reader)))
            return failure(tableError);
        offset += recordSize;
    }

    reader.processMyLap(false);
    result.laps.append(copyOfMyLap(&reader));

    message(QStringLiteral("Done in ") + QString::number(timer.elapsed())
                + QStringLiteral(" ms; Laps readed ") + QString::number(result.laps.size()),
            0);
    for (Lap &lap : result.laps) {
        lap.source = QStringLiteral("iRacing");
        lap.plugin = PluginName;
    }
    return result;
}

} // namespace reference
