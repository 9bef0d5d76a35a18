// The start of channels that count from zero in every lap.

#include "reader/irtelemetryreader.h"

void iRTelemetryReader::normalizeChannelBeginning(int carIdx, const QString &channelName)
{
    ZEP::Lap &closed = lap(carIdx);
    const auto channel = closed.channel(channelName);
    const auto pct = closed.channel(QStringLiteral("lapdistpct"));
    if (!channel || !pct || channel->data.size() < 2)
        return;

    double refValue = -1.0;
    double refPct = -1.0;
    for (int i = channel->data.size() - 2; i >= 0; --i) {
        const double sample = channel->sample(i);
        if (!(sample > channel->sample(i + 1)) && !qFuzzyIsNull(sample))
            continue;
        if (refValue < 0.0) {
            refValue = channel->sample(i + 1);
            refPct = pct->sample(i + 1);
        }
        if (qFuzzyIsNull(refValue))
            return;
        channel->setSample(i, pct->sample(i) * refValue / refPct);
    }
}
