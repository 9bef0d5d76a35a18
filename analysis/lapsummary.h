#pragma once

#include "analysis/laps.h"
#include "analysis/laptime.h"
#include "analysis/quantity.h"
#include "analysis/ticktrace.h"
#include "model/lap.h"

#include <QString>
#include <QVector>

#include <optional>

/// The kind of a lap, as a driver sees it.
enum class LapKind {
    Timed, ///< from line to line
    OutLap, ///< completed, the first of its stint
    /// Completed with a time, but without ticks of the whole way from line to line: its time is not
    /// that of its ticks. In a race, the lap that a pit stop cuts in two becomes two of these.
    Partial,
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
    std::optional<LapPart> part; ///< of a partial lap: what was recorded of it
    /// Milliseconds behind the best timed lap; none for a partial lap.
    std::optional<int> gap;
    bool isBest = false; ///< true for the fastest timed lap; if several are equal, for the first
    std::optional<Quantity> topSpeed; ///< the greatest valid sample of the channel "speed"
    /// What the channel "fuellevel" fell by: the first valid sample minus the last one, plus what
    /// was added.
    std::optional<Quantity> fuelUsed;
    std::optional<Quantity> fuelAdded; ///< what it rose by; none if that is nothing
    /// How many laps were driven between the lap before and this one that are not in the result, by
    /// the channel "lap", which counts them.
    int missingBefore = 0;

    /// True if the lap counts: for the best lap, for averages, and as one of the timed laps.
    bool isTimed() const { return kind == LapKind::Timed && time; }
};

LapKind lapKind(const ZEP::Lap &lap);
/// Why \a lap, which has no lapTime(), has none.
QString missingTimeReason(const ZEP::Lap &lap);

/// One summary for each of \a laps, in their order.
QVector<LapSummary> summarize(const Laps &laps);

/// Says which of \a laps is the best, and how far the others are behind it.
void compareTimes(const QVector<LapSummary *> &laps);

/// The index of the fastest timed lap; if several are equal, of the first.
std::optional<int> bestLap(const Laps &laps);

/// The index of the lap that represents the file if no lap was chosen: the best timed lap, or, if
/// no lap is timed, the lap with the most samples. If several are equal, it is the first. \a laps
/// must not be empty.
int representativeLap(const Laps &laps);
