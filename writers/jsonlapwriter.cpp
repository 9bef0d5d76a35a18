#include "writers/jsonlapwriter.h"

#include "writers/jsonvalues.h"

#include <QJsonArray>

#include <cmath>
#include <cstring>

namespace {

QByteArray compact(const QJsonValue &value)
{
    return jsonBytes(value, QJsonDocument::Compact);
}

QByteArray quoted(const QString &text)
{
    const QByteArray array = compact(QJsonArray{text});
    return array.mid(1, array.size() - 2);
}

char *writeText(char *place, const char *text)
{
    const std::size_t size = std::strlen(text);
    std::memcpy(place, text, size);
    return place + size;
}

} // namespace

JsonLapWriter::JsonLapWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
                             const QString &fileName)
    : m_buffer(file), m_fileName(quoted(fileName))
{
    for (const ChosenChannel &channel : channels)
        m_columns.push_back({channel, quoted(channel.name), QString(), QByteArray()});
    m_buffer.append("[");
}

void JsonLapWriter::writeSamples(const QVector<double> &samples)
{
    bool isFirst = true;
    for (const double sample : samples) {
        char *place = m_buffer.room(OutputBuffer::NumberSize + 1);
        if (!isFirst)
            *place++ = ',';
        isFirst = false;
        if (!ZEP::Channel::isValidSample(sample))
            place = writeText(place, "null");
        else if (std::isinf(sample))
            place = writeText(place, "\"-inf\""); // as jsonBytes() has it
        else if (sample == 0 && std::signbit(sample))
            place = writeText(place, "-0.0"); // readers take "-0" for an integer, without a sign
        else
            place = OutputBuffer::writeNumber(place, sample);
        m_buffer.appendUntil(place);
    }
}

void JsonLapWriter::writeChannels(const ZEP::Lap &lap, bool calculated)
{
    m_buffer.append("{");
    bool isFirst = true;
    for (Column &column : m_columns) {
        if (column.channel.isCalculated != calculated)
            continue;
        const auto channel = column.channel.in(lap);
        if (!isFirst)
            m_buffer.append(",");
        isFirst = false;
        const QString unit = channel ? channel->unit() : QString();
        if (column.head.isEmpty() || column.unit != unit) {
            column.unit = unit;
            column.head = column.name + ":{\"unit\":" + quoted(unit) + ",\"samples\":[";
        }
        m_buffer.append(column.head);
        if (channel)
            writeSamples(channel->data);
        m_buffer.append("]}");
    }
    m_buffer.append("}");
}

void JsonLapWriter::write(int number, std::unique_ptr<ZEP::Lap> lap)
{
    const QJsonObject header = headerJson(*lap);
    m_buffer.append(m_isFirst ? "\n" : ",\n");
    m_isFirst = false;
    m_buffer.append("{\"file\":" + m_fileName + ",\"lap\":" + QByteArray::number(number));
    for (const QString &key : header.keys())
        m_buffer.append(',' + quoted(key) + ':' + compact(header.value(key)));
    m_buffer.append(",\"channels\":");
    writeChannels(*lap, false);
    m_buffer.append(",\"calculatedChannels\":");
    writeChannels(*lap, true);
    m_buffer.append("}");
}

bool JsonLapWriter::finish(QString *)
{
    m_buffer.append("\n]\n");
    m_buffer.flush();
    return true;
}
