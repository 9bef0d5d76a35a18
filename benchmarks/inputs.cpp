#include "benchmarks/inputs.h"

#include "benchmarks/driven.h"
#include "ibt/ibtfile.h"
#include "tools/demorecording.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace {

constexpr int LapTicks = 90 * 60;
constexpr int ShortLapTicks = 10 * 60;
constexpr qint64 HourTicks = 60 * 60 * 60;
constexpr int FullTable = 270;

bool writeDemo(const QString &fileName, double seconds)
{
    DemoOptions options;
    options.laps = 20;
    options.duration = seconds;
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && writeDemoRecording(options, &file) && file.flush();
}

/// Writes the recording \a source with all of its records repeated.
bool writeRepeated(const QString &fileName, const QString &source, int times)
{
    IbtFile recording(source.toLocal8Bit().constData());
    QFile from(source);
    QFile file(fileName);
    if (!recording.isOpen() || !recording.readHeader() || !from.open(QIODevice::ReadOnly)
        || !file.open(QIODevice::WriteOnly))
        return false;
    QByteArray whole = from.readAll();
    const int head = recording.header().varBuf[0].bufOffset;
    whole.chop((whole.size() - head) % recording.header().bufLen);
    bool good = file.write(whole) == whole.size();
    for (int i = 1; i < times && good; ++i)
        good = file.write(whole.constData() + head, whole.size() - head) == whole.size() - head;
    return good && file.flush();
}

} // namespace

Inputs::Inputs(const QString &folder, const QString &recordings, bool small, bool large)
    : m_folder(folder)
{
    QDir().mkpath(folder);
    const qint64 part = small ? 100 : 1;
    const double demoSeconds = 3600.0 / double(part);
    m_list.push_back({QStringLiteral("demo-1h"),
                      [=](const QString &file) { return writeDemo(file, demoSeconds); },
                      {}});
    const QStringList found = recordings.isEmpty()
        ? QStringList()
        : QDir(recordings).entryList({QStringLiteral("*.ibt")}, QDir::Files, QDir::Name);
    if (!found.isEmpty()) {
        const QString source = QDir(recordings).filePath(found.first());
        m_list.push_back(
            {QStringLiteral("real-x80"),
             [=](const QString &file) { return writeRepeated(file, source, small ? 1 : 80); },
             {}});
    }

    addDriven("10k-records", FullTable, 10000 / part, LapTicks);
    addDriven("20k-records", FullTable, 20000 / part, LapTicks);
    addDriven("200k-records", FullTable, 200000 / part, LapTicks);
    addDriven("2m-records", FullTable, 2000000 / part, LapTicks);
    addDriven("1000-variables", 1000, 54000 / part, LapTicks);
    addDriven("10s-laps", FullTable, HourTicks / part, ShortLapTicks);
    addDriven("one-lap", FullTable, HourTicks / part, int(HourTicks));
    addDriven("lap-variables", Recording::defaultVariables().size(), HourTicks / part, LapTicks);
    addDriven("garage", FullTable, HourTicks / part, 0);
    if (large)
        addDriven("4gib", FullTable, 5000000 / part, LapTicks);
}

void Inputs::addDriven(const char *name, int variables, qint64 records, int lapTicks)
{
    const DrivenRecording recording{variables, records, lapTicks};
    m_list.push_back({QLatin1String(name),
                      [=](const QString &fileName) { return recording.write(fileName); },
                      ExpectedLaps{recording.laps(), recording.recordedTicks()}});
}

QByteArray Inputs::file(const Input &input) const
{
    const QString fileName = QDir(m_folder).filePath(input.name + QLatin1String(".ibt"));
    if (!QFile::exists(fileName)) {
        const QString part = fileName + QLatin1String(".part");
        if (!input.write(part) || !QFile::rename(part, fileName))
            qFatal("cannot write %s", qPrintable(fileName));
    }
    return fileName.toLocal8Bit();
}

QByteArray sessionText(int bytes)
{
    QByteArray text = "---\n"
                      "WeekendInfo:\n"
                      " TrackName: testfield\n"
                      " TrackDisplayName: Test Field\n"
                      " TrackLength: 3.70 km\n"
                      "\n"
                      "DriverInfo:\n"
                      " DriverCarIdx: 3\n"
                      " Drivers:\n";
    for (int car = 0; car < 20; ++car) {
        text += " - CarIdx: " + QByteArray::number(car)
            + "\n"
              "   UserName: Driver "
            + QByteArray::number(car)
            + "\n"
              "   TeamName: Team\n"
              "   CarScreenName: Test Car\n"
              "   LicString: A 3.45\n";
    }
    text += "\nSessionInfo:\n Sessions:\n";
    for (int session = 0; text.size() < bytes; ++session) {
        text += " - SessionNum: " + QByteArray::number(session)
            + "\n"
              "   SessionType: Practice\n"
              "   ResultsPositions:\n";
        for (int car = 0; car < 20 && text.size() < bytes; ++car) {
            text += "   - Position: " + QByteArray::number(car + 1)
                + "\n"
                  "     CarIdx: "
                + QByteArray::number(car)
                + "\n"
                  "     Lap: 12\n"
                  "     Time: 83.456\n"
                  "     FastestLap: 7\n"
                  "     FastestTime: 82.9876\n"
                  "     LapsComplete: 12\n"
                  "     ReasonOutStr: Running\n";
        }
    }
    return text + "...\n";
}
