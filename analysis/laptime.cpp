#include "analysis/laptime.h"

#include "model/lap.h"

std::optional<int> milliseconds(const QTime &time)
{
    return time.isValid() ? std::optional<int>(time.msecsSinceStartOfDay()) : std::nullopt;
}

std::optional<int> lapTime(const ZEP::Lap &lap)
{
    const std::optional<int> time = milliseconds(lap.getLapTime());
    return time == ZEP::LapHeader::NoLapTime ? std::nullopt : time;
}
