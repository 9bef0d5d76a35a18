#include "writers/csvwriter.h"

#include "analysis/ticktrace.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <set>

namespace {

/// Ticks of \a lap; a channel may have fewer samples.
int tickCount(const ZEP::Lap &lap)
{
    int count = 0;
    for (const QString &name : lap.getAvailableChannels())
        count = std::max(count, lap.channel(name)->data.size());
    for (const QString &name : lap.getAvailableCalculatedChannels())
        count = std::max(count, lap.calculatedChannel(name)->data.size());
    return count;
}

/// The unit of \a channel in the first of \a laps that has it.
QString unitOf(const ChosenChannel &channel, const QVector<const ZEP::Lap *> &laps)
{
    for (const ZEP::Lap *lap : laps) {
        if (const auto samples = channel.in(*lap))
            return samples->unit();
    }
    return QString();
}

/// Whether a spreadsheet would take \a text for something to calculate or to run, or a reader would
/// take an apostrophe of its own for one that was put before it.
bool needsApostrophe(const QByteArray &text)
{
    return !text.isEmpty() && QByteArray("=+-@\t\r\n'").contains(text.front());
}

char *writeInteger(char *place, int number)
{
    return std::to_chars(place, place + OutputBuffer::NumberSize, number).ptr;
}

} // namespace

CsvWriter::CsvWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
                     const QVector<const ZEP::Lap *> &laps, const Form &form)
    : m_buffer(file), m_channels(channels), m_form(form)
{
    writeHeader(laps);
}

QByteArray CsvWriter::field(const QString &text) const
{
    QByteArray bytes = text.toUtf8();
    if (needsApostrophe(bytes))
        bytes.prepend('\'');
    if (bytes.contains(m_form.separator) || bytes.contains('"') || bytes.contains('\n')
        || bytes.contains('\r'))
        return '"' + bytes.replace('"', "\"\"") + '"';
    return bytes;
}

void CsvWriter::writeHeader(const QVector<const ZEP::Lap *> &laps)
{
    QByteArray titles = QByteArray("lap") + m_form.separator + "tick";
    QByteArray unitRow(1, m_form.separator);
    std::set<QString> taken{QStringLiteral("lap"), QStringLiteral("tick")};
    if (m_form.hasTime) {
        titles += m_form.separator;
        titles += m_form.units == Units::Header ? "time [s]" : "time";
        unitRow += QByteArray(1, m_form.separator) + 's';
        taken.insert({QStringLiteral("time"), QStringLiteral("time [s]")});
    }
    for (const ChosenChannel &channel : qAsConst(m_channels)) {
        const QString unit = unitOf(channel, laps);
        const QString behind = m_form.units == Units::Header && !unit.isEmpty()
            ? QString(QLatin1String(" [") % unit % QLatin1Char(']'))
            : QString();
        // Readers look columns up by the title, or by the name in it, so each occurs only once.
        QString name = channel.name;
        while (taken.count(name) > 0 || taken.count(name % behind) > 0)
            name += QLatin1String(channel.isCalculated ? "_calculated" : "_channel");
        taken.insert({name, name % behind});
        titles += m_form.separator + field(name % behind);
        unitRow += m_form.separator + field(unit);
    }
    m_buffer.append(titles + '\n');
    if (m_form.units == Units::Row)
        m_buffer.append(unitRow + '\n');
}

char *CsvWriter::writeRow(char *place, int tick, std::vector<Column> &columns) const
{
    for (Column &column : columns) {
        if (tick >= column.size || !ZEP::Channel::isValidSample(column.samples[tick])) {
            *place++ = m_form.separator;
            continue;
        }
        // Many channels hardly ever change.
        const double sample = column.samples[tick];
        if (std::memcmp(&sample, &column.last, sizeof sample) != 0) {
            column.last = sample;
            column.textSize = int(OutputBuffer::writeNumber(column.text + 1, sample) - column.text);
        }
        std::memcpy(place, column.text, sizeof column.text);
        place += column.textSize;
    }
    return place;
}

void CsvWriter::write(int number, std::unique_ptr<ZEP::Lap> lap)
{
    std::vector<Column> columns;
    const auto add = [&](const double *samples, int size) {
        Column column{};
        column.samples = samples;
        column.size = size;
        column.text[0] = m_form.separator;
        column.text[1] = '0';
        column.textSize = 2;
        columns.push_back(column);
    };
    QVector<double> times;
    if (m_form.hasTime) {
        times = tickTrace(*lap, trackLength(*lap)).time;
        add(times.constData(), times.size());
    }
    for (const ChosenChannel &chosen : qAsConst(m_channels)) {
        const auto channel = chosen.in(*lap);
        add(channel ? channel->data.constData() : nullptr, channel ? channel->data.size() : 0);
    }
    char lapText[OutputBuffer::NumberSize];
    const auto lapTextSize = std::size_t(writeInteger(lapText, number) - lapText);
    const std::size_t longestRow =
        2 * OutputBuffer::NumberSize + 2 + columns.size() * sizeof Column::text;
    const int ticks = tickCount(*lap);
    for (int tick = 0; tick < ticks; ++tick) {
        char *place = m_buffer.room(longestRow);
        std::memcpy(place, lapText, lapTextSize);
        place += lapTextSize;
        *place++ = m_form.separator;
        place = writeInteger(place, tick);
        place = writeRow(place, tick, columns);
        *place++ = '\n';
        m_buffer.appendUntil(place);
    }
}

bool CsvWriter::finish(QString *)
{
    m_buffer.flush();
    return true;
}
