// Measures an import, its stages, and what an import is compared with.
#include "benchmarks/benchmarks.h"
#include "benchmarks/inputs.h"

#include <QTemporaryDir>

#include <cstdio>
#include <vector>

namespace {

bool anythingWrong = false;

const char *const Usage =
    "napammul_bench measures imports. It has the options of Google Benchmark, and these:\n"
    "  --small              run everything once, on small inputs\n"
    "  --large              include a recording of more than 4 GiB\n"
    "  --inputs=FOLDER      write the inputs here, once, and keep them\n"
    "  --recordings=FOLDER  use a real recording from here (default: NAPAMMUL_RECORDINGS)\n";

} // namespace

bool isRight(benchmark::State &state, const QString &problem)
{
    if (problem.isNull())
        return true;
    anythingWrong = true;
    state.SkipWithError(qPrintable(problem));
    return false;
}

int main(int argc, char **argv)
{
    bool small = false;
    bool large = false;
    QString folder;
    QString recordings = QString::fromLocal8Bit(qgetenv("NAPAMMUL_RECORDINGS"));
    std::vector<char *> others;
    for (int i = 0; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        const QString value = argument.section(QLatin1Char('='), 1);
        if (argument == QLatin1String("--small"))
            small = true;
        else if (argument == QLatin1String("--large"))
            large = true;
        else if (argument.startsWith(QLatin1String("--inputs=")))
            folder = value;
        else if (argument.startsWith(QLatin1String("--recordings=")))
            recordings = value;
        else
            others.push_back(argv[i]);
    }
    const QTemporaryDir temporary;
    if (folder.isEmpty())
        folder = small ? temporary.path() : QStringLiteral(NAPAMMUL_INPUTS);

    int count = int(others.size());
    benchmark::Initialize(&count, others.data());
    if (benchmark::ReportUnrecognizedArguments(count, others.data())) {
        std::fputs(Usage, stderr);
        return 2;
    }

    const Inputs inputs(folder, recordings, small, large);
    registerImports(inputs);
    registerStages(inputs, small);
    benchmark::RunSpecifiedBenchmarks();
    return anythingWrong ? 1 : 0;
}
