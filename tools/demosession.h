#pragma once

#include <QByteArray>

class Circuit;
class Pace;
struct Weekend;

/// The session-info text of a demo recording that begins with \a fuel litres in the tank. It is in
/// the simulator's dialect: one entry per line, one space per level, "---" at the start and "..."
/// at the end. The circuit, the car and all names are invented.
QByteArray demoSessionInfo(const Weekend &weekend, const Circuit &circuit, const Pace &pace,
                           double fuel);
