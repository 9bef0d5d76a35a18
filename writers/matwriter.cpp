#include "writers/matwriter.h"

#include "writers/jsonvalues.h"
#include "writers/matvariable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <array>
#include <limits>

namespace {

/// What a reader has to be able to address in one variable.
constexpr qint64 LargestVariable = std::numeric_limits<qint32>::max();

/// Missing samples become NaN, the only sign for them that others know.
void markMissing(ZEP::Channel &channel)
{
    for (double &sample : channel.data) {
        if (!ZEP::Channel::isValidSample(sample))
            sample = std::numeric_limits<double>::quiet_NaN();
    }
}

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

    MatVariable samples(const ZEP::Lap &lap) const
    {
        static QVector<double> none;
        MatVariable result = matStruct(m_fields);
        for (int i = 0; i < m_channels.size(); ++i) {
            const auto channel = m_channels.at(i).in(lap);
            if (channel)
                markMissing(*channel);
            setMatField(result, 0, i, matColumn(channel ? channel->data : none));
        }
        return result;
    }

    MatVariable units(const ZEP::Lap &lap) const
    {
        MatVariable result = matStruct(m_fields);
        for (int i = 0; i < m_channels.size(); ++i) {
            const auto channel = m_channels.at(i).in(lap);
            setMatField(result, 0, i, matValue(channel ? channel->unit() : QString()));
        }
        return result;
    }

private:
    QVector<ChosenChannel> m_channels;
    QStringList m_fields;
};

/// Whether the file at \a path contains its header and one whole variable: libmatio does not check
/// every result of a write.
bool isWhole(const QString &path)
{
    constexpr int headerSize = 128;
    std::array<quint32, 2> tag{};
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(headerSize)
        && file.read(reinterpret_cast<char *>(tag.data()), sizeof tag) == sizeof tag
        && file.size() == headerSize + qint64(sizeof tag) + tag[1];
}

} // namespace

MatWriter::MatWriter(OutputFile &file, const QVector<ChosenChannel> &channels,
                     const QString &fileName)
    : m_file(file), m_channels(channels), m_fileName(fileName)
{
}

void MatWriter::write(int number, std::unique_ptr<ZEP::Lap> lap)
{
    m_laps.emplace_back(number, std::move(lap));
}

bool MatWriter::writeTo(const QString &path) const
{
    const ChannelStructs recorded(m_channels, false);
    const ChannelStructs calculated(m_channels, true);
    MatVariable laps = matStruct({"file", "lap", "header", "values", "calculatedValues", "channels",
                                  "units", "calculatedChannels", "calculatedUnits"},
                                 m_laps.size(), "laps");
    for (std::size_t i = 0; i < m_laps.size(); ++i) {
        const auto &[number, lap] = m_laps[i];
        const QJsonObject header = headerJson(*lap);
        int field = 0;
        setMatField(laps, i, field++, matValue(m_fileName));
        setMatField(laps, i, field++, matValue(number));
        setMatField(laps, i, field++, matValue(header.value(QLatin1String("header"))));
        setMatField(laps, i, field++, matValue(header.value(QLatin1String("values"))));
        setMatField(laps, i, field++, matValue(header.value(QLatin1String("calculatedValues"))));
        setMatField(laps, i, field++, recorded.samples(*lap));
        setMatField(laps, i, field++, recorded.units(*lap));
        setMatField(laps, i, field++, calculated.samples(*lap));
        setMatField(laps, i, field++, calculated.units(*lap));
    }

    mat_t *mat =
        Mat_CreateVer(QFile::encodeName(path).constData(), "MATLAB 5.0 MAT-file", MAT_FT_MAT5);
    if (!mat)
        return false;
    const int written = Mat_VarWrite(mat, laps.get(), MAT_COMPRESSION_NONE);
    const int closed = Mat_Close(mat);
    return written == 0 && closed == 0 && isWhole(path);
}

bool MatWriter::finish(QString *problem)
{
    qint64 size = 0;
    for (const auto &[number, lap] : m_laps) {
        for (const ChosenChannel &chosen : qAsConst(m_channels)) {
            if (const auto channel = chosen.in(*lap))
                size += channel->data.size() * qint64(sizeof(double));
        }
    }
    if (size > LargestVariable) {
        *problem = QStringLiteral("a MAT file cannot contain more than 2 GB; use --split, or "
                                  "choose fewer laps or channels");
        return false;
    }
    const QString path = m_file.path();
    if (!path.isEmpty()) {
        if (!writeTo(path))
            m_file.fail(QStringLiteral("not all of it was written"));
        return true;
    }
    QTemporaryFile temporary;
    if (!temporary.open() || !writeTo(QStringLiteral("/proc/self/fd/%1").arg(temporary.handle()))) {
        *problem =
            QStringLiteral("not enough space in %1 for the MAT file; free some, or set TMPDIR")
                .arg(QDir::tempPath());
        return false;
    }
    constexpr qint64 atOnce = 1 << 20;
    while (!temporary.atEnd() && m_file.isGood()) {
        const QByteArray bytes = temporary.read(atOnce);
        m_file.write(bytes.constData(), bytes.size());
    }
    return true;
}
