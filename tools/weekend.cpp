#include "tools/weekend.h"

#include "tools/random.h"

namespace {

// 2025-03-01 10:00 UTC.
constexpr std::int64_t FirstDate = 1740823200;
constexpr std::int64_t Day = 86400;

} // namespace

Weekend::Weekend(const DemoOptions &options)
    : session(options.session), sessionNum(0), playerCarIdx(3), raceLaps(0), abroad(options.abroad),
      cars(6)
{
    switch (session) {
    case SessionKind::Testing:
        playerCarIdx = 0;
        cars = 1;
        break;
    case SessionKind::Practice:
        break;
    case SessionKind::Qualify:
        sessionNum = 1;
        break;
    case SessionKind::Race:
        sessionNum = 2;
        // Between two stints there are an in-lap and an out-lap.
        if (options.duration <= 0)
            raceLaps = options.stints * options.laps + 2 * (options.stints - 1);
        break;
    }

    // A separate generator, so that the weather stays the same when the drive changes.
    Random random(options.seed ^ 0x77656174u);
    startDate = FirstDate + Day * std::int64_t(random.uniform(0, 200))
        + std::int64_t(random.uniform(0, 7200));
    timeOfDay = 3600 * double(int(random.uniform(9, 16)));
    airTemperature = random.uniform(14, 27);
    trackTemperature = airTemperature + random.uniform(4, 11);
    airPressure = random.uniform(99200, 100600);
    airDensity = airPressure / (287.05 * (airTemperature + 273.15));
    windSpeed = random.uniform(0.5, 4.5);
    windDirection = random.uniform(0, 6.28);
    humidity = random.uniform(0.35, 0.7);
    skies = int(random.uniform(0, 4));
}
