#pragma once

#include "host/lapsummary.h"
#include "model/lap.h"

#include <QJsonObject>
#include <QString>

#include <optional>

// Single numbers of a lap, taken from its channels, for tables of laps.

/// The mean of the valid samples of the channel called \a name; none without any.
std::optional<Quantity> meanOf(const ZEP::Lap &lap, const QString &name);
/// The first valid sample.
std::optional<Quantity> firstOf(const ZEP::Lap &lap, const QString &name);
/// The last valid sample.
std::optional<Quantity> lastOf(const ZEP::Lap &lap, const QString &name);

/// Per tyre ("lf", "rf", "lr", "rr") arrays of quantities, null where nothing was recorded:
/// "surface" and "carcass" are mean temperatures and "tread" what is left of it at the end, each
/// left, middle and right as seen from the seat; "pressure" is that at the start and at the end.
QJsonObject tyresJson(const ZEP::Lap &lap);
/// The quantities "start" and "end" of the fuel in the tank.
QJsonObject fuelJson(const ZEP::Lap &lap);
/// Sky, air, track and wind, as an object of quantities; "skies" is a text.
QJsonObject weatherJson(const ZEP::Lap &lap);
