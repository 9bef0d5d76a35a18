#pragma once

#include "analysis/laps.h"
#include "analysis/laptime.h"
#include "analysis/quantity.h"
#include "model/lap.h"

#include <QString>
#include <QVector>

#include <optional>

/// The kind of a lap, as a driver sees it.
enum class LapKind {
    Timed, ///< from line to line
    OutLap, ///< completed, the first of its stint
    Other, ///< completed, of a type that is not set or unknown
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
    bool isBest = false; ///< true for the fastest timed lap; if several are equal, for the first
    std::optional<Quantity> topSpeed; ///< the greatest valid sample of the channel "speed"
    /// The first valid sample of the channel "fuellevel" minus the last one.
    std::optional<Quantity> fuelUsed;
};

LapKind lapKind(const ZEP::Lap &lap);
/// Why \a lap, which has no lapTime(), has none.
QString missingTimeReason(const ZEP::Lap &lap);

/// One summary for each of \a laps, in their order.
QVector<LapSummary> summarize(const Laps &laps);

/// The index of the fastest timed lap; if several are equal, of the first.
std::optional<int> bestLap(const Laps &laps);

/// The index of the lap that represents the file if no lap was chosen: the best timed lap, or, if
/// no lap is timed, the lap with the most samples. If several are equal, it is the first. \a laps
/// must not be empty.
int representativeLap(const Laps &laps);
