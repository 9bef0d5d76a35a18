#pragma once

#include "analysis/quantity.h"
#include "model/lap.h"

#include <QString>

#include <optional>

// Single numbers of a lap, taken from its channels, for tables of laps.

/// The mean of the valid samples of the channel called \a name; none if no sample is valid.
std::optional<Quantity> meanOf(const ZEP::Lap &lap, const QString &name);
/// The first valid sample.
std::optional<Quantity> firstOf(const ZEP::Lap &lap, const QString &name);
/// The last valid sample.
std::optional<Quantity> lastOf(const ZEP::Lap &lap, const QString &name);
/// True if the samples of the channel called \a name change only while the car is on pit road or
/// stands: then they say what was seen at the last stop, not what is so on the lap. Also true
/// without samples.
bool changesOnlyAtStops(const ZEP::Lap &lap, const QString &name);
/// The value called \a name; none if it is not a number.
std::optional<Quantity> valueOf(const ZEP::Lap &lap, const QString &name);
