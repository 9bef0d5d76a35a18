#include "tools/recording.h"

#include "tools/variablevalue.h"

#include <cmath>
#include <cstring>

namespace {

// Larger records are probably a mistake in a test's table.
constexpr qint64 MaxPackedSize = 64 << 20;

template <typename T>
void store(char *place, T value)
{
    std::memcpy(place, &value, sizeof value);
}

template <typename T>
T load(const char *place)
{
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

template <typename T>
bool fitsInteger(double value)
{
    return value > double(std::numeric_limits<T>::min()) - 1
        && value < double(std::numeric_limits<T>::max()) + 1;
}

bool fits(qint32 type, double value)
{
    switch (type) {
    case irsdk_char:
        return fitsInteger<std::int8_t>(value);
    case irsdk_int:
    case irsdk_bitField:
        return fitsInteger<std::int32_t>(value);
    case irsdk_float:
        return !std::isfinite(value)
            || std::fabs(value) <= double(std::numeric_limits<float>::max());
    case irsdk_bool:
    case irsdk_double:
        return true;
    default:
        return false;
    }
}

} // namespace

Recording::Recording()
{
    variables(defaultVariables());
    sessionInfo(plainSessionInfo());
}

Recording Recording::empty()
{
    return Recording(Nothing());
}

QVector<RecordingVariable> Recording::defaultVariables()
{
    return {{"SessionTime", irsdk_double, "s"},
            {"SessionTick", irsdk_int, ""},
            {"SessionNum", irsdk_int, ""},
            {"SessionState", irsdk_int, "irsdk_SessionState"},
            {"IsOnTrack", irsdk_bool, ""},
            {"OnPitRoad", irsdk_bool, ""},
            {"Lap", irsdk_int, ""},
            {"LapDistPct", irsdk_float, "%"},
            {"LapCurrentLapTime", irsdk_float, "s"},
            {"LapLastLapTime", irsdk_float, "s"},
            {"Speed", irsdk_float, "m/s"},
            {"FuelLevel", irsdk_float, "l"}};
}

QByteArray Recording::plainSessionInfo(const QByteArray &sessionType, int carIdx)
{
    const QByteArray car = QByteArray::number(carIdx);
    return "---\n"
           "WeekendInfo:\n"
           " TrackName: testfield\n"
           " TrackLength: 1.00 km\n"
           " TrackDisplayName: Test Field\n"
           " SessionID: 0\n"
           " SubSessionID: 0\n"
           "\n"
           "SessionInfo:\n"
           " Sessions:\n"
           " - SessionNum: 0\n"
           "   SessionType: "
        + sessionType
        + "\n"
          "\n"
          "DriverInfo:\n"
          " DriverCarIdx: "
        + car
        + "\n"
          " DriverCarFuelKgPerLtr: 0.750\n"
          " DriverCarFuelMaxLtr: 40.000\n"
          " DriverCarMaxFuelPct: 1.000\n"
          " Drivers:\n"
          " - CarIdx: "
        + car
        + "\n"
          "   UserName: Test Driver\n"
          "   TeamName: Test Team\n"
          "   CarScreenName: Test Car\n"
          "\n"
          "...\n";
}

Recording &Recording::variables(const QVector<RecordingVariable> &table)
{
    m_variables.clear();
    m_offsets.clear();
    m_indexes.clear();
    m_packedSize = 0;
    m_values.clear();
    for (const RecordingVariable &variable : table)
        this->variable(variable);
    return *this;
}

Recording &Recording::variable(const RecordingVariable &variable)
{
    const bool packed = variable.offset == RecordingVariable::Packed;
    m_indexes.insert(variable.name, m_variables.size());
    m_variables.append(variable);
    m_offsets.append(packed ? qint32(m_packedSize) : variable.offset);
    if (packed) {
        m_packedSize += qint64(irsdk_varTypeSize(variable.type)) * qMax(0, variable.count);
        if (m_packedSize > MaxPackedSize)
            qFatal("Recording: give %s an offset, packed it is too large",
                   variable.name.constData());
    }
    return *this;
}

Recording &Recording::sessionInfo(const QByteArray &text, Ending ending)
{
    m_text = text;
    if (ending == Terminated)
        m_text.append('\0');
    return *this;
}

Recording &Recording::tickRate(int hertz)
{
    m_tickRate = hertz;
    return *this;
}

Recording &Recording::recordSize(int bytes)
{
    m_recordSize = bytes;
    return *this;
}

Recording &Recording::order(const std::array<Section, 3> &sections)
{
    m_order = sections;
    return *this;
}

Recording &Recording::gap(Section section, int bytes, char fill)
{
    m_gaps[section] = QByteArray(bytes, fill);
    return *this;
}

Recording &Recording::set(const QByteArray &name, double value, int element)
{
    fitValues();
    const int index = indexOf(name);
    const RecordingVariable &variable = m_variables.at(index);
    const int size = irsdk_varTypeSize(variable.type);
    const qint64 offset = m_offsets.at(index) + qint64(element) * size;
    if (element < 0 || element >= variable.count || offset < 0 || offset > m_values.size() - size)
        qFatal("Recording: element %d of %s is outside", element, name.constData());

    if (!fits(variable.type, value))
        qFatal("Recording: %g does not fit the variable %s", value, name.constData());
    storeVariableValue(m_values.data() + offset, variable.type, value);
    return *this;
}

Recording &Recording::setBytes(int offset, const QByteArray &bytes)
{
    fitValues();
    for (int i = qMax(0, -offset); i < bytes.size() && offset + i < m_values.size(); ++i)
        m_values[offset + i] = bytes[i];
    return *this;
}

Recording &Recording::ticks(int count)
{
    for (int tick = 0; tick < count; ++tick)
        appendTick();
    return *this;
}

Recording &Recording::ticks(int count, const std::function<void(Recording &, int)> &prepare)
{
    for (int tick = 0; tick < count; ++tick) {
        prepare(*this, tick);
        appendTick();
    }
    return *this;
}

Recording &Recording::record(const QByteArray &bytes)
{
    m_records.append(bytes);
    ++m_recordCount;
    return *this;
}

Recording Recording::with(std::int32_t irsdk_header::*field, std::int32_t value) const
{
    Recording changed = *this;
    changed.m_headerChanges.append([=](irsdk_header &header) { header.*field = value; });
    return changed;
}

Recording Recording::with(std::int32_t irsdk_diskSubHeader::*field, std::int32_t value) const
{
    Recording changed = *this;
    changed.m_subHeaderChanges.append([=](irsdk_diskSubHeader &header) { header.*field = value; });
    return changed;
}

Recording Recording::with(std::int64_t irsdk_diskSubHeader::*field, std::int64_t value) const
{
    Recording changed = *this;
    changed.m_subHeaderChanges.append([=](irsdk_diskSubHeader &header) { header.*field = value; });
    return changed;
}

Recording Recording::with(double irsdk_diskSubHeader::*field, double value) const
{
    Recording changed = *this;
    changed.m_subHeaderChanges.append([=](irsdk_diskSubHeader &header) { header.*field = value; });
    return changed;
}

Recording Recording::withRecordsAt(std::int32_t offset) const
{
    Recording changed = *this;
    changed.m_headerChanges.append(
        [=](irsdk_header &header) { header.varBuf[0].bufOffset = offset; });
    return changed;
}

Recording Recording::withVariable(const QByteArray &name, std::int32_t irsdk_varHeader::*field,
                                  std::int32_t value) const
{
    Recording changed = *this;
    const int index = indexOf(name);
    changed.m_tableChanges.append(
        [=](QVector<irsdk_varHeader> &table) { table[index].*field = value; });
    return changed;
}

Recording Recording::withSessionInfo(const QByteArray &text, Ending ending) const
{
    Recording changed = *this;
    changed.sessionInfo(text, ending);
    return changed;
}

int Recording::indexOf(const QByteArray &name) const
{
    const int index = m_indexes.value(name, -1);
    if (index < 0)
        qFatal("Recording: no variable %s", name.constData());
    return index;
}

// Resizes the next record to what the table now needs.
void Recording::fitValues()
{
    const int size = recordSize();
    if (m_values.size() < size)
        m_values.append(size - m_values.size(), '\0');
    else
        m_values.truncate(size);
}

void Recording::appendTick()
{
    fitValues();
    m_records.append(m_values);
    ++m_recordCount;
    if (char *place = valueOf("SessionTime", irsdk_double)) {
        m_endTime = load<double>(place);
        if (!m_timed)
            m_startTime = m_endTime;
        m_timed = true;
        store(place, m_endTime + 1.0 / m_tickRate);
    }
    if (char *place = valueOf("SessionTick", irsdk_int))
        store(place, load<std::int32_t>(place) + 1);
}

// Place of a variable in the next record; null unless it has this type and is wholly inside.
char *Recording::valueOf(const char *name, qint32 type)
{
    const int index = m_indexes.value(name, -1);
    if (index < 0 || m_variables.at(index).type != type)
        return nullptr;
    const qint64 offset = m_offsets.at(index);
    if (offset < 0 || offset > m_values.size() - irsdk_varTypeSize(type))
        return nullptr;
    return m_values.data() + offset;
}
