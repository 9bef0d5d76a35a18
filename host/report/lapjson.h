#pragma once

#include "model/lap.h"

#include <QJsonObject>

// What the page shows about a lap, other than its samples.

/// For each tyre ("lf", "rf", "lr", "rr") arrays of quantities, null where nothing was recorded.
/// "surface" and "carcass" are mean temperatures, "tread" is the tread left at the end, each at the
/// left, middle and right as seen from the seat. "pressure" is that at the start and at the end.
QJsonObject tyresJson(const ZEP::Lap &lap);
/// The fuel in the tank as the quantities "start" and "end".
QJsonObject fuelJson(const ZEP::Lap &lap);
/// Sky, air, track and wind, as an object of quantities; "skies" is a text.
QJsonObject weatherJson(const ZEP::Lap &lap);
