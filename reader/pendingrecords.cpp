#include "reader/pendingrecords.h"

#include "model/lap.h"
#include "reader/variablelayout.h"

#include <algorithm>
#include <memory>

namespace {

/// Enough for a lap of four minutes of full telemetry: most laps become columns in one go, with
/// every channel allocated once and in its final size.
constexpr std::size_t MaxBytes = 16 * 1024 * 1024;

/// Records that are converted at a time. A tile stays in the second-level cache while all channels
/// take their values from it.
constexpr int TileRecords = 64;

template <typename T>
void loadColumn(double *samples, const char *records, int count, int recordBytes,
                const RecordElement &element)
{
    for (int i = 0; i < count; ++i, records += recordBytes)
        samples[i] = element.load<T>(records);
}

void convert(double *samples, const char *records, int count, int recordBytes,
             const VariableLayout::Column &column)
{
    switch (column.element.type()) {
    case irsdk_char:
        return loadColumn<qint8>(samples, records, count, recordBytes, column.element);
    case irsdk_bool:
        for (int i = 0; i < count; ++i, records += recordBytes)
            samples[i] = column.element.load<quint8>(records) != 0;
        return;
    case irsdk_int:
    case irsdk_bitField:
        return loadColumn<qint32>(samples, records, count, recordBytes, column.element);
    case irsdk_float:
        return loadColumn<float>(samples, records, count, recordBytes, column.element);
    case irsdk_double:
        return loadColumn<double>(samples, records, count, recordBytes, column.element);
    default:
        std::fill_n(samples, count, column.constant);
    }
}

/// Makes room for \a more samples. A long lap comes in many blocks, so room grows by half then.
void reserve(QVector<double> *samples, int more)
{
    const int size = samples->size();
    if (samples->capacity() - size >= more)
        return;
    samples->reserve(size < more ? size + more : size + qMax(more, size / 2));
}

} // namespace

void PendingRecords::append(const char *record, const VariableLayout &layout)
{
    m_records.insert(m_records.end(), record, record + layout.recordBytes());
    count();
}

void PendingRecords::count()
{
    ++m_count;
    ++m_recorded;
}

bool PendingRecords::isFull() const
{
    return m_records.size() >= MaxBytes;
}

void PendingRecords::flushInto(ZEP::Lap *lap, const VariableLayout &layout)
{
    if (m_count == 0)
        return;

    const QList<QString> channels = lap->getAvailableChannels();
    if (channels.isEmpty()) {
        for (const VariableLayout::Column &column : layout.columns()) {
            auto channel = std::make_unique<ZEP::Channel>();
            channel->setUnit(column.unit);
            lap->addChannel(channel.release(), column.name);
        }
        appendColumns(lap, layout);
    } else if (channels == layout.columnNames()) {
        appendColumns(lap, layout);
    } else {
        appendSamples(lap, layout);
    }
    m_records.clear();
    m_count = 0;
}

/// Appends the records to channels that are exactly the layout's columns.
void PendingRecords::appendColumns(ZEP::Lap *lap, const VariableLayout &layout) const
{
    const auto all = int(m_count); // pending records are full long before
    std::vector<QVector<double> *> channels;
    channels.reserve(layout.columns().size());
    for (const QSharedPointer<ZEP::Channel> &channel : lap->channels()) {
        channels.push_back(&channel->data);
        reserve(channels.back(), all);
    }

    const int recordBytes = layout.recordBytes();
    const char *records = m_records.data();
    std::vector<char> tile;
    for (int done = 0; done < all; done += TileRecords) {
        const int count = qMin(TileRecords, all - done);
        // All at once: channel by channel, each record would be fetched from memory on its own.
        tile.assign(records, records + qint64(count) * recordBytes);
        for (std::size_t c = 0; c < channels.size(); ++c) {
            QVector<double> &samples = *channels[c];
            const int size = samples.size();
            samples.resize(size + count);
            convert(samples.data() + size, tile.data(), count, recordBytes, layout.columns()[c]);
        }
        records += qint64(count) * recordBytes;
    }
}

/// Appends the records one by one, for a lap whose channels somebody has changed.
void PendingRecords::appendSamples(ZEP::Lap *lap, const VariableLayout &layout) const
{
    const char *record = m_records.data();
    for (qint64 i = 0; i < m_count; ++i, record += layout.recordBytes()) {
        ZEP::Sample sample;
        layout.addTo(&sample, record);
        sample.addValue(VariableLayout::fullTelemetryName(), VariableLayout::FullTelemetry,
                        QString());
        lap->addSample(sample);
    }
}

void PendingRecords::clear()
{
    m_records.clear();
    m_count = 0;
    m_recorded = 0;
}
