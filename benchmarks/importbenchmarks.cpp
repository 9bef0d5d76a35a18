#include "benchmarks/benchmarks.h"
#include "benchmarks/checks.h"
#include "benchmarks/floor.h"
#include "benchmarks/importing.h"
#include "benchmarks/inputs.h"
#include "benchmarks/stopwatch.h"
#include "plugin/zepplugininterfaceimport.h"
#include "tests/reference/importfile.h"

#include <QFile>
#include <QFileInfo>

#include <malloc.h>
#include <set>

namespace {

reference::Import importReference(const QByteArray &fileName)
{
    return reference::importFile(QFile::decodeName(fileName),
                                 plugin()->availableImportFormats().first());
}

/// Runs \a work as often as the benchmark asks. Outside the measured time, its result is destroyed
/// and free memory is returned to the system, so that every run begins like a program's first.
template <typename Work>
void measure(benchmark::State &state, const QByteArray &fileName, Work work)
{
    double processor = 0.0;
    for (auto _ : state) {
        const Stopwatch stopwatch;
        {
            const auto result = work(fileName);
            state.SetIterationTime(stopwatch.seconds());
            processor += stopwatch.processorSeconds();
        }
        malloc_trim(0);
    }
    const qint64 bytes = QFileInfo(QFile::decodeName(fileName)).size();
    state.SetBytesProcessed(bytes * state.iterations());
    state.counters["processor_seconds"] = processor;
    state.counters["records"] = benchmark::Counter(
        double(recordCount(fileName) * state.iterations()), benchmark::Counter::kIsRate);
}

/// Calls \a check once per benchmark name, because checking an import takes longer than the import.
template <typename Check>
bool isRightOnce(benchmark::State &state, const std::string &name, Check check)
{
    static std::set<std::string> checked;
    if (checked.count(name) > 0)
        return true;
    if (!isRight(state, check()))
        return false;
    checked.insert(name);
    malloc_trim(0);
    return true;
}

} // namespace

void registerImports(const Inputs &inputs)
{
    const auto add = [](const std::string &name, auto run) {
        benchmark::RegisterBenchmark(name.c_str(), run)
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (const Input &input : inputs.list()) {
        const std::string name = input.name.toStdString();
        const std::string import = "import/" + name + "/plugin";
        add(import, [=, &inputs, &input](benchmark::State &state) {
            const QByteArray file = inputs.file(input);
            if (isRightOnce(state, import,
                            [&] { return checkLaps(file, importFile(file), input.expected); }))
                measure(state, file, importFile);
        });
        const std::string floor = "floor/" + name + "/stdio";
        add(floor, [=, &inputs, &input](benchmark::State &state) {
            const QByteArray file = inputs.file(input);
            if (isRightOnce(state, floor,
                            [&] { return checkFloor(file, readFloor(file.constData())); }))
                measure(state, file,
                        [](const QByteArray &fileName) { return readFloor(fileName.constData()); });
        });
        const std::string plain = "reference/" + name + "/literal";
        add(plain, [=, &inputs, &input](benchmark::State &state) {
            const QByteArray file = inputs.file(input);
            if (isRightOnce(state, plain,
                            [&] { return checkSame(importFile(file), importReference(file)); }))
                measure(state, file, importReference);
        });
    }
}
