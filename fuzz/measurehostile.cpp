// measurehostile [MEGABYTES [KIND]]: prints the time and memory of imports of hostile recordings.

#include "fuzz/hostile.h"
#include "plugin/irpluginimport.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs \a work in a separate process and returns the time and memory of that process.
rusage costOf(const std::function<void()> &work)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        std::fflush(stdout);
        ::_exit(0);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    if (status != 0)
        std::printf("| ended by %d ", status);
    return usage;
}

double seconds(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

void writeFile(const HostileKind &kind, int bytes, const QString &fileName)
{
    const QByteArray recording = kind.make(bytes);
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(recording) != recording.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

void import(const QString &fileName)
{
    iRPluginImport plugin;
    const auto laps = plugin.import(fileName, plugin.availableImportFormats().constFirst(), {});
    std::printf("| %8d ", laps.size());
}

} // namespace

int main(int argc, char **argv)
{
    constexpr int Megabyte = 1024 * 1024;
    const int bytes = (argc > 1 ? std::atoi(argv[1]) : 100) * Megabyte;
    const QString onlyKind = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    const QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("hostile.ibt"));

    std::printf("| %-42s |    MB |     laps |  CPU s | peak MB | allowed MB |\n", "recording");
    std::printf("|---|---:|---:|---:|---:|---:|\n");
    for (const HostileKind &kind : hostileKinds()) {
        if (!onlyKind.isEmpty() && onlyKind != QLatin1String(kind.name))
            continue;
        costOf([&] { writeFile(kind, bytes, fileName); });
        const qint64 size = QFileInfo(fileName).size();
        std::printf("| %-42s | %5lld ", kind.name, size / Megabyte);
        const rusage cost = costOf([&] { import(fileName); });
        std::printf("| %6.1f | %7ld | %10lld |\n", seconds(cost.ru_utime) + seconds(cost.ru_stime),
                    cost.ru_maxrss / 1024, 256 + 64 * size / Megabyte);
    }
    return 0;
}
