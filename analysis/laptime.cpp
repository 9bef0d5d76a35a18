#include "analysis/laptime.h"

#include "model/lap.h"

namespace {

constexpr int NoTimeMark = 3599000;

} // namespace

std::optional<int> milliseconds(const QTime &time)
{
    return time.isValid() ? std::optional<int>(time.msecsSinceStartOfDay()) : std::nullopt;
}

std::optional<int> lapTime(const ZEP::Lap &lap)
{
    const std::optional<int> time = milliseconds(lap.getLapTime());
    return time == NoTimeMark ? std::nullopt : time;
}
