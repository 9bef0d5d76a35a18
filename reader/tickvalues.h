#pragma once

#include "ibt/lapvariables.h"
#include "model/channel.h"

#include <QString>

#include <optional>

namespace ZEP {
class Sample;
}

/// The name under which a sample contains \a variable: recorded names in lower case.
const QString &sampleName(LapVariable variable);

/// The few values of a tick that decide which lap it belongs to, with defaults for those that the
/// tick does not have.
struct TickValues {
    float lapDistPct; ///< fraction of the lap driven; -1 when missing
    int sessionState; ///< 1 to 3 before the start, 4 racing; 0 when missing
    int lap; ///< lap counter; -1 when missing
    bool isOnTrack; ///< false when missing
    std::optional<bool> onPitRoad;
    float lapLastLapTime; ///< seconds; -1 when missing
    float lapCurrentLapTime; ///< seconds; MissingLapTime when missing
    bool isSlow; ///< such a tick is not recorded, see SampleSource::isSlow()

    /// A lap time that is not there never falls back to a smaller one, which would end the lap.
    static constexpr float MissingLapTime = float(ZEP::Channel::NoData);
    /// No fraction of a lap, and no valid time of a lap.
    static constexpr float Missing = -1.0f;

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

    bool has(LapVariable variable) const;
    int toInt(LapVariable variable) const;
    float toFloat(LapVariable variable) const;
    bool toBool(LapVariable variable) const;
    /// True when the sample contains "Speed", with this capital, and the value is below 1. On
    /// purpose: recorded names are in lower case, so only a sample that somebody filled by hand is
    /// slow, and hosts know recorded laps with the ticks of a car that stands.
    bool isSlow() const;

private:
    const ZEP::Sample &m_sample;
};

template <typename Source>
TickValues TickValues::from(const Source &source)
{
    const auto floatOr = [&source](LapVariable variable, float missing) {
        return source.has(variable) ? source.toFloat(variable) : missing;
    };
    const auto intOr = [&source](LapVariable variable, int missing) {
        return source.has(variable) ? source.toInt(variable) : missing;
    };

    TickValues values;
    values.lapDistPct = floatOr(LapVariable::LapDistPct, Missing);
    values.sessionState = intOr(LapVariable::SessionState, 0);
    values.lap = intOr(LapVariable::Lap, -1);
    values.isOnTrack = source.has(LapVariable::IsOnTrack) && source.toBool(LapVariable::IsOnTrack);
    if (source.has(LapVariable::OnPitRoad))
        values.onPitRoad = source.toBool(LapVariable::OnPitRoad);
    values.lapLastLapTime = floatOr(LapVariable::LapLastLapTime, Missing);
    values.lapCurrentLapTime = floatOr(LapVariable::LapCurrentLapTime, MissingLapTime);
    values.isSlow = source.isSlow();
    return values;
}

template <typename Source>
int TickValues::sessionNumber(const Source &source)
{
    return source.has(LapVariable::SessionNum) ? source.toInt(LapVariable::SessionNum) : 0;
}
