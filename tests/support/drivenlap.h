#pragma once

#include "tests/support/lapchannels.h"

#include <functional>

/// Ticks per second.
constexpr int TickRate = 60;
/// Of a lap, unless a test says otherwise, m.
constexpr double Length = 600;

/// A lap of \a length metres as it is recorded, tick by tick. The first tick is \a offset of a tick
/// after the line. \a speed returns the speed in m/s at each distance.
inline Columns drivenLap(double length, double offset, const std::function<double(double)> &speed)
{
    constexpr int steps = 1000; // between two ticks, for an even enough drive
    constexpr double clockAtLine = 250;

    Columns columns;
    double distance = 0;
    for (qint64 step = 1; distance < length; ++step) {
        distance += speed(distance) / (steps * TickRate);
        if (step % steps != qint64(offset * steps) || distance >= length)
            continue;
        columns["sessiontime"].append(clockAtLine + double(step) / (steps * TickRate));
        columns["lapdist"].append(distance);
        columns["lapdistpct"].append(distance / length);
        columns["speed"].append(speed(distance));
    }
    return columns;
}

/// A lap with these recorded channels.
inline ZEP::Lap lapOf(const Columns &columns)
{
    ZEP::Lap lap;
    for (auto column = columns.cbegin(); column != columns.cend(); ++column)
        lap.addChannel(newChannel(column.value()), column.key());
    return lap;
}
