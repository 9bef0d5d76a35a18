#pragma once

#include "model/lap.h"

#include <QJsonObject>

// What the page says about a lap beside its samples.

/// Per tyre ("lf", "rf", "lr", "rr") arrays of quantities, null where nothing was recorded:
/// "surface" and "carcass" are mean temperatures and "tread" what is left of it at the end, each
/// left, middle and right as seen from the seat; "pressure" is that at the start and at the end.
QJsonObject tyresJson(const ZEP::Lap &lap);
/// The quantities "start" and "end" of the fuel in the tank.
QJsonObject fuelJson(const ZEP::Lap &lap);
/// Sky, air, track and wind, as an object of quantities; "skies" is a text.
QJsonObject weatherJson(const ZEP::Lap &lap);
