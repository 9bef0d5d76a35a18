// Writes the first inputs of all fuzz targets: fuzzseeds FOLDER makes FOLDER/<target>/*.

#include "tests/support/randomrecording.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace {

/// Longer inputs find nothing that shorter ones do not, and take more time.
constexpr int MaxSeedSize = 10 * 1024;

/// The parts of fuzz_zepimport: choices, suggestions, tables and values, an inspection, then laps.
constexpr int InspectPart = 6;
constexpr int PartCount = 13;

class SeedFolder
{
public:
    SeedFolder(const QString &folder, const char *target)
        : m_dir(folder % QLatin1Char('/') % QLatin1String(target))
    {
        m_dir.mkpath(QStringLiteral("."));
    }

    void add(const QByteArray &input)
    {
        if (input.size() > MaxSeedSize)
            return;
        QFile file(m_dir.filePath(QString::number(m_count++)));
        if (!file.open(QIODevice::WriteOnly) || file.write(input) != input.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }

private:
    QDir m_dir;
    int m_count = 0;
};

/// A start, three short laps and part of another.
QByteArray shortSession(const QByteArray &type)
{
    Recording recording;
    recording.sessionInfo(Recording::plainSessionInfo(type));
    recording.set("SessionState", 1).set("LapDistPct", 0.9).set("IsOnTrack", true).ticks(2);
    recording.set("OnPitRoad", true).ticks(2).set("OnPitRoad", false).set("SessionState", 4);
    for (int lap = 0; lap < 4; ++lap) {
        recording.set("Lap", lap + 1).set("LapLastLapTime", lap < 2 ? -1.0 : 11.0);
        recording.ticks(lap < 3 ? 12 : 5, [](Recording &r, int tick) {
            r.set("LapDistPct", tick / 12.0).set("LapCurrentLapTime", 0.1 + tick);
        });
    }
    return recording.bytes();
}

/// A lap as the parts of fuzz_zepimport read one: a hundred ticks from line to line.
QByteArray drivenLap(float metresPerTick)
{
    constexpr char ticks = 100;
    const auto channel = [](char name, float step) -> QByteArray {
        // Recorded, without a unit, in equal steps from 0.
        const char form[] = {3, name, 0, 1, 0};
        QByteArray bytes(form, sizeof form);
        bytes.append(reinterpret_cast<const char *>(&step), sizeof step);
        return bytes.append('\0');
    };
    // A minute, a timed lap, completed; the track length is unknown.
    const QByteArray header = QByteArray("\x60\xea\2\1", 4) + QByteArray(2, '\0') + ticks;
    return header + '\4' + channel(0, metresPerTick) + channel(1, 0.01F) + channel(2, 0.5F)
        + channel(4, 0.7F);
}

void writeSeeds(const QString &folder)
{
    SeedFolder imports(folder, "fuzz_import");
    SeedFolder texts(folder, "fuzz_sessioninfo");
    SeedFolder shown(folder, "fuzz_zepimport");
    for (const char *type : {"Race", "Practice", "Offline testing"}) {
        imports.add(shortSession(type));
        texts.add(Recording::plainSessionInfo(type));
        shown.add(char(InspectPart) + Recording::plainSessionInfo(type));
    }
    for (std::uint32_t seed = 0; seed < 60; ++seed) {
        const RandomRecording recording(seed);
        texts.add(recording.sessionInfo());
        shown.add(char(InspectPart) + recording.sessionInfo());
        imports.add(recording.file().left(MaxSeedSize));
    }

    SeedFolder tables(folder, "fuzz_table");
    SeedFolder drives(folder, "fuzz_ticks");
    for (int seed = 0; seed < 40; ++seed) {
        QByteArray bytes;
        for (int i = 0; i < 160; ++i)
            bytes.append(static_cast<char>((seed * 37 + i * (seed + 3) * 11) >> (i % 3)));
        tables.add(bytes);
        drives.add(bytes);
        for (int part = 0; part < PartCount; ++part)
            shown.add(char(part) + bytes);
    }
    for (const char *choice :
         {"best", "all", "3,5-7", "1-99", "0", "speed", "tire*", "[lr]f*", "[z-a]"}) {
        const QByteArray typed(choice);
        // Latin-1 of that length. For laps it follows one lap, for channels one without a name.
        const QByteArray text = QByteArray("\1") + char(typed.size()) + typed;
        shown.add(QByteArray("\0\0\1\1\1\1", 6) + text);
        shown.add(QByteArray("\1\0\0\1", 4) + text);
        shown.add(QByteArray("\2", 1) + text + '\2' + text + text);
    }
    for (int part = InspectPart + 1; part < PartCount; ++part) {
        shown.add(char(part) + drivenLap(40.0F) + drivenLap(41.0F));
        shown.add(char(part) + QByteArray(3, '\1') + drivenLap(40.0F) + drivenLap(41.0F));
    }
    // A race and a practice, always on track, lap after lap.
    for (const char type : {'\0', '\1', '\2', '\3'}) {
        QByteArray drive(1, type);
        drive.append(char(0)).append(char(0)).append(char(0x18)).append(char(0x17));
        drive.append(char(0xf0)).append(char(0x48));
        for (int lap = 0; lap < 4; ++lap)
            drive.append(QByteArray(7, char(0xf0))).append(char(0x0e));
        drives.add(drive);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzzseeds FOLDER\n");
        return 2;
    }
    writeSeeds(QFile::decodeName(argv[1]));
    return 0;
}
