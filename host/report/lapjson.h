#pragma once

#include "analysis/laps.h"
#include "model/lap.h"

#include <QJsonObject>

// What the page shows about a lap, other than its samples.

/// True if carcass and tread of the tyres change only at stops on every one of \a laps.
bool areTyresSeenAtStops(const Laps &laps);
/// For each tyre ("lf", "rf", "lr", "rr") arrays of quantities, null where nothing was recorded.
/// "surface" and "carcass" are mean temperatures, "tread" is the tread left at the end, each at the
/// left, middle and right as seen from the seat. If tyres are \a seenAtStops, "carcass" and "tread"
/// are as of the last stop. "pressure" is that at the start and at the end.
QJsonObject tyresJson(const ZEP::Lap &lap, bool seenAtStops);
/// The fuel in the tank as the quantities "start" and "end".
QJsonObject fuelJson(const ZEP::Lap &lap);
/// The weather as an object of quantities; "skies" is a text. "air", "track", "wind", "humidity"
/// and "pressure" are means over the lap; "airTemperature" and "trackSurfaceTemperature" are those
/// that the source names for the session.
QJsonObject weatherJson(const ZEP::Lap &lap);
