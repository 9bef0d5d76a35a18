#pragma once

#include "analysis/quantity.h"
#include "model/value.h"

#include <QString>

#include <optional>

/// The units in which people are shown numbers. Files for programs have those that were recorded.
enum class UnitSystem {
    Recorded,
    Metric, ///< km/h, °C, %, as drivers know them
    Imperial, ///< mph, °F, psi, US gallons
};

/// \a quantity in the unit of \a system; as it is if its unit is none that has another there.
Quantity shown(const Quantity &quantity, UnitSystem system);
std::optional<Quantity> shown(const std::optional<Quantity> &quantity, UnitSystem system);
/// The same for a value, if it is a number.
ZEP::Value shown(const ZEP::Value &value, UnitSystem system);
