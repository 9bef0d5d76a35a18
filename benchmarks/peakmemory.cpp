// Imports a recording with the plug-in and prints the peak memory.
//   napammul_peak FILE
//   napammul_peak --demo FOLDER    writes the demo recording there and imports it
#include "benchmarks/importing.h"
#include "benchmarks/inputs.h"

#include <QFile>

#include <cstdio>
#include <cstring>

namespace {

/// Memory that the program, Qt and the plug-in need without an import.
constexpr qint64 AlwaysAllowed = 32 * 1024 * 1024;

/// The greatest resident size of this process so far, bytes.
qint64 peakBytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int line = text.indexOf("VmHWM:");
    return text.mid(line + 6, text.indexOf("kB", line) - line - 6).trimmed().toLongLong() * 1024;
}

} // namespace

int main(int argc, char **argv)
{
    const bool isDemo = argc == 3 && std::strcmp(argv[1], "--demo") == 0;
    if (argc != 2 && !isDemo) {
        std::fputs("usage: napammul_peak FILE | --demo FOLDER\n", stderr);
        return 2;
    }
    QByteArray fileName = argv[1];
    if (isDemo) {
        const Inputs inputs(QFile::decodeName(argv[2]), QString(), true, false);
        fileName = inputs.file(inputs.list().front());
    }

    const Laps laps = importFile(fileName);
    const qint64 peak = peakBytes();
    const qint64 samples = sampleCount(laps) * qint64(sizeof(double));
    const double ratio =
        samples == 0 ? 0.0 : double(qMax<qint64>(0, peak - AlwaysAllowed)) / double(samples);
    std::printf("records %lld laps %zu peak_bytes %lld sample_bytes %lld ratio %.4f\n",
                static_cast<long long>(recordCount(fileName)), laps.size(),
                static_cast<long long>(peak), static_cast<long long>(samples), ratio);
    return laps.empty() ? 1 : 0;
}
