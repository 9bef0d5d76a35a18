#pragma once

class Circuit;
class Pace;
class SessionText;
struct Weekend;

/// Adds the section DriverInfo: the player's car and all drivers.
void addDemoDrivers(SessionText &out, const Weekend &weekend, const Circuit &circuit,
                    const Pace &pace);
/// Adds the section CarSetup: the set-up of the player's car, with \a fuel litres in the tank.
void addDemoSetup(SessionText &out, double fuel);
