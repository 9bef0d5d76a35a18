#pragma once

#include <QTime>

#include <optional>

namespace ZEP {
class Lap;
}

/// The time since midnight in milliseconds; none for an invalid \a time.
std::optional<int> milliseconds(const QTime &time);

/// The time of \a lap in milliseconds; none if it is not set, or is the 00:59:59.000 that means
/// "no valid time".
std::optional<int> lapTime(const ZEP::Lap &lap);
