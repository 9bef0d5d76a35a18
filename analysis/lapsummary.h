#pragma once

#include "analysis/laps.h"
#include "analysis/laptime.h"
#include "analysis/quantity.h"
#include "model/lap.h"

#include <QString>
#include <QVector>

#include <optional>

/// What sort of lap it is to a driver.
enum class LapKind {
    Timed, ///< from line to line
    OutLap, ///< completed, the first of its stint
    Other, ///< completed, of a type that is not set or not known
    Unfinished, ///< still being driven when the recording ended
    Empty, ///< without any sample
};

/// The name of \a kind, as tables show it: "timed", "out-lap".
QString lapKindName(LapKind kind);

/// One row of a table of laps.
struct LapSummary {
    LapKind kind = LapKind::Empty;
    std::optional<int> time; ///< milliseconds; none for a lap without a valid time
    std::optional<int> gap; ///< milliseconds behind the best timed lap
    bool isBest = false; ///< the fastest timed lap, the first of equals
    std::optional<Quantity> topSpeed; ///< the greatest valid sample of the channel "speed"
    /// The first valid sample of the channel "fuellevel" less the last one.
    std::optional<Quantity> fuelUsed;
};

LapKind lapKind(const ZEP::Lap &lap);
/// Why \a lap, which has no lapTime(), has none.
QString missingTimeReason(const ZEP::Lap &lap);

/// One summary for each of \a laps, in their order.
QVector<LapSummary> summarize(const Laps &laps);

/// The index of the fastest timed lap, the first of equals.
std::optional<int> bestLap(const Laps &laps);

/// The index of the lap that speaks for the file where none is asked for: the best timed lap, else
/// the one with the most samples, the first of equals. \a laps holds at least one.
int representativeLap(const Laps &laps);
