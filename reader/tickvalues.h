#pragma once

#include <QString>

#include <optional>

namespace ZEP {
class Sample;
}

/// The variables that decide which lap a tick belongs to.
enum class TickVariable {
    LapDistPct,
    SessionState,
    Lap,
    IsOnTrack,
    OnPitRoad,
    LapLastLapTime,
    LapCurrentLapTime,
    SessionNum,
    Speed,
};
constexpr int TickVariableCount = int(TickVariable::Speed) + 1;

/// The name under which a sample holds \a variable.
const QString &tickVariableName(TickVariable variable);

/// The few values of a tick that decide which lap it belongs to, with their defaults where the tick
/// lacks one.
struct TickValues {
    float lapDistPct; ///< fraction of the lap driven; -1 when missing
    int sessionState; ///< 1 to 3 before the start, 4 racing; 0 when missing
    int lap; ///< lap counter; -1 when missing
    bool isOnTrack; ///< false when missing
    std::optional<bool> onPitRoad;
    float lapLastLapTime; ///< seconds; -1 when missing
    float lapCurrentLapTime; ///< seconds; 1e25 when missing
    bool isSlow; ///< "Speed" is there and below 1

    /// Reads the values from a SampleSource or a RecordSource.
    template <typename Source>
    static TickValues from(const Source &source);

    /// The number of the session, from the player's tick; 0 when missing.
    template <typename Source>
    static int sessionNumber(const Source &source);
};

/// Values of a tick by name, for any caller.
class SampleSource
{
public:
    explicit SampleSource(const ZEP::Sample &sample) : m_sample(sample) { }

    bool has(TickVariable variable) const;
    int toInt(TickVariable variable) const;
    float toFloat(TickVariable variable) const;
    bool toBool(TickVariable variable) const;

private:
    const ZEP::Sample &m_sample;
};

template <typename Source>
TickValues TickValues::from(const Source &source)
{
    const auto floatOr = [&source](TickVariable variable, float missing) {
        return source.has(variable) ? source.toFloat(variable) : missing;
    };
    const auto intOr = [&source](TickVariable variable, int missing) {
        return source.has(variable) ? source.toInt(variable) : missing;
    };

    TickValues values;
    values.lapDistPct = floatOr(TickVariable::LapDistPct, -1.0f);
    values.sessionState = intOr(TickVariable::SessionState, 0);
    values.lap = intOr(TickVariable::Lap, -1);
    values.isOnTrack =
        source.has(TickVariable::IsOnTrack) && source.toBool(TickVariable::IsOnTrack);
    if (source.has(TickVariable::OnPitRoad))
        values.onPitRoad = source.toBool(TickVariable::OnPitRoad);
    values.lapLastLapTime = floatOr(TickVariable::LapLastLapTime, -1.0f);
    values.lapCurrentLapTime = floatOr(TickVariable::LapCurrentLapTime, 1.0e25f);
    values.isSlow = source.has(TickVariable::Speed) && 1.0f > source.toFloat(TickVariable::Speed);
    return values;
}

template <typename Source>
int TickValues::sessionNumber(const Source &source)
{
    return source.has(TickVariable::SessionNum) ? source.toInt(TickVariable::SessionNum) : 0;
}
