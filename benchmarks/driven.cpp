#include "benchmarks/driven.h"

#include "tools/recording.h"

#include <QFile>

#include <cstring>
#include <random>

namespace {

constexpr double TickRate = 60.0;
/// Lap counter and lap time follow this many ticks after the line has been crossed.
constexpr qint64 CounterLag = 4;

/// The default variables, then as many others as are missing, in about the mix of types of a real
/// recording.
QVector<RecordingVariable> table(int count)
{
    static const qint32 mix[] = {irsdk_float, irsdk_float, irsdk_float, irsdk_int,   irsdk_float,
                                 irsdk_float, irsdk_float, irsdk_bool,  irsdk_float, irsdk_int};
    QVector<RecordingVariable> variables = Recording::defaultVariables();
    while (variables.size() < count) {
        RecordingVariable variable;
        variable.name = "Channel" + QByteArray::number(variables.size());
        variable.type = mix[variables.size() % 10];
        variable.unit = variables.size() % 20 == 0 ? "%" : "m";
        variables.append(variable);
    }
    return variables;
}

/// Records whose values differ from tick to tick, without unusual ones.
QByteArray fillRecord(const Recording &recording, const QVector<irsdk_varHeader> &variables,
                      std::mt19937 *random)
{
    QByteArray record(recording.recordSize(), '\0');
    for (const irsdk_varHeader &variable : variables) {
        char *place = record.data() + variable.offset;
        const auto number = quint32((*random)());
        if (variable.type == irsdk_bool) {
            *place = number & 1;
        } else if (variable.type == irsdk_float) {
            const float value = float(number) / 65536.0f;
            std::memcpy(place, &value, sizeof value);
        } else if (variable.type == irsdk_double) {
            const double value = number / 65536.0;
            std::memcpy(place, &value, sizeof value);
        } else {
            std::memcpy(place, &number, sizeof number);
        }
    }
    return record;
}

template <typename T>
void store(QByteArray *record, int offset, T value)
{
    std::memcpy(record->data() + offset, &value, sizeof value);
}

} // namespace

int DrivenRecording::laps() const
{
    return lapTicks == 0 ? 1 : int((records - 1 - CounterLag) / lapTicks) + 1;
}

qint64 DrivenRecording::recordedTicks() const
{
    // The tick at which a lap is found complete belongs to no lap.
    return lapTicks == 0 ? 0 : records - (laps() - 1);
}

bool DrivenRecording::write(const QString &fileName) const
{
    Recording recording;
    recording.variables(table(variables));
    const QVector<irsdk_varHeader> headers = recording.variableTable();
    std::mt19937 random;
    QVector<QByteArray> fills;
    for (int i = 0; i < 256; ++i)
        fills.append(fillRecord(recording, headers, &random));

    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !recording.write(&file))
        return false;
    for (qint64 tick = 0; tick < records; ++tick) {
        QByteArray &record = fills[int(tick % fills.size())];
        const qint64 ofLap = lapTicks == 0 ? 0 : tick % lapTicks;
        const qint64 counted = lapTicks == 0 ? 0 : qMax<qint64>(0, tick - CounterLag);
        const qint64 lap = lapTicks == 0 ? 0 : counted / lapTicks;
        store(&record, recording.offsetOf("SessionTime"), double(tick) / TickRate);
        store(&record, recording.offsetOf("SessionTick"), qint32(tick));
        store(&record, recording.offsetOf("SessionNum"), qint32(0));
        store(&record, recording.offsetOf("SessionState"), qint32(4));
        store(&record, recording.offsetOf("IsOnTrack"), quint8(lapTicks != 0));
        store(&record, recording.offsetOf("OnPitRoad"), quint8(0));
        store(&record, recording.offsetOf("Lap"), qint32(lap + 1));
        store(&record, recording.offsetOf("LapDistPct"),
              lapTicks == 0 ? 0.0f : float(ofLap) / float(lapTicks));
        store(&record, recording.offsetOf("LapCurrentLapTime"),
              lapTicks == 0 ? 0.0f : float(double(counted % lapTicks) / TickRate));
        store(&record, recording.offsetOf("LapLastLapTime"),
              lap == 0 ? -1.0f : float(lapTicks / TickRate));
        if (file.write(record) != record.size())
            return false;
    }
    return file.flush();
}
