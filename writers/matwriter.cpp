#include "writers/matwriter.h"

#include "writers/jsonvalues.h"
#include "writers/matoutput.h"

#include <limits>

namespace {

/// What a reader has to be able to address in one variable.
constexpr qint64 LargestVariable = std::numeric_limits<qint32>::max();

/// The recorded or calculated ones of some channels, as a struct of samples and one of units.
class ChannelStructs
{
public:
    ChannelStructs(const QVector<ChosenChannel> &channels, bool calculated)
    {
        QStringList names;
        for (const ChosenChannel &channel : channels) {
            if (channel.isCalculated != calculated)
                continue;
            m_channels.append(channel);
            names.append(channel.name);
        }
        m_fields = matFieldNames(names);
    }

    void write(const ZEP::Lap &lap, MatOutput &out) const
    {
        QVector<QSharedPointer<ZEP::Channel>> channels; // null where the lap has none
        for (const ChosenChannel &chosen : m_channels)
            channels.append(chosen.in(lap));
        out.structs(m_fields, 1, [&](MatOutput &fields) {
            for (const auto &channel : channels)
                fields.column(channel ? channel->data : QVector<double>());
        });
        out.structs(m_fields, 1, [&](MatOutput &fields) {
            for (const auto &channel : channels)
                fields.value(channel ? channel->unit() : QString());
        });
    }

private:
    QVector<ChosenChannel> m_channels;
    QStringList m_fields;
};

} // namespace

MatWriter::MatWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
                     const QString &fileName)
    : m_buffer(file), m_channels(channels), m_fileName(fileName)
{
}

void MatWriter::write(int number, std::unique_ptr<ZEP::Lap> lap)
{
    m_laps.emplace_back(number, std::move(lap));
}

void MatWriter::writeLaps(MatOutput &out) const
{
    const ChannelStructs recorded(m_channels, false);
    const ChannelStructs calculated(m_channels, true);
    for (const auto &[number, lap] : m_laps) {
        const QJsonObject header = headerJson(*lap);
        out.value(m_fileName);
        out.value(number);
        for (const char *key : {"header", "values", "calculatedValues"})
            out.value(header.value(QLatin1String(key)));
        recorded.write(*lap, out);
        calculated.write(*lap, out);
    }
}

bool MatWriter::finish(QString *problem)
{
    MatOutput counted;
    writeLaps(counted);
    constexpr qint64 headSize = 1024; // more than a file has before its laps
    if (counted.size() > LargestVariable - headSize) {
        *problem = QStringLiteral("a MAT file cannot contain more than 2 GB; use --split, or "
                                  "choose fewer laps or channels");
        return false;
    }
    const QStringList fields{"file",
                             "lap",
                             "header",
                             "values",
                             "calculatedValues",
                             "channels",
                             "units",
                             "calculatedChannels",
                             "calculatedUnits"};
    MatOutput out(m_buffer);
    out.fileHeader();
    out.variable(
        "laps", fields, int(m_laps.size()), [&](MatOutput &laps) { writeLaps(laps); },
        counted.size());
    m_buffer.flush();
    return true;
}
