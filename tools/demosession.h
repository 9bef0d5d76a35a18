#pragma once

#include <QByteArray>

class Circuit;
class Pace;
struct Weekend;

/// The session-info text of a demo recording that begins with \a fuel litres in the tank, in the
/// simulator's own dialect: one entry per line, one blank per level, "---" in front and "..."
/// behind. The circuit, the car and everybody in it are invented.
QByteArray demoSessionInfo(const Weekend &weekend, const Circuit &circuit, const Pace &pace,
                           double fuel);
