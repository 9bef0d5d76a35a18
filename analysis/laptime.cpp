#include "analysis/laptime.h"

#include "model/lap.h"

namespace {

/// 00:59:59.000 in milliseconds. Plug-ins set this lap time for a lap without a valid one.
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
