// Corrected and derived channels of a finished lap.

#include "reader/irtelemetryreader.h"

#include <memory>

namespace {

using ChannelPtr = QSharedPointer<ZEP::Channel>;

/// Turns the heading by the lap's yaw offset. Both names differ in case from those of a recording
/// on purpose: only laps of other sources have them.
void addYawOffset(ZEP::Lap *lap)
{
    const QString offsetName = QStringLiteral("yawOffset");
    const double offset = lap->value(offsetName).value.toDouble();
    if (const ChannelPtr yaw = lap->channel(QStringLiteral("Yaw"))) {
        for (int i = 0; i < yaw->data.size(); ++i)
            yaw->setSample(i, yaw->sample(i) + offset);
    }
    if (lap->containsValue(offsetName)) // removing nothing would still end the sharing of values
        lap->removeValue(offsetName);
}

void addFuelWeight(ZEP::Lap *lap)
{
    const ChannelPtr fuel = lap->channel(QStringLiteral("fuellevel"));
    const double kgPerLitre = lap->value(QStringLiteral("Kg per fuel litre")).value.toDouble();
    if (!fuel || qFuzzyIsNull(kgPerLitre))
        return;

    auto weight = std::make_unique<ZEP::Channel>();
    weight->setUnit(QStringLiteral("kg"));
    weight->data.reserve(fuel->data.size());
    for (const double litres : qAsConst(fuel->data))
        weight->data.append(litres * kgPerLitre);
    lap->addChannel(weight.release(), QStringLiteral("fuelweight"));
}

/// Recordings say "%" where they contain fractions of one; hosts know those as per unit.
void relabelPercent(ZEP::Lap *lap)
{
    for (const ChannelPtr &channel : lap->channels()) {
        if (channel->unit() == QLatin1String("%"))
            channel->setUnit(QStringLiteral("pu"));
    }
}

/// Time step, distance and speed of a car that does not record them itself. The last tick repeats
/// the step before it; samples without data enter the arithmetic as they are.
void addMotionChannels(ZEP::Lap *lap)
{
    const ChannelPtr pct = lap->channel(QStringLiteral("lapdistpct"));
    const ChannelPtr time = lap->channel(QStringLiteral("sessiontime"));
    if (!pct || !time)
        return;
    const int n = pct->data.size();

    auto dt = std::make_unique<ZEP::Channel>();
    for (int i = 0; i < n; ++i)
        dt->data.append(i < n - 1 ? time->sample(i + 1) - time->sample(i) : dt->sample(n - 2));

    const QVariant length = lap->value(QStringLiteral("Track length")).value;
    if (length.isValid()) {
        constexpr double MetresPerKm = 1000.0;
        const double km = length.toDouble();
        auto distance = std::make_unique<ZEP::Channel>();
        distance->setUnit(QStringLiteral("m"));
        for (int i = 0; i < n; ++i)
            distance->data.append(pct->sample(i) * km * MetresPerKm);

        auto speed = std::make_unique<ZEP::Channel>();
        speed->setUnit(QLatin1String("m/") % time->unit());
        for (int i = 0; i < n; ++i)
            speed->data.append(i < n - 1
                                   ? (distance->sample(i + 1) - distance->sample(i)) / dt->sample(i)
                                   : speed->sample(n - 2));

        lap->addChannel(speed.release(), QStringLiteral("speed"));
        lap->addChannel(distance.release(), QStringLiteral("lapdist"));
    }
    lap->addChannel(dt.release(), QStringLiteral("dt"));
}

} // namespace

void iRTelemetryReader::preprocessLap(int carIdx)
{
    ZEP::Lap &closed = lap(carIdx);
    addYawOffset(&closed);
    addFuelWeight(&closed);
    relabelPercent(&closed);
    if (carIdx != m_myCarIdx)
        addMotionChannels(&closed);
}
