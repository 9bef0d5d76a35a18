#pragma once

namespace ZEP {
class Channel;
}

/// The valid samples of a channel in four numbers, in the channel's unit.
struct ChannelStatistics {
    int valid = 0; ///< number of valid samples; if it is 0, so are the others
    double minimum = 0;
    double mean = 0;
    double maximum = 0;
};

ChannelStatistics channelStatistics(const ZEP::Channel &channel);
