#include "benchmarks/checks.h"

#include "ibt/ibtfile.h"

#include <QMap>

#include <cstring>

namespace {

/// Reads single values of a recording, wherever they are.
class RecordingValues
{
public:
    explicit RecordingValues(const QByteArray &fileName)
        : m_head(fileName.constData()), m_file(std::fopen(fileName.constData(), "rb"), std::fclose)
    {
        if (!m_head.isOpen() || !m_head.readHeader() || !m_head.readDiskSubHeader()
            || !m_head.readSessionInfo() || !m_head.readVarHeaders() || !m_file)
            qFatal("cannot read %s", fileName.constData());
        for (int v = 0; v < m_head.header().numVars; ++v)
            m_variables.insert(QString::fromLatin1(m_head.varHeaders()[v].name).toLower(), v);
        m_record.resize(m_head.header().bufLen);
    }

    const QMap<QString, int> &variables() const { return m_variables; }

    bool seek(qint64 index)
    {
        const qint64 place = m_head.header().varBuf[0].bufOffset + index * m_record.size();
        return std::fseek(m_file.get(), place, SEEK_SET) == 0 && next();
    }
    bool next()
    {
        return std::fread(m_record.data(), std::size_t(m_record.size()), 1, m_file.get()) == 1;
    }
    qint64 count()
    {
        std::fseek(m_file.get(), 0, SEEK_END);
        return (std::ftell(m_file.get()) - m_head.header().varBuf[0].bufOffset) / m_record.size();
    }

    /// The last element of a variable in the present record.
    double value(int variable) const
    {
        const irsdk_varHeader &header = m_head.varHeaders()[variable];
        const int last = header.type == irsdk_char ? 0 : header.count - 1;
        const char *place =
            m_record.constData() + header.offset + last * irsdk_varTypeSize(header.type);
        switch (header.type) {
        case irsdk_char:
            return *place;
        case irsdk_bool:
            return *place != 0;
        case irsdk_int:
        case irsdk_bitField:
            return load<qint32>(place);
        case irsdk_float:
            return double(load<float>(place));
        default:
            return load<double>(place);
        }
    }
    double value(const QString &name) const { return value(m_variables.value(name)); }

private:
    template <typename T>
    static T load(const char *place)
    {
        T value;
        std::memcpy(&value, place, sizeof value);
        return value;
    }

    IbtFile m_head;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> m_file;
    QMap<QString, int> m_variables;
    QByteArray m_record;
};

bool isSame(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

QString place(int lap, const QString &channel, qint64 tick)
{
    return QStringLiteral("lap %1, %2, tick %3").arg(lap).arg(channel).arg(tick);
}

} // namespace

QString checkLaps(const QByteArray &fileName, const Laps &laps,
                  const std::optional<ExpectedLaps> &expected)
{
    if (laps.empty())
        return QStringLiteral("no laps");
    if (expected && (int(laps.size()) != expected->laps || tickCount(laps) != expected->ticks)) {
        return QStringLiteral("%1 laps, %2 ticks instead of %3, %4")
            .arg(laps.size())
            .arg(tickCount(laps))
            .arg(expected->laps)
            .arg(expected->ticks);
    }

    // These differ from the file: they are dropped, calculated, or corrected at the start of a lap.
    const QStringList special{QStringLiteral("sessionnum"), QStringLiteral("lapcurrentlaptime"),
                              QStringLiteral("energybatterytomgu_klap"),
                              QStringLiteral("energymgu_klapdeploypct")};
    const QString tickName = QStringLiteral("sessiontick");
    RecordingValues recording(fileName);
    const int tickVariable = recording.variables().value(tickName, -1);
    if (tickVariable < 0)
        return QStringLiteral("no variable to find the place of a lap by");

    bool found = recording.seek(0);
    for (int l = 0; l < int(laps.size()); ++l) {
        const ZEP::Lap &lap = *laps[std::size_t(l)];
        if (lap.isEmpty())
            continue;
        const auto ticks = lap.channel(tickName);
        if (!ticks)
            return place(l, tickName, 0);
        for (const int index : {0, lap.size() / 2, lap.size() - 1}) {
            while (found && !isSame(recording.value(tickVariable), ticks->sample(index)))
                found = recording.next();
            if (!found)
                return place(l, tickName, index);
            for (auto v = recording.variables().cbegin(); v != recording.variables().cend(); ++v) {
                if (special.contains(v.key()))
                    continue;
                const auto channel = lap.channel(v.key());
                if (!channel || channel->data.size() != lap.size()
                    || !isSame(channel->sample(index), recording.value(v.value())))
                    return place(l, v.key(), index);
            }
        }
    }
    return QString();
}

QString checkSame(const Laps &laps, const reference::Import &reference)
{
    if (int(laps.size()) != reference.laps.size())
        return QStringLiteral("%1 laps instead of %2").arg(laps.size()).arg(reference.laps.size());
    for (int l = 0; l < int(laps.size()); ++l) {
        const ZEP::Lap &lap = *laps[std::size_t(l)];
        const reference::Lap &other = reference.laps.at(l);
        if (lap.getAvailableChannels() != other.channels.keys())
            return QStringLiteral("lap %1: other channels").arg(l);
        for (auto c = other.channels.cbegin(); c != other.channels.cend(); ++c) {
            const QVector<double> &data = lap.channel(c.key())->data;
            const QVector<double> &otherData = c.value()->data;
            if (data.size() != otherData.size())
                return place(l, c.key(), qMin(data.size(), otherData.size()));
            for (int i = 0; i < data.size(); ++i) {
                if (!isSame(data.at(i), otherData.at(i)))
                    return place(l, c.key(), i);
            }
        }
    }
    return QString();
}

QString checkFloor(const QByteArray &fileName, const FloorColumns &floor)
{
    RecordingValues recording(fileName);
    const qint64 count = recording.count();
    if (floor.records != count || count == 0)
        return QStringLiteral("%1 records instead of %2").arg(floor.records).arg(count);
    for (const qint64 index : {qint64(0), count - 1}) {
        recording.seek(index);
        for (auto v = recording.variables().cbegin(); v != recording.variables().cend(); ++v) {
            if (!isSame(floor.columns[std::size_t(v.value())][std::size_t(index)],
                        recording.value(v.value())))
                return place(0, v.key(), index);
        }
    }
    return QString();
}
