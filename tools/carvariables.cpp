// The demo variables that describe the car.
#include "tools/demovariables.h"
#include "tools/drive.h"

#include <cmath>

namespace {

double pastMiddle(double part)
{
    return part > 0.5 ? 2 * (part - 0.5) : 0;
}

} // namespace

void DemoVariables::addPits()
{
    moving("PitsOpen", irsdk_bool, "", "Pit stops are allowed",
           [](const Drive &d, int) { return double(d.sessionState() >= StateRacing); });
    fixed("PitRepairLeft", irsdk_float, "s", "Time left of repairs that must be done");
    fixed("PitOptRepairLeft", irsdk_float, "s", "Time left of optional repairs");
    moving("PitstopActive", irsdk_bool, "", "The crew is at work",
           [](const Drive &d, int) { return double(d.serviced()); });
    fixed("FastRepairUsed", irsdk_int, "", "Fast repairs used");
    fixed("FastRepairAvailable", irsdk_int, "", "Fast repairs left, 255 for no limit", 255);
    for (const char *each : {"LF", "RF", "LR", "RR"}) {
        const QByteArray tyre = QByteArray(each) + "Tires";
        fixed(tyre + "Used", irsdk_int, "", "Tyres of this corner used", 1);
        fixed(tyre + "Available", irsdk_int, "", "Tyres of this corner left, 255 for no limit",
              255);
    }
    for (const char *each : {"Left", "Right", "Front", "Rear", ""}) {
        const QByteArray sets = QByteArray(each) + "TireSets";
        fixed(sets + "Used", irsdk_int, "", "Tyre sets used", 1);
        fixed(sets + "Available", irsdk_int, "", "Tyre sets left, 255 for no limit", 255);
    }
    fixed("PitSvFlags", irsdk_bitField, "irsdk_PitSvFlags", "What the crew is asked to do", 31);
    const struct {
        const char *corner;
        double pressure;
    } corners[] = {{"LF", 124}, {"RF", 124}, {"LR", 129}, {"RR", 129}};
    for (const auto &each : corners) {
        const QByteArray corner(each.corner);
        fixed("PitSv" + corner + "P", irsdk_float, "kPa", "Tyre pressure asked for", each.pressure);
    }
    fixed("PitSvFuel", irsdk_float, "l or kWh", "Fuel asked for", 12);
    fixed("PitSvTireCompound", irsdk_int, "", "Tyre compound asked for");
}

void DemoVariables::addControls()
{
    moving("SteeringWheelAngle", irsdk_float, "rad", "Steering wheel, positive to the left",
           [](const Drive &d, int) { return d.car().steering; });
    moving("Throttle", irsdk_float, "%", "Throttle, 0 closed to 1 open",
           [](const Drive &d, int) { return d.car().throttle; });
    moving("Brake", irsdk_float, "%", "Brake, 0 released to 1 full force",
           [](const Drive &d, int) { return d.car().brake; });
    moving("Clutch", irsdk_float, "%", "Clutch, 0 disengaged to 1 engaged",
           [](const Drive &d, int) { return d.car().clutch; });
    moving("Gear", irsdk_int, "", "Gear, -1 reverse, 0 neutral",
           [](const Drive &d, int) { return double(d.car().gear); });
    moving("RPM", irsdk_float, "revs/min", "Engine speed",
           [](const Drive &d, int) { return d.car().rpm; });
    moving("ThrottleRaw", irsdk_float, "%", "Throttle pedal",
           [](const Drive &d, int) { return d.car().throttle; });
    moving("BrakeRaw", irsdk_float, "%", "Brake pedal",
           [](const Drive &d, int) { return d.car().brake; });
    moving("ClutchRaw", irsdk_float, "%", "Clutch pedal",
           [](const Drive &d, int) { return d.car().clutch; });
    fixed("HandbrakeRaw", irsdk_float, "%", "Handbrake");
    fixed("SteeringWheelAngleMax", irsdk_float, "rad", "Greatest steering wheel angle", 4.71);
    fixed("ShiftPowerPct", irsdk_float, "%", "Friction torque while shifting");
    fixed("ShiftGrindRPM", irsdk_float, "RPM", "Engine speed of the gears' grinding");
    fixed("BrakeABSactive", irsdk_bool, "", "Anti-lock brakes are at work");
    fixed("BrakeABScutPct", irsdk_float, "%", "Brake force that anti-lock brakes leave", 1);
    moving("ShiftIndicatorPct", irsdk_float, "%", "Shift light, older name",
           [](const Drive &d, int) { return pastMiddle(d.car().rpm / CarModel::RedLine); });
}

void DemoVariables::addMotion()
{
    moving("Speed", irsdk_float, "m/s", "Speed", [](const Drive &d, int) { return d.car().speed; });
    moving("Yaw", irsdk_float, "rad", "Yaw", [](const Drive &d, int) { return d.car().yaw; });
    moving("YawNorth", irsdk_float, "rad", "Heading clockwise from north", [](const Drive &d, int) {
        const double heading = std::fmod(Circuit::NorthOffset - d.car().yaw, 2 * Pi);
        return heading < 0 ? heading + 2 * Pi : heading;
    });
    moving("Pitch", irsdk_float, "rad", "Pitch", [](const Drive &d, int) { return d.car().pitch; });
    moving("Roll", irsdk_float, "rad", "Roll", [](const Drive &d, int) { return d.car().roll; });
    moving("YawRate", irsdk_float, "rad/s", "Rate of yaw",
           [](const Drive &d, int) { return d.car().yawRate; });
    moving("PitchRate", irsdk_float, "rad/s", "Rate of pitch",
           [](const Drive &d, int) { return d.car().pitchRate; });
    moving("RollRate", irsdk_float, "rad/s", "Rate of roll",
           [](const Drive &d, int) { return d.car().rollRate; });
    moving("Lat", irsdk_double, "deg", "Latitude",
           [](const Drive &d, int) { return d.latitude(); });
    moving("Lon", irsdk_double, "deg", "Longitude",
           [](const Drive &d, int) { return d.longitude(); });
    moving("Alt", irsdk_float, "m", "Altitude",
           [](const Drive &d, int) { return d.inWorld() ? d.car().altitude : 0; });
    moving("VelocityX", irsdk_float, "m/s", "Velocity forward",
           [](const Drive &d, int) { return d.car().speed * std::cos(d.car().slip); });
    moving("VelocityY", irsdk_float, "m/s", "Velocity to the left",
           [](const Drive &d, int) { return d.car().speed * std::sin(d.car().slip); });
    moving("VelocityZ", irsdk_float, "m/s", "Velocity upward",
           [](const Drive &d, int) { return d.car().speed * std::sin(d.car().pitch); });
    moving("LongAccel", irsdk_float, "m/s^2", "Acceleration forward, with gravity",
           [](const Drive &d, int) {
               return d.car().longAccel + CarModel::Gravity * std::sin(d.car().pitch);
           });
    moving("LatAccel", irsdk_float, "m/s^2", "Acceleration to the left, with gravity",
           [](const Drive &d, int) { return d.car().latAccel; });
    moving("VertAccel", irsdk_float, "m/s^2", "Acceleration upward, with gravity",
           [](const Drive &d, int) { return d.car().vertAccel; });
}

void DemoVariables::addEngine()
{
    moving("EngineWarnings", irsdk_bitField, "irsdk_EngineWarnings", "Warning lights",
           [](const Drive &d, int) {
               constexpr int FuelPressure = 2;
               constexpr int OilPressure = 4;
               constexpr int Stalled = 8;
               constexpr int Limiter = 16;
               const int engine = d.car().engine ? 0 : FuelPressure | OilPressure | Stalled;
               return double(engine | (d.onPitRoad() ? Limiter : 0));
           });
    moving("FuelLevel", irsdk_float, "l", "Fuel in the tank",
           [](const Drive &d, int) { return d.car().fuel; });
    moving("FuelLevelPct", irsdk_float, "%", "Fuel in the tank as part of what it holds",
           [](const Drive &d, int) { return d.car().fuel / CarModel::FuelCapacity; });
    moving("FuelUsePerHour", irsdk_float, "kg/h", "Fuel use",
           [](const Drive &d, int) { return d.car().fuelUse; });
    moving("FuelPress", irsdk_float, "bar", "Fuel pressure",
           [](const Drive &d, int) { return d.car().engine ? 3.1 : 0; });
    moving("Voltage", irsdk_float, "V", "Electrical system",
           [](const Drive &d, int) { return d.car().engine ? 13.8 : 12.6; });
    moving("WaterTemp", irsdk_float, "C", "Coolant temperature",
           [](const Drive &d, int) { return d.car().waterTemperature; });
    fixed("WaterLevel", irsdk_float, "l", "Coolant", 5.4);
    moving("OilTemp", irsdk_float, "C", "Oil temperature",
           [](const Drive &d, int) { return d.car().oilTemperature; });
    moving("OilPress", irsdk_float, "bar", "Oil pressure",
           [](const Drive &d, int) { return d.car().oilPressure; });
    fixed("OilLevel", irsdk_float, "l", "Oil", 4.2);
    moving("ManifoldPress", irsdk_float, "bar", "Manifold pressure",
           [](const Drive &d, int) { return d.car().manifoldPressure; });
    moving("Engine0_RPM", irsdk_float, "revs/min", "Speed of the first engine",
           [](const Drive &d, int) { return d.car().rpm; });
}

void DemoVariables::addSteeringWheel()
{
    constexpr double MaxForce = 24; // N m
    moving(
        "SteeringWheelTorque_ST", irsdk_float, "N*m", "Steering torque, six times per tick",
        [](const Drive &d, int i) {
            return d.car().steeringTorque * (1 + 0.02 * std::sin(i * Pi / 3));
        },
        0, 6);
    m_list.last().variable.countAsTime = true;
    moving("SteeringWheelTorque", irsdk_float, "N*m", "Steering torque",
           [](const Drive &d, int) { return d.car().steeringTorque; });
    moving("SteeringWheelPctTorque", irsdk_float, "%", "Force feedback, without sign",
           [](const Drive &d, int) { return std::fabs(d.car().steeringTorque) / MaxForce; });
    moving("SteeringWheelPctTorqueSign", irsdk_float, "%", "Force feedback, with sign",
           [](const Drive &d, int) { return d.car().steeringTorque / MaxForce; });
    moving("SteeringWheelPctTorqueSignStops", irsdk_float, "%",
           "Force feedback, with sign and stops",
           [](const Drive &d, int) { return d.car().steeringTorque / MaxForce; });
    fixed("SteeringWheelPctIntensity", irsdk_float, "%", "Force feedback intensity", 0.5);
    fixed("SteeringWheelPctSmoothing", irsdk_float, "%", "Force feedback smoothing");
    fixed("SteeringWheelPctDamper", irsdk_float, "%", "Force feedback damping");
    fixed("SteeringWheelLimiter", irsdk_float, "%", "Force feedback limiter");
    fixed("SteeringWheelMaxForceNm", irsdk_float, "N*m", "Greatest force feedback", MaxForce);
    fixed("SteeringWheelUseLinear", irsdk_bool, "", "Force feedback is linear", 1);
    for (const char *corner : {"LF", "RF", "LR", "RR"})
        fixed("Tire" + QByteArray(corner) + "_RumblePitch", irsdk_float, "Hz",
              "Pitch of the rumble strip under the tyre");
}

void DemoVariables::addAdjustments()
{
    fixed("dcStarter", irsdk_bool, "", "Starter pressed");
    fixed("dcPitSpeedLimiterToggle", irsdk_bool, "", "Pit speed limiter switched");
    fixed("dcHeadlightFlash", irsdk_bool, "", "Headlights flashed");
    fixed("dcToggleWindshieldWipers", irsdk_bool, "", "Wipers switched");
    fixed("dcTriggerWindshieldWipers", irsdk_bool, "", "Wipers triggered");
    fixed("dcTearOffVisor", irsdk_bool, "", "Visor film torn off");
    fixed("dcDashPage", irsdk_float, "", "Page of the dash display");
    fixed("dcBrakeBias", irsdk_float, "", "Brake bias to the front", 58.5);
    fixed("dcABS", irsdk_float, "", "Anti-lock brake setting");
    fixed("dcTractionControl", irsdk_float, "", "Traction control setting");
    fixed("dcThrottleShape", irsdk_float, "", "Throttle shape setting", 1);
    fixed("dcFuelMixture", irsdk_float, "", "Fuel mixture setting", 1);
    fixed("dcAntiRollFront", irsdk_float, "", "Front anti-roll bar setting", 3);
    fixed("dcAntiRollRear", irsdk_float, "", "Rear anti-roll bar setting", 2);
    fixed("dpTireChange", irsdk_float, "", "All tyres are to be changed", 1);
    fixed("dpFuelFill", irsdk_float, "", "Fuel is to be filled in", 1);
    fixed("dpFuelAutoFillEnabled", irsdk_float, "", "Automatic refuelling can be used");
    fixed("dpFuelAutoFillActive", irsdk_float, "", "Automatic refuelling at the next stop");
    fixed("dpFuelAddKg", irsdk_float, "kg", "Fuel to be filled in", 9);
    fixed("dpFastRepair", irsdk_float, "", "Fast repair is to be used");
    for (const char *corner : {"LF", "RF", "LR", "RR"})
        fixed("dp" + QByteArray(corner) + "TireColdPress", irsdk_float, "Pa",
              "Cold tyre pressure to be set", corner[1] == 'F' ? 124 : 129);
    fixed("P2P_Status", irsdk_bool, "", "Boost is in use");
    fixed("P2P_Count", irsdk_int, "", "Uses of the boost");
}

void DemoVariables::addWheels(bool surfaceTemperatures)
{
    using Source = DemoVariable::Source;
    struct Quantity {
        const char *name;
        const char *unit;
        const char *desc;
        Source source;
    };
    static const Quantity quantities[] = {
        {"brakeLinePress", "bar", "Brake line pressure",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].brakePressure; }},
        {"speed", "m/s", "Wheel speed",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].speed; }},
        {"pressure", "kPa", "Tyre pressure",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].pressure; }},
        {"coldPressure", "kPa", "Tyre pressure when cold",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].coldPressure; }},
        {"shockDefl", "m", "Damper deflection",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].deflection; }},
        {"shockVel", "m/s", "Damper speed",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].deflectionSpeed; }},
        {"rideHeight", "m", "Ride height",
         [](const Drive &d, int i) { return d.car().wheels[std::size_t(i)].rideHeight; }},
    };
    // The index of these is three times the wheel plus the strip.
    static const Quantity strips[] = {
        {"temp", "C", "Tyre surface temperature",
         [](const Drive &d, int i) {
             return d.car().wheels[std::size_t(i / 3)].surface[std::size_t(i % 3)];
         }},
        {"tempC", "C", "Tyre carcass temperature",
         [](const Drive &d, int i) {
             return d.seenTyres()[std::size_t(i / 3)].carcass[std::size_t(i % 3)];
         }},
        {"wear", "%", "Tread that is left",
         [](const Drive &d, int i) {
             return d.seenTyres()[std::size_t(i / 3)].tread[std::size_t(i % 3)];
         }},
    };
    const char *const corners[] = {"LF", "RF", "LR", "RR"};
    for (int wheel = 0; wheel < 4; ++wheel) {
        const QByteArray corner(corners[wheel]);
        for (const Quantity &each : quantities)
            moving(corner + each.name, irsdk_float, each.unit, each.desc, each.source, wheel);
        for (const Quantity &each : strips) {
            if (!surfaceTemperatures && &each == strips)
                continue;
            for (int strip = 0; strip < 3; ++strip)
                moving(corner + each.name + "LMR"[strip], irsdk_float, each.unit, each.desc,
                       each.source, 3 * wheel + strip);
        }
    }
}
