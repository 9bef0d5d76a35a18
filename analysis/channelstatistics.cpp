#include "analysis/channelstatistics.h"

#include "model/channel.h"

#include <algorithm>

ChannelStatistics channelStatistics(const ZEP::Channel &channel)
{
    ChannelStatistics result;
    double sum = 0;
    for (int i = 0; i < channel.data.size(); ++i) {
        if (!channel.isValid(i))
            continue;
        const double sample = channel.sample(i);
        result.minimum = result.valid == 0 ? sample : std::min(result.minimum, sample);
        result.maximum = result.valid == 0 ? sample : std::max(result.maximum, sample);
        ++result.valid;
        sum += sample;
    }
    // Rounding must not move the mean of an almost constant channel outside its samples.
    if (result.valid > 0)
        result.mean = std::clamp(sum / result.valid, result.minimum, result.maximum);
    return result;
}
