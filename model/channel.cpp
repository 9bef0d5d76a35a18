#include "model/channel.h"

namespace ZEP {

void Channel::setSample(int index, double value)
{
    if (contains(index))
        data[index] = value;
}

} // namespace ZEP
