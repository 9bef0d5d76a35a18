#include "host/chosenchannel.h"

QSharedPointer<ZEP::Channel> ChosenChannel::in(const ZEP::Lap &lap) const
{
    return isCalculated ? lap.calculatedChannel(name) : lap.channel(name);
}
