#pragma once

class Circuit;
class Pace;
class SessionText;
struct Weekend;

/// Adds the section DriverInfo: the player's car and everybody who takes part.
void addDemoDrivers(SessionText &out, const Weekend &weekend, const Circuit &circuit,
                    const Pace &pace);
/// Adds the section CarSetup: how the player's car is set up, with \a fuel litres in the tank.
void addDemoSetup(SessionText &out, double fuel);
