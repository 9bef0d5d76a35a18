#include "tests/support/randomrecording.h"

#include "tests/support/randomdrive.h"
#include "tests/support/randomsessioninfo.h"
#include "tools/recording.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace {

struct Variable {
    RecordingVariable entry;
    Quantity quantity = Quantity::Nothing;
};

const QVector<Variable> &everydayVariables()
{
    static const QVector<Variable> variables = {
        {{"SessionTime", irsdk_double, "s"}, Quantity::SessionTime},
        {{"SessionTick", irsdk_int}, Quantity::SessionTick},
        {{"SessionNum", irsdk_int}, Quantity::SessionNum},
        {{"SessionState", irsdk_int, "irsdk_SessionState"}, Quantity::SessionState},
        {{"SessionTimeRemain", irsdk_double, "s"}, Quantity::SessionTimeRemain},
        {{"IsOnTrack", irsdk_bool}, Quantity::IsOnTrack},
        {{"OnPitRoad", irsdk_bool}, Quantity::OnPitRoad},
        {{"Lap", irsdk_int}, Quantity::Lap},
        {{"LapDistPct", irsdk_float, "%"}, Quantity::LapDistPct},
        {{"LapCurrentLapTime", irsdk_float, "s"}, Quantity::LapCurrentLapTime},
        {{"LapLastLapTime", irsdk_float, "s"}, Quantity::LapLastLapTime},
        {{"Speed", irsdk_float, "m/s"}, Quantity::Speed},
        {{"FuelLevel", irsdk_float, "l"}, Quantity::FuelLevel},
        {{"EnergyBatteryToMGU_KLap", irsdk_float, "J"}, Quantity::EnergyOfLap},
        {{"EnergyMGU_KLapDeployPct", irsdk_float, "%"}, Quantity::EnergyOfLap},
        {{"CarIdxLapDistPct", irsdk_float, "%", "", 64}, Quantity::LapDistPct},
        {{"CarIdxOnPitRoad", irsdk_bool, "", "", 64}, Quantity::OnPitRoad},
        {{"Yaw", irsdk_float, "rad"}, Quantity::Nothing},
        {{"Throttle", irsdk_float, "%"}, Quantity::Nothing},
        {{"EngineWarnings", irsdk_bitField, "irsdk_EngineWarnings"}, Quantity::Nothing},
        {{"SteeringWheelTorque_ST", irsdk_float, "N*m", "", 6}, Quantity::Nothing},
    };
    return variables;
}

constexpr std::array OddNames = {"FullTelemetry",
                                 "FuelWeight",
                                 "dt",
                                 "LapDist",
                                 "",
                                 "CarIdx",
                                 "CarIdxFuelLevel",
                                 "CarIdxSessionTime",
                                 "CARIDXLAP",
                                 "maxLapDistPct",
                                 "A name that fills all of field..",
                                 "\xc4rger",
                                 "sessionnum ",
                                 "Zebra",
                                 "aaa",
                                 "yawOffset"};
constexpr std::array OddUnits = {"%",
                                 "",
                                 "%%",
                                 "kg",
                                 "\xb0"
                                 "C",
                                 "a unit that fills the whole field",
                                 "s"};
constexpr std::array OddTypes = {-3, 6, 99, -2147483647, 0, 1, 2, 3, 4, 5};
constexpr std::array OddCounts = {0, -1, 1, 2, 6, 64, 65, 1000000000, 2147483647, -2147483647};
constexpr std::array OddOffsets = {-1, -4, -8, -2147483647, 0,       1,          2,         3,
                                   5,  20, 60, 100,         1000000, 2147483647, 2147483640};

QByteArray otherCase(Random *random, const QByteArray &name)
{
    return chance(random, 0.5) ? name.toUpper() : name.toLower();
}

void spoil(Random *random, QVector<Variable> *table)
{
    const int i = below(random, table->size());
    Variable &variable = (*table)[i];
    RecordingVariable &entry = variable.entry;
    const int place = below(random, table->size() + 1);
    switch (below(random, 12)) {
    case 0:
        table->remove(i);
        if (table->isEmpty())
            table->append(everydayVariables().first());
        break;
    case 1:
        table->insert(place, Variable(variable));
        break;
    case 2: {
        Variable other = variable;
        other.entry.name = otherCase(random, entry.name);
        other.entry.unit = pick(random, OddUnits);
        other.entry.type = pick(random, OddTypes);
        table->insert(place, other);
        break;
    }
    case 3:
        entry.unit = pick(random, OddUnits);
        break;
    case 4:
    case 5:
        entry.type = pick(random, OddTypes);
        break;
    case 6:
        entry.count = pick(random, OddCounts);
        break;
    case 7:
        entry.offset = pick(random, OddOffsets);
        break;
    case 8:
        entry.name = pick(random, OddNames);
        break;
    case 9:
        table->insert(place,
                      {{pick(random, OddNames), pick(random, OddTypes), pick(random, OddUnits)},
                       Quantity::Nothing});
        break;
    case 10:
        entry.offset = below(random, 64);
        break;
    default:
        table->insert(place,
                      {{pick(random, OddNames), irsdk_VarType(below(random, 6)), "x", "",
                        pick(random, OddCounts), pick(random, OddOffsets)},
                       Quantity::Nothing});
        break;
    }
}

QVector<Variable> makeTable(Random *random, double wildness)
{
    QVector<Variable> table;
    for (const Variable &variable : everydayVariables()) {
        const bool decidesAboutLaps = variable.quantity != Quantity::Nothing;
        if (!chance(random, decidesAboutLaps ? 0.01 + 0.03 * wildness : 0.5))
            table.append(variable);
    }
    if (chance(random, 0.5)) {
        for (int i = table.size() - 1; i > 0; --i)
            std::swap(table[i], table[below(random, i + 1)]);
    }
    if (chance(random, wildness)) {
        for (int spoilt = below(random, 12); spoilt > 0; --spoilt)
            spoil(random, &table);
    }
    // A variable without a sensible size cannot be packed.
    for (Variable &variable : table) {
        if (variable.entry.offset == RecordingVariable::Packed && qAbs(variable.entry.count) > 1000)
            variable.entry.offset = below(random, 100);
    }
    return table;
}

template <typename T>
T limited(double value)
{
    // A number that does not fit becomes 0, which is as good as any other.
    if (!(value > double(std::numeric_limits<T>::min()) - 1.0
          && value < double(std::numeric_limits<T>::max()) + 1.0))
        return T(0);
    return T(value);
}

double anyNumber(Random *random)
{
    static constexpr std::array numbers = {
        0.0, -0.0, 1.0, 0.5, -1.0, 1e-13, 1e300, 1e38, 1e25, 1.0000000138484279e24, 255.0, 0.1};
    return chance(random, 0.5) ? random->uniform(-100.0, 100.0) : pick(random, numbers);
}

/// Writes \a value as an element of \a type.
void store(char *place, std::int32_t type, double value)
{
    switch (type) {
    case irsdk_char: {
        const auto number = limited<std::int8_t>(value);
        std::memcpy(place, &number, sizeof number);
        break;
    }
    case irsdk_bool: {
        const auto number = limited<std::uint8_t>(value);
        std::memcpy(place, &number, sizeof number);
        break;
    }
    case irsdk_int:
    case irsdk_bitField: {
        const auto number = limited<std::int32_t>(value);
        std::memcpy(place, &number, sizeof number);
        break;
    }
    case irsdk_float: {
        const bool fits = !std::isfinite(value) || std::fabs(value) < 3e38;
        const float number = fits ? float(value) : 0.0f;
        std::memcpy(place, &number, sizeof number);
        break;
    }
    case irsdk_double:
        std::memcpy(place, &value, sizeof value);
        break;
    }
}

void storeTick(Random *random, const RandomDrive &drive, const irsdk_varHeader &variable,
               Quantity quantity, double wildness, QByteArray *record)
{
    const qint64 size = irsdk_varTypeSize(variable.type);
    if (size == 0)
        return;
    const qint64 first = qMax(0, -variable.offset) / size;
    for (qint64 i = first; i < variable.count; ++i) {
        const qint64 offset = variable.offset + i * size;
        if (offset > record->size() - size)
            return;
        if (offset < 0)
            continue;
        char *place = record->data() + offset;
        if (quantity != Quantity::Nothing) {
            store(place, variable.type, drive.value(quantity));
        } else if (chance(random, wildness * 0.1)) {
            for (int byte = 0; byte < size; ++byte)
                place[byte] = char(below(random, 256));
        } else {
            store(place, variable.type, anyNumber(random));
        }
    }
}

/// Lays out the parts; sometimes with a layout that contradicts them.
QByteArray makeFile(Random *random, Recording recording, double wildness)
{
    if (chance(random, 0.3)) {
        recording.order({Recording::Records, Recording::Text, Recording::Table});
        recording.gap(Recording::Text, below(random, 50), 'x');
    } else if (chance(random, 0.3)) {
        recording.order({Recording::Text, Recording::Table, Recording::Records});
        recording.gap(Recording::Records, below(random, 50), ' ');
    }
    if (!chance(random, wildness * 0.4))
        return recording.bytes();

    const irsdk_header header = recording.header();
    constexpr std::array odd = {-1, 0, 1, 143, 2147483647, -2147483647};
    const auto near = [random](int value) { return value + below(random, 41) - 20; };
    QByteArray bytes;
    switch (below(random, 12)) {
    case 0:
        bytes = recording.with(&irsdk_header::sessionInfoLen, pick(random, odd)).bytes();
        break;
    case 1:
        bytes = recording.with(&irsdk_header::sessionInfoLen, near(header.sessionInfoLen)).bytes();
        break;
    case 2:
        bytes = recording.with(&irsdk_header::sessionInfoOffset, near(header.sessionInfoOffset))
                    .bytes();
        break;
    case 3:
        bytes = recording.with(&irsdk_header::numVars, pick(random, odd)).bytes();
        break;
    case 4:
        bytes = recording.with(&irsdk_header::numVars, qMax(0, header.numVars - below(random, 5)))
                    .bytes();
        break;
    case 5:
        bytes = recording.with(&irsdk_header::varHeaderOffset, pick(random, odd)).bytes();
        break;
    case 6:
        bytes = recording.with(&irsdk_header::bufLen, near(header.bufLen)).bytes();
        break;
    case 7:
        bytes = recording.withRecordsAt(near(header.varBuf[0].bufOffset)).bytes();
        break;
    case 8:
        bytes =
            recording.with(&irsdk_header::varHeaderOffset, near(header.varHeaderOffset)).bytes();
        break;
    case 9:
        bytes = recording.with(&irsdk_header::sessionInfoLen, 0)
                    .with(&irsdk_header::sessionInfoOffset, 2147483647)
                    .bytes();
        break;
    case 10:
        bytes = recording.with(&irsdk_header::numVars, 0)
                    .with(&irsdk_header::varHeaderOffset, 2147483647)
                    .bytes();
        break;
    default:
        bytes = recording.bytes();
        break;
    }
    if (chance(random, 0.5))
        bytes.chop(below(random, chance(random, 0.2) ? bytes.size() : qMax(1, header.bufLen)));
    return bytes;
}

} // namespace

RandomRecording::RandomRecording(std::uint32_t seed)
{
    Random random(seed);
    const double wildness = seed % 31 == 30 ? 1.0 : std::array{0.0, 0.15, 0.5}[seed % 3];

    const RandomSession session(&random, wildness);
    m_sessionInfo = randomSessionInfo(&random, session, wildness);
    const QVector<Variable> table = makeTable(&random, wildness);

    Recording recording = Recording::empty();
    for (const Variable &variable : table)
        recording.variable(variable.entry);
    recording.sessionInfo(m_sessionInfo,
                          chance(&random, wildness * 0.3) ? Recording::Unterminated
                                                          : Recording::Terminated);
    const int packedSize = recording.recordSize();
    recording.recordSize(chance(&random, wildness * 0.2) ? below(&random, packedSize + 9)
                                                         : packedSize + below(&random, 9));
    m_header = recording.header();
    m_variables = recording.variableTable();

    RandomDrive drive(&random, session.isRace(), wildness);
    const int ticks = chance(&random, 0.05) ? below(&random, 3) : 50 + below(&random, 1200);
    for (int tick = 0; tick < ticks; ++tick) {
        drive.advance();
        QByteArray record(m_header.bufLen, 0);
        for (int v = 0; v < table.size(); ++v)
            storeTick(&random, drive, m_variables.at(v), table.at(v).quantity, wildness, &record);
        recording.record(record);
        m_records.append(record);
    }
    m_file = makeFile(&random, recording, wildness);
}
