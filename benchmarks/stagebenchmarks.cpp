#include "benchmarks/benchmarks.h"

#include "benchmarks/importing.h"
#include "benchmarks/inputs.h"
#include "benchmarks/stopwatch.h"
#include "ibt/ibtfile.h"
#include "reader/irtelemetryreader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <malloc.h>

namespace {

/// The head of a recording and its first records, in memory.
class LoadedRecording
{
public:
    LoadedRecording(const QByteArray &fileName, int records) : m_file(fileName.constData())
    {
        const bool good = m_file.isOpen() && m_file.readHeader() && m_file.readDiskSubHeader()
            && m_file.readSessionInfo() && m_file.readVarHeaders();
        if (!good)
            qFatal("cannot read %s", fileName.constData());
        for (int i = 0; i < records; ++i) {
            if (const char *record = m_file.nextRecord())
                m_records.emplace_back(record, record + m_file.header().bufLen);
        }
    }

    const irsdk_header &header() const { return m_file.header(); }
    const irsdk_varHeader *varHeaders() const { return m_file.varHeaders(); }
    const char *sessionInfo() const { return m_file.sessionInfo(); }
    std::vector<std::vector<char>> &records() { return m_records; }

private:
    IbtFile m_file;
    std::vector<std::vector<char>> m_records;
};

/// A reader that has been prepared for \a recording as an import prepares it.
std::unique_ptr<iRTelemetryReader> preparedReader(const LoadedRecording &recording)
{
    auto reader = std::make_unique<iRTelemetryReader>();
    reader->setDiskLoading(true);
    reader->setYaml(recording.sessionInfo());
    reader->updateCarList();
    reader->compileVariables(&recording.header(), recording.varHeaders());
    return reader;
}

void feed(iRTelemetryReader *reader, LoadedRecording *recording)
{
    for (std::vector<char> &record : recording->records()) {
        reader->prepareTick();
        reader->getRawData(&recording->header(), recording->varHeaders(), record.data());
        reader->processData();
    }
}

/// Runs \a work on what \a prepare makes; only \a work is measured.
template <typename Prepare, typename Work>
void measurePrepared(benchmark::State &state, Prepare prepare, Work work)
{
    for (auto _ : state) {
        auto prepared = prepare();
        const Stopwatch stopwatch;
        work(prepared.get());
        state.SetIterationTime(stopwatch.seconds());
    }
}

void setRecords(benchmark::State &state, std::size_t records)
{
    state.counters["records"] = benchmark::Counter(
        double(std::int64_t(records) * state.iterations()), benchmark::Counter::kIsRate);
}

/// Headers, session text and cars: everything before the records.
void open(benchmark::State &state, const QByteArray &fileName)
{
    const auto read = [&fileName] {
        IbtFile file(fileName.constData());
        iRTelemetryReader reader;
        reader.setDiskLoading(true);
        if (!file.isOpen() || !file.readHeader() || !file.readDiskSubHeader()
            || !file.readSessionInfo())
            return false;
        reader.setYaml(file.sessionInfo());
        reader.updateCarList();
        return reader.hasMyCar() && file.readVarHeaders();
    };
    if (!isRight(state, read() ? QString() : QStringLiteral("no headers")))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(read());
}

void text(benchmark::State &state, int bytes)
{
    const QByteArray session = sessionText(bytes);
    const auto read = [&session] {
        auto tree = std::make_unique<TYamlTree>();
        tree->setYaml(session.constData());
        return tree;
    };
    const QString name = read()->pathValue(QStringLiteral("DriverInfo/Drivers/3/UserName"));
    const QString type = read()->pathValue(QStringLiteral("SessionInfo/Sessions/0/SessionType"));
    const bool isSame = name == QLatin1String("Driver 3") && type == QLatin1String("Practice");
    if (!isRight(state, isSame ? QString() : QStringLiteral("another tree")))
        return;
    // Memory is returned to the system, so that a short text needs new pages just like a long one.
    double processor = 0.0;
    for (auto _ : state) {
        malloc_trim(0);
        const Stopwatch stopwatch;
        const auto tree = read();
        state.SetIterationTime(stopwatch.seconds());
        processor += stopwatch.processorSeconds();
    }
    state.counters["processor_seconds"] =
        benchmark::Counter(processor, benchmark::Counter::kAvgIterations);
    state.SetBytesProcessed(std::int64_t(session.size()) * state.iterations());
}

/// The four calls of a tick, over records that are in memory.
void ticks(benchmark::State &state, const QByteArray &fileName, int lapTicks)
{
    LoadedRecording recording(fileName, lapTicks);
    const auto prepare = [&recording] { return preparedReader(recording); };
    const auto work = [&recording](iRTelemetryReader *reader) { feed(reader, &recording); };

    const auto reader = prepare();
    work(reader.get());
    const int myCar = reader->myCarIdx();
    const auto ticked = reader->car(myCar).current.lapDistPct >= 0;
    if (!isRight(state, ticked ? QString() : QStringLiteral("no tick was taken")))
        return;
    measurePrepared(state, prepare, work);
    setRecords(state, recording.records().size());
}

/// Turns the records of a lap into columns.
void columns(benchmark::State &state, const QByteArray &fileName, int lapTicks)
{
    LoadedRecording recording(fileName, lapTicks);
    irsdk_header header = recording.header();
    QVector<QString> names;
    QVector<QString> units;
    for (int v = 0; v < header.numVars; ++v) {
        names.append(QString::fromLatin1(recording.varHeaders()[v].name).toLower());
        units.append(QString::fromLatin1(recording.varHeaders()[v].unit));
    }
    const VariableLayout layout(header, recording.varHeaders(), names, units);
    const auto work = [&](ZEP::Lap *lap) {
        PendingRecords pending;
        for (const std::vector<char> &record : recording.records()) {
            pending.append(record.data(), layout);
            if (pending.isFull())
                pending.flushInto(lap, layout);
        }
        pending.flushInto(lap, layout);
    };

    ZEP::Lap lap;
    work(&lap);
    const auto ticksOfLap = lap.channel(QStringLiteral("sessiontick"));
    const int last = int(recording.records().size()) - 1;
    const bool isSame = lap.size() == last + 1 && ticksOfLap
        && ticksOfLap->sample(last) - ticksOfLap->sample(0) == last;
    if (!isRight(state, isSame ? QString() : QStringLiteral("another lap")))
        return;
    measurePrepared(
        state, [] { return std::make_unique<ZEP::Lap>(); }, work);
    setRecords(state, recording.records().size());
}

/// Closes a lap whose samples are already in its channels.
void finish(benchmark::State &state, const QByteArray &fileName, int lapTicks)
{
    LoadedRecording recording(fileName, lapTicks);
    const auto prepare = [&recording] {
        auto reader = preparedReader(recording);
        feed(reader.get(), &recording);
        reader->myLap();
        return reader;
    };
    const auto work = [](iRTelemetryReader *reader) { reader->processMyLap(true); };

    const auto reader = prepare();
    work(reader.get());
    const bool isFinished = reader->isMyLapReady() && reader->myLap()->size() == lapTicks
        && !reader->myLap()->channel(QStringLiteral("sessionnum"));
    if (!isRight(state, isFinished ? QString() : QStringLiteral("no finished lap")))
        return;
    measurePrepared(state, prepare, work);
}

} // namespace

void registerStages(const Inputs &inputs, bool small)
{
    const int lapTicks = small ? 60 : 5400;
    const int iterations = small ? 1 : 0;
    const auto added = [=](const QString &name, auto run) {
        benchmark::internal::Benchmark *registered =
            benchmark::RegisterBenchmark(qPrintable(name), run);
        registered->Unit(benchmark::kMicrosecond);
        if (iterations > 0)
            registered->Iterations(iterations);
        return registered;
    };

    for (const auto &[size, bytes] :
         {std::pair("15-kb", 15000), std::pair("500-kb", 500000), std::pair("10-mb", 10000000)}) {
        added(QLatin1String("text/") % QLatin1String(size) % QLatin1String("/tree"),
              [bytes = small ? std::min(bytes, 500000) : bytes](benchmark::State &state) {
                  text(state, bytes);
              })
            ->UseManualTime();
    }
    for (const Input &input : inputs.list()) {
        const auto file = [&inputs, &input] { return inputs.file(input); };
        const QString &name = input.name;
        const bool isDriven = input.expected.has_value();
        if (!isDriven) {
            added(QLatin1String("open/") % name % QLatin1String("/headers-and-text"),
                  [=](benchmark::State &state) { open(state, file()); });
        }
        if (name == QLatin1String("lap-variables") || name == QLatin1String("garage")) {
            added(QLatin1String("tick/") % name % QLatin1String("/four-calls"),
                  [=](benchmark::State &state) { ticks(state, file(), lapTicks); })
                ->UseManualTime();
        }
        if (name == QLatin1String("20k-records") || name == QLatin1String("1000-variables")) {
            added(QLatin1String("columns/") % name % QLatin1String("/one-lap"),
                  [=](benchmark::State &state) { columns(state, file(), lapTicks); })
                ->UseManualTime();
            added(QLatin1String("finish/") % name % QLatin1String("/one-lap"),
                  [=](benchmark::State &state) { finish(state, file(), lapTicks); })
                ->UseManualTime();
        }
    }
}
