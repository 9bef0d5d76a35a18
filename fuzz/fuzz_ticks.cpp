// Input: a drive, described in single bytes. Three readers follow it: one with a compiled table,
// one without, and the plain one. They must find the same laps and the same states. A fourth one
// only counts the laps, and must count as many as the first one makes.

#include "fuzz/bytesource.h"
#include "fuzz/require.h"
#include "reader/irtelemetryreader.h"
#include "tests/reference/reader.h"
#include "tests/support/comparelaps.h"
#include "tests/support/samebits.h"
#include "tools/recording.h"
#include "tools/variablevalue.h"

#include <limits>

namespace {

constexpr int MaxTicks = 400;
/// Fewer than a session has, because the time that more cars take is not what is tested.
constexpr int Cars = 3;

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

constexpr std::array<float, 16> Places = {0.0f,  -0.0f,  0.3f,  0.4f, 0.5f,  0.65f, 0.66f, 0.8f,
                                          0.81f, 0.901f, 0.99f, 1.0f, -0.3f, -0.5f, -1.0f, NaN};
constexpr std::array<float, 16> Times = {0.0f,  1e-6f, 0.5f,  1.0f,  4.9f, 5.0f, 5.1f, 60.0f,
                                         -1.0f, 1e25f, 1e24f, 3e38f, Inf,  -Inf, NaN,  2147483.75f};
constexpr std::array<float, 8> Steps = {0.0f, 0.001f, 0.01f, 0.1f, 0.3f, 0.7f, -0.01f, -0.6f};
constexpr std::array<std::int32_t, 8> Laps = {-1,
                                              0,
                                              1,
                                              2,
                                              3,
                                              100,
                                              std::numeric_limits<std::int32_t>::max(),
                                              std::numeric_limits<std::int32_t>::min()};

/// What the car does, and the record of it.
class Drive
{
public:
    /// Each bit of \a choices gives one variable an unusual type.
    explicit Drive(std::uint8_t choices)
    {
        m_variables = Recording::defaultVariables();
        for (RecordingVariable &variable : m_variables) {
            if (choices & 1 && irsdk_varTypeSize(variable.type) == 4)
                variable.type = variable.type == irsdk_float ? irsdk_double : irsdk_bitField;
            choices = std::uint8_t(choices / 2);
        }
        const Recording recording = Recording::empty().variables(m_variables);
        header = recording.header();
        table = recording.variableTable();
        m_record = QByteArray(header.bufLen, '\0');
    }

    void store(const char *name, double value)
    {
        for (int v = 0; v < table.size(); ++v) {
            if (m_variables.at(v).name == name)
                storeVariableValue(m_record.data() + table.at(v).offset, table.at(v).type, value);
        }
    }

    /// Returns the record of the present tick, and moves the car on.
    QByteArray next()
    {
        store("SessionTime", time);
        store("Lap", lap);
        store("LapDistPct", double(place));
        store("LapCurrentLapTime", double(lapTime));
        const QByteArray record = m_record;
        time += 0.1;
        place += step;
        lapTime += 0.1f;
        return record;
    }

    /// Crosses the line as in a normal drive: everything starts again at once.
    void crossLine()
    {
        place = 0.001f;
        store("LapLastLapTime", double(lapTime));
        lapTime = 0.05f;
        if (lap < std::numeric_limits<std::int32_t>::max())
            ++lap;
    }

    irsdk_header header{};
    QVector<irsdk_varHeader> table;
    double time = 0.0;
    float place = 0.9f;
    float step = 0.01f;
    float lapTime = 0.0f;
    std::int32_t lap = 0;

private:
    QVector<RecordingVariable> m_variables;
    QByteArray m_record;
};

/// A reader of the product, side by side with the plain one.
class FollowedReader
{
public:
    iRTelemetryReader reader;

    QString lapDifference(reference::Reader *plain)
    {
        if (reader.isMyLapReady() != plain->isMyLapReady())
            return QStringLiteral("lap ready");
        if (!plain->isMyLapReady())
            return QString();
        const int car = plain->myCarIdx();
        return m_comparison.difference(reader.lap(car), plain->lap(car));
    }

    QString stateDifference(reference::Reader *plain, int index)
    {
        const CarTracker &car = reader.car(index);
        const reference::CarTracker &other = plain->car(index);
        for (const bool isNow : {true, false}) {
            const CarTrackerSample &is = isNow ? car.current : car.previous;
            const reference::TickState &expected = isNow ? other.current : other.previous;
            const bool same = is.lap == expected.lap && is.lapInStint == expected.lapInStint
                && is.stintCount == expected.stintCount
                && sameBits(is.lapDistPct, expected.lapDistPct)
                && sameBits(is.lapCurrentLapTime, expected.lapCurrentLapTime)
                && sameBits(is.lapLastLapTime, expected.lapLastLapTime)
                && is.sessionState == expected.sessionState && is.carStatus == expected.carStatus
                && is.sessionType == expected.sessionType
                && is.lapCompleted == expected.lapCompleted;
            if (!same)
                return QStringLiteral("state of the car");
        }
        QString difference = m_comparison.difference(car.lap, other.lap);
        if (difference.isEmpty())
            difference = m_comparison.difference(car.nextLap, other.nextLap);
        if (difference.isEmpty())
            difference = m_comparison.difference(car.sample, other.sample);
        return difference;
    }

private:
    LapComparison m_comparison;
};

void requireSameCount(const iRTelemetryReader &counting, const iRTelemetryReader &reading)
{
    const CollectedLaps count = counting.collectedLaps();
    const CollectedLaps made = reading.collectedLaps();
    require(counting.isMyLapReady() == reading.isMyLapReady(), "counted lap is ready");
    require(count.laps == made.laps && count.ticks == made.ticks && count.channels == made.channels,
            "laps as counted");
}

/// Checks that the counters of a lap that has just been closed fit those of the tick before.
void requireCounters(const CarTracker &car)
{
    const ZEP::Lap &lap = car.lap;
    require(lap.getCompleted() && lap.size() > 0, "a closed lap has samples");
    require(lap.getStintInSession() == car.previous.stintCount, "stint in session");
    require(lap.getLapInStint() == car.previous.lapInStint, "lap in stint");
    require(lap.getLapInSession() >= 0, "lap in session");
}

/// Changes what the drive records from now on, as \a byte says. False if it says something else.
bool changeDrive(Drive *drive, std::uint8_t byte, ByteSource *source)
{
    const auto choice = std::size_t(byte / 16);
    switch (byte % 16) {
    case 4:
        drive->place = Places[choice];
        break;
    case 5:
        drive->lapTime = Times[choice];
        break;
    case 6:
        drive->lap = Laps[choice % Laps.size()];
        break;
    case 7:
        drive->store("IsOnTrack", byte & 0x10 ? 1 : 0);
        drive->store("OnPitRoad", byte & 0x20 ? 1 : 0);
        break;
    case 8:
        drive->store("SessionState", double(choice % 6));
        break;
    case 9:
        drive->store("SessionNum", double(choice % 3));
        break;
    case 10:
        drive->store("LapLastLapTime", double(Times[choice]));
        break;
    case 11:
        drive->step = Steps[choice % Steps.size()];
        break;
    case 12:
        drive->place = source->take<float>();
        break;
    case 13:
        drive->lapTime = source->take<float>();
        break;
    case 14:
        drive->crossLine();
        break;
    default:
        return false;
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static constexpr std::array Types = {"Race", "Practice", "Lone Qualify", "Offline testing"};
    ByteSource source(data, size);
    const QByteArray text = Recording::plainSessionInfo(source.pick(Types), source.below(Cars));
    Drive drive(source.take<std::uint8_t>());

    FollowedReader compiled;
    FollowedReader literal;
    reference::Reader plain;
    iRTelemetryReader counting;
    const auto onAll = [&](auto action) {
        action(&counting);
        action(&compiled.reader);
        action(&literal.reader);
        action(&plain);
    };
    onAll([&text](auto *reader) {
        reader->resize(Cars);
        reader->setDiskLoading(true);
        reader->setYaml(text.constData());
        reader->updateCarList();
    });
    for (iRTelemetryReader *reader : {&compiled.reader, &counting})
        reader->compileVariables(&drive.header, drive.table.constData());
    counting.startCounting();
    const int mine = plain.myCarIdx();

    int ticks = 0;
    while (!source.isEmpty() && ticks < MaxTicks) {
        const auto byte = source.take<std::uint8_t>();
        if (changeDrive(&drive, byte, &source))
            continue;
        const auto choice = std::size_t(byte / 16);
        if (byte % 16 == 15) {
            // Looking at a car in the middle of a lap must not change anything.
            require(compiled.stateDifference(&plain, choice % 2 ? mine : 0));
            continue;
        }
        for (std::size_t tick = 0; tick <= choice; ++tick, ++ticks) {
            QByteArray record = drive.next();
            onAll([&](auto *reader) {
                reader->prepareTick();
                reader->getRawData(&drive.header, drive.table.constData(), record.data());
                reader->processData();
            });
            require(compiled.lapDifference(&plain));
            require(literal.lapDifference(&plain));
            requireSameCount(counting, compiled.reader);
            if (literal.reader.isMyLapReady())
                requireCounters(literal.reader.car(mine));
        }
    }
    onAll([](auto *reader) { reader->processMyLap(false); });
    for (const int car : {mine, 0}) {
        require(compiled.stateDifference(&plain, car));
        require(literal.stateDifference(&plain, car));
    }
    return 0;
}
