#pragma once

#include <QTime>

#include <optional>

namespace ZEP {
class Lap;
}

/// The time since midnight in milliseconds; none for an invalid \a time.
std::optional<int> milliseconds(const QTime &time);

/// The time of \a lap in milliseconds; none where it is not set, and for the 00:59:59.000 that
/// stands for a lap without a valid time.
std::optional<int> lapTime(const ZEP::Lap &lap);
