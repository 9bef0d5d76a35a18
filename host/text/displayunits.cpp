#include "host/text/displayunits.h"

#include <QMetaType>

#include <cstddef>

namespace {

/// How numbers of a recorded unit are shown.
struct DisplayUnit {
    const char *recorded;
    const char *unit;
    double factor;
    double offset = 0; ///< added after the factor
};

constexpr double DegreesPerRadian = 57.295779513082320877;

constexpr double Metre = 1;
constexpr double Foot = 0.3048 * Metre;
constexpr double Mile = 5280 * Foot;
constexpr double Pound = 0.45359237; // kg
constexpr double Gallon = 3.785411784; // litres, US
constexpr double PoundForce = Pound * 9.80665; // newtons
constexpr double Psi = PoundForce / (Foot / 12 * Foot / 12); // pascals
constexpr double SecondsPerHour = 3600;

constexpr DisplayUnit metricUnits[] = {
    {"m/s", "km/h", SecondsPerHour / 1000},
    {"m/s^2", "m/s²", 1},
    {"kg/m^3", "kg/m³", 1},
    {"rad", "°", DegreesPerRadian},
    {"rad/s", "°/s", DegreesPerRadian},
    {"deg", "°", 1},
    {"revs/min", "rpm", 1},
    {"pu", "%", 100},
    {"C", "°C", 1},
    {"N*m", "N·m", 1},
};

/// The others are as in metricUnits.
constexpr DisplayUnit imperialUnits[] = {
    {"m/s", "mph", SecondsPerHour / Mile},
    {"m/s^2", "ft/s²", 1 / Foot},
    {"kg/m^3", "lb/ft³", Foot *Foot *Foot / Pound},
    {"C", "°F", 9.0 / 5, 32},
    {"N*m", "lb·ft", 1 / (PoundForce * Foot)},
    {"m", "ft", 1 / Foot},
    {"km", "mi", 1000 / Mile},
    {"kg", "lb", 1 / Pound},
    {"kg/h", "lb/h", 1 / Pound},
    {"l", "gal", 1 / Gallon},
    {"Pa", "psi", 1 / Psi},
    {"kPa", "psi", 1e3 / Psi},
    {"bar", "psi", 1e5 / Psi},
};

template <std::size_t Size>
const DisplayUnit *found(const DisplayUnit (&units)[Size], const QString &recorded)
{
    for (const DisplayUnit &unit : units) {
        if (recorded == QLatin1String(unit.recorded))
            return &unit;
    }
    return nullptr;
}

} // namespace

Quantity shown(const Quantity &quantity, UnitSystem system)
{
    const DisplayUnit *unit = nullptr;
    if (system == UnitSystem::Imperial)
        unit = found(imperialUnits, quantity.unit);
    if (system != UnitSystem::Recorded && !unit)
        unit = found(metricUnits, quantity.unit);
    if (!unit)
        return quantity;
    return {quantity.value * unit->factor + unit->offset, QString::fromUtf8(unit->unit)};
}

std::optional<Quantity> shown(const std::optional<Quantity> &quantity, UnitSystem system)
{
    return quantity ? std::optional<Quantity>(shown(*quantity, system)) : std::nullopt;
}

ZEP::Value shown(const ZEP::Value &value, UnitSystem system)
{
    const int type = value.value.userType();
    if (type != QMetaType::Double && type != QMetaType::Float)
        return value;
    const Quantity recorded{value.value.toDouble(), value.unit()};
    const Quantity quantity = shown(recorded, system);
    return quantity.unit == recorded.unit ? value : ZEP::Value(quantity.value, quantity.unit);
}
