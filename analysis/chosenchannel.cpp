#include "analysis/chosenchannel.h"

#include <set>

QSharedPointer<ZEP::Channel> ChosenChannel::in(const ZEP::Lap &lap) const
{
    return isCalculated ? lap.calculatedChannel(name) : lap.channel(name);
}

QVector<ChosenChannel> allChannels(const QVector<const ZEP::Lap *> &laps)
{
    std::set<QString> recorded;
    std::set<QString> calculated;
    for (const ZEP::Lap *lap : laps) {
        const QList<QString> names = lap->getAvailableChannels();
        recorded.insert(names.begin(), names.end());
        const QList<QString> calculatedNames = lap->getAvailableCalculatedChannels();
        calculated.insert(calculatedNames.begin(), calculatedNames.end());
    }
    QVector<ChosenChannel> all;
    for (const QString &name : recorded)
        all.append({name, false});
    for (const QString &name : calculated)
        all.append({name, true});
    return all;
}
