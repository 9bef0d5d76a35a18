#pragma once

#include <QString>

#include <optional>

/// What a number in \a unit is multiplied by to be one in \a wanted: "m", "m/s", "s" or "deg". None
/// if \a unit is no unit of that quantity that is known here. Without a unit, a number is taken to
/// be in the wanted one.
std::optional<double> unitFactor(const QString &unit, const QString &wanted);
