// Input: a variable table, then the bytes of a record. Both ways to read the record must agree with
// each other and with the plain importer, value by value.

#include "fuzz/bytesource.h"
#include "fuzz/require.h"
#include "reader/irtelemetryreader.h"
#include "tests/reference/reader.h"
#include "tests/support/comparelaps.h"
#include "tests/support/samebits.h"

#include <memory>

namespace {

constexpr std::array Names = {"SessionTime",
                              "SessionNum",
                              "SessionState",
                              "IsOnTrack",
                              "OnPitRoad",
                              "Lap",
                              "LapDistPct",
                              "lapdistpct",
                              "LapCurrentLapTime",
                              "LapLastLapTime",
                              "Speed",
                              "CarIdxLap",
                              "CarIdxOnPitRoad",
                              "FullTelemetry",
                              "a",
                              "",
                              "\xc4",
                              "FuelLevel"};
constexpr std::array<std::int32_t, 13> Offsets = {
    0, 1, 3, 4, 7, 8, 15, 16, 60, -1, -8, 0x7fffffff, -0x7fffffff - 1};
constexpr std::array<std::int32_t, 10> Counts = {1, 1, 2, 3, 64, 0, -1, 0x7fffffff, -0x7fffffff - 1,
                                                 65};

std::int32_t anyType(ByteSource *source)
{
    const int choice = source->below(10);
    return choice < 9 ? choice - 1 : source->take<std::int32_t>();
}

/// One of \a usual, or any other number.
template <std::size_t Size>
std::int32_t anyNumber(ByteSource *source, const std::array<std::int32_t, Size> &usual)
{
    const int choice = source->below(int(Size) + 4);
    if (choice < int(Size))
        return usual[std::size_t(choice)];
    return choice == int(Size) ? source->take<std::int32_t>() : source->take<std::uint8_t>();
}

template <std::size_t Size>
void fillField(char (&field)[Size], const QByteArray &text)
{
    std::memcpy(field, text.constData(), qMin(Size, std::size_t(text.size())));
}

irsdk_varHeader anyVariable(ByteSource *source)
{
    irsdk_varHeader variable{};
    variable.type = anyType(source);
    variable.offset = anyNumber(source, Offsets);
    variable.count = anyNumber(source, Counts);
    const int name = source->below(int(Names.size()) + 1);
    fillField(variable.name,
              name < int(Names.size()) ? QByteArray(Names[std::size_t(name)]) : source->bytes(32));
    fillField(variable.unit, source->below(4) == 0 ? source->bytes(32) : QByteArray("%"));
    return variable;
}

QVector<QString> textsOf(const QVector<irsdk_varHeader> &table, bool units)
{
    QVector<QString> texts;
    for (const irsdk_varHeader &variable : table) {
        const char *field = units ? variable.unit : variable.name;
        const QString text = QString::fromLatin1(field, int(qstrnlen(field, 32)));
        texts.append(units ? text : text.toLower());
    }
    return texts;
}

QString tickDifference(const TickValues &a, const TickValues &b)
{
    const bool same = sameBits(a.lapDistPct, b.lapDistPct) && a.sessionState == b.sessionState
        && a.lap == b.lap && a.isOnTrack == b.isOnTrack && a.onPitRoad == b.onPitRoad
        && sameBits(a.lapLastLapTime, b.lapLastLapTime)
        && sameBits(a.lapCurrentLapTime, b.lapCurrentLapTime) && a.isSlow == b.isSlow;
    return same ? QString() : QStringLiteral("values of the tick");
}

QString channelDifference(const ZEP::Lap &lap, const ZEP::Lap &expected)
{
    if (lap.getAvailableChannels() != expected.getAvailableChannels())
        return QStringLiteral("names of channels");
    for (const QString &name : lap.getAvailableChannels()) {
        const auto channel = lap.channel(name);
        const QString difference = bitDifference(channel->data, expected.channel(name)->data);
        if (!difference.isEmpty() || channel->unit() != expected.channel(name)->unit())
            return name % QLatin1String(": ") % difference;
    }
    return QString();
}

constexpr char OneDriver[] = "---\nDriverInfo:\n DriverCarIdx: 0\n Drivers:\n - CarIdx: 0\n"
                             "   UserName: A\n...\n";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ByteSource source(data, size);
    QVector<irsdk_varHeader> table(source.below(24));
    for (irsdk_varHeader &variable : table)
        variable = anyVariable(&source);
    irsdk_header header{};
    header.numVars = table.size();
    header.bufLen = source.below(80);
    // A separate array, exactly as long as the record, so that reading beyond it is detected.
    const auto recordBytes = std::size_t(header.bufLen);
    const auto record = std::make_unique<char[]>(recordBytes + (recordBytes == 0));
    std::memcpy(record.get(), source.bytes(header.bufLen).constData(), recordBytes);

    iRTelemetryReader literal;
    iRTelemetryReader compiled;
    reference::Reader plain;
    const auto readTick = [&](auto *reader) {
        reader->resize(1);
        reader->setDiskLoading(true);
        reader->setYaml(OneDriver);
        reader->updateCarList();
        reader->prepareTick();
    };
    readTick(&literal);
    readTick(&compiled);
    readTick(&plain);
    compiled.compileVariables(&header, table.constData());
    literal.getRawData(&header, table.constData(), record.get());
    compiled.getRawData(&header, table.constData(), record.get());
    plain.getRawData(&header, table.constData(), record.get());

    const ZEP::Sample sample = literal.sample(0);
    require(LapComparison().difference(sample, plain.sample(0)));
    require(LapComparison().difference(compiled.sample(0), plain.sample(0)));

    const VariableLayout layout(header, table.constData(), textsOf(table, false),
                                textsOf(table, true));
    const SampleSource named(sample);
    const RecordSource raw(layout, record.get());
    require(tickDifference(TickValues::from(raw), TickValues::from(named)));
    require(TickValues::sessionNumber(raw) == TickValues::sessionNumber(named), "session number");

    PendingRecords pending;
    ZEP::Lap columns;
    ZEP::Lap samples;
    ZEP::Sample marked = sample;
    marked.addValue(VariableLayout::fullTelemetryName(), VariableLayout::FullTelemetry, QString());
    for (int tick = 0; tick < 3; ++tick) {
        pending.append(record.get(), layout);
        samples.addSample(marked);
    }
    pending.flushInto(&columns, layout);
    require(channelDifference(columns, samples));
    return 0;
}
