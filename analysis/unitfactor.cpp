#include "analysis/unitfactor.h"

#include <cmath>

namespace {

struct Unit {
    const char *name;
    const char *base;
    double factor;
};

constexpr double Foot = 0.3048;
constexpr double Mile = 5280 * Foot;
constexpr double NauticalMile = 1852;
constexpr double Hour = 3600;

const Unit units[] = {
    {"km", "m", 1000},
    {"cm", "m", 0.01},
    {"mm", "m", 0.001},
    {"ft", "m", Foot},
    {"mi", "m", Mile},
    {"km/h", "m/s", 1000 / Hour},
    {"kph", "m/s", 1000 / Hour},
    {"mph", "m/s", Mile / Hour},
    {"mi/h", "m/s", Mile / Hour},
    {"ft/s", "m/s", Foot},
    {"kn", "m/s", NauticalMile / Hour},
    {"ms", "s", 0.001},
    {"min", "s", 60},
    {"h", "s", Hour},
    {"rad", "deg", 180 / M_PI},
};

} // namespace

std::optional<double> unitFactor(const QString &unit, const QString &wanted)
{
    if (unit.isEmpty() || unit == wanted)
        return 1;
    for (const Unit &known : units) {
        if (unit == QLatin1String(known.name) && wanted == QLatin1String(known.base))
            return known.factor;
    }
    return std::nullopt;
}
