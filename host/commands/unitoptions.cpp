#include "host/commands/unitoptions.h"

#include "host/commands/commandline.h"

void UnitOptions::declare(CommandOptions &options)
{
    options.addChoice({"--units", "SYSTEM",
                       "Units of tables: metric (km/h, %), imperial (mph,\n"
                       "psi, gal), or raw, as recorded (default)"},
                      &m_name, {"metric", "imperial", "raw"});
}

UnitSystem UnitOptions::system() const
{
    if (m_name == "metric")
        return UnitSystem::Metric;
    return m_name == "imperial" ? UnitSystem::Imperial : UnitSystem::Recorded;
}

QStringList UnitOptions::arguments() const
{
    return {QLatin1String("--units=") % QString::fromStdString(m_name)};
}
