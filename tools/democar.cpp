#include "tools/democar.h"

#include "tools/carmodel.h"
#include "tools/circuit.h"
#include "tools/pace.h"
#include "tools/sessiontext.h"
#include "tools/weekend.h"

namespace {

struct Driver {
    const char *name;
    const char *abbreviation;
    const char *initials;
    const char *team;
    const char *number;
    const char *licence;
    const char *licenceColor;
    const char *color;
    int rating;
};

// By car index. The weekend says which of them is the player; a player who is alone is in car 0.
constexpr Driver drivers[] = {
    {"Tilda Okonjo", "Okonjo, T", "TO", "Grebe Motorsport", "7", "A 3.41", "0x0153db", "c0392b",
     2610},
    {"Emrik Vasbinder", "Vasbinder, E", "EV", "Blue Heron Racing", "12", "B 2.88", "0x00c702",
     "2471a3", 1984},
    {"Pia Lorrimond", "Lorrimond, P", "PL", "Lorrimond & Hask", "21", "B 4.02", "0x00c702",
     "f1c40f", 2203},
    {"Jorn Adelquist", "Adelquist, J", "JA", "Millrace Engineering", "34", "C 3.17", "0xfeec04",
     "16a085", 1752},
    {"Sunniva Brackley-Moe", "Brackley-Moe, S", "SB", "Blue Heron Racing", "42", "C 1.95",
     "0xfeec04", "8e44ad", 1530},
    {"Cato Wyndrath", "Wyndrath, C", "CW", "Team Saltmarsh", "88", "D 2.66", "0xfc8a27", "e67e22",
     1317},
};

void addDriver(SessionText &out, const Driver &driver, int carIdx, const Pace &pace)
{
    const QByteArray color(driver.color);
    const QByteArray design = "1," + color + ",ffffff,2c3e50";
    out.item(1, "CarIdx", carIdx);
    out.entry(3, "UserName", driver.name);
    out.entry(3, "AbbrevName", driver.abbreviation);
    out.entry(3, "Initials", driver.initials);
    out.entry(3, "UserID", 9100000 + 17 * carIdx);
    out.entry(3, "TeamID", 0);
    out.entry(3, "TeamName", driver.team);
    out.entry(3, "CarNumber", "\"" + QByteArray(driver.number) + "\"");
    out.entry(3, "CarNumberRaw", driver.number);
    out.entry(3, "CarPath", "dunlin1600");
    out.entry(3, "CarClassID", 77);
    out.entry(3, "CarID", 901);
    out.entry(3, "CarIsPaceCar", 0);
    out.entry(3, "CarIsAI", 0);
    out.entry(3, "CarIsElectric", 0);
    out.entry(3, "CarScreenName", "Dunlin 1600");
    out.entry(3, "CarScreenNameShort", "Dunlin");
    out.entry(3, "CarClassShortName", "D1600");
    out.entry(3, "CarClassRelSpeed", 40);
    out.entry(3, "CarClassLicenseLevel", 0);
    out.entry(3, "CarClassMaxFuelPct", "1.000 %");
    out.entry(3, "CarClassWeightPenalty", "0.000 kg");
    out.entry(3, "CarClassPowerAdjust", "0.000 %");
    out.entry(3, "CarClassDryTireSetLimit", "0 %");
    out.entry(3, "CarClassColor", "0xffffff");
    out.entry(3, "CarClassEstLapTime", SessionText::number(pace.lapTime(), 4));
    out.entry(3, "IRating", driver.rating);
    out.entry(3, "LicLevel", 9);
    out.entry(3, "LicSubLevel", 295);
    out.entry(3, "LicString", driver.licence);
    out.entry(3, "LicColor", driver.licenceColor);
    out.entry(3, "IsSpectator", 0);
    out.entry(3, "CarDesignStr", design);
    out.entry(3, "HelmetDesignStr", design);
    out.entry(3, "SuitDesignStr", design);
    out.entry(3, "BodyType", 0);
    out.entry(3, "FaceType", 0);
    out.entry(3, "HelmetType", 0);
    out.entry(3, "CarNumberDesignStr", "0,0,FFFFFF,777777,000000");
    out.entry(3, "ClubName", "Norland");
    out.entry(3, "ClubID", 41);
    out.entry(3, "DivisionName", "Division " + QByteArray::number(1 + carIdx % 4));
    out.entry(3, "DivisionID", carIdx % 4);
    out.entry(3, "CarSponsor_1", 0);
    out.entry(3, "CarSponsor_2", 0);
    out.entry(3, "CurDriverIncidentCount", 0);
    out.entry(3, "TeamIncidentCount", 0);
}

} // namespace

void addDemoDrivers(SessionText &out, const Weekend &w, const Circuit &circuit, const Pace &pace)
{
    const double stall = 1 - Circuit::PitStall / circuit.length();
    out.line(0, "DriverInfo:");
    out.entry(1, "DriverCarIdx", w.playerCarIdx);
    out.entry(1, "DriverUserID", 9100000 + 17 * w.playerCarIdx);
    out.entry(1, "PaceCarIdx", -1);
    out.entry(1, "DriverHeadPosX", "-0.210");
    out.entry(1, "DriverHeadPosY", "0.000");
    out.entry(1, "DriverHeadPosZ", "0.560");
    out.entry(1, "DriverCarIsElectric", 0);
    out.entry(1, "DriverCarIdleRPM", SessionText::number(CarModel::IdleSpeed, 3));
    out.entry(1, "DriverCarRedLine", SessionText::number(CarModel::RedLine, 3));
    out.entry(1, "DriverCarEngCylinderCount", 4);
    out.entry(1, "DriverCarFuelKgPerLtr", SessionText::number(CarModel::FuelDensity, 3));
    out.entry(1, "DriverCarFuelMaxLtr", SessionText::number(CarModel::FuelCapacity, 3));
    out.entry(1, "DriverCarMaxFuelPct", "1.000");
    out.entry(1, "DriverCarGearNumForward", CarModel::Gears);
    out.entry(1, "DriverCarGearNeutral", 1);
    out.entry(1, "DriverCarGearReverse", 1);
    out.entry(1, "DriverCarSLFirstRPM", "6200.000");
    out.entry(1, "DriverCarSLShiftRPM", SessionText::number(CarModel::ShiftUp, 3));
    out.entry(1, "DriverCarSLLastRPM", "7100.000");
    out.entry(1, "DriverCarSLBlinkRPM", "7300.000");
    out.entry(1, "DriverCarVersion", "2025.02.18.01");
    out.entry(1, "DriverPitTrkPct", SessionText::number(stall, 6));
    out.entry(1, "DriverCarEstLapTime", SessionText::number(pace.lapTime(), 4));
    out.entry(1, "DriverSetupName", "thornmere.sto");
    out.entry(1, "DriverSetupIsModified", 0);
    out.entry(1, "DriverSetupLoadTypeName", "user");
    out.entry(1, "DriverSetupPassedTech", 1);
    out.entry(1, "DriverIncidentCount", 0);
    out.line(1, "Drivers:");
    for (int carIdx = 0; carIdx < w.cars; ++carIdx)
        addDriver(out, drivers[carIdx], carIdx, pace);
    out.blank();
}

void addDemoSetup(SessionText &out, double fuel)
{
    out.line(0, "CarSetup:");
    out.entry(1, "UpdateCount", 1);
    out.line(1, "Tires:");
    for (const char *corner : {"LeftFront", "LeftRear", "RightFront", "RightRear"}) {
        const QByteArray name(corner);
        const QByteArray pressure = name.endsWith("Front") ? "124 kPa" : "129 kPa";
        out.line(2, name + ":");
        out.entry(3, "ColdPressure", pressure);
        out.entry(3, "LastHotPressure", pressure);
        out.entry(3, name.startsWith("Left") ? "LastTempsOMI" : "LastTempsIMO", "28C, 28C, 28C");
        out.entry(3, "TreadRemaining", "100%, 100%, 100%");
    }
    out.line(1, "Chassis:");
    out.line(2, "Front:");
    out.entry(3, "ArbSetting", 3);
    out.entry(3, "BrakePressureBias", "58.5%");
    for (const char *corner : {"LeftFront", "LeftRear"}) {
        out.line(2, QByteArray(corner) + ":");
        out.entry(3, "CornerWeight", "1310 N");
        out.entry(3, "RideHeight", "62.0 mm");
        out.entry(3, "Camber", "-2.2 deg");
        out.entry(3, "ToeIn", "-0.5 mm");
    }
    out.line(2, "Rear:");
    out.entry(3, "RideHeight", "79.0 mm");
    out.entry(3, "SpringRate", "52 N/mm");
    out.entry(3, "ArbSetting", 2);
    out.entry(3, "FuelLevel", SessionText::number(fuel, 1) + " L");
    for (const char *corner : {"RightFront", "RightRear"}) {
        out.line(2, QByteArray(corner) + ":");
        out.entry(3, "CornerWeight", "1310 N");
        out.entry(3, "RideHeight", "62.0 mm");
        out.entry(3, "Camber", "-2.2 deg");
        out.entry(3, "ToeIn", "-0.5 mm");
    }
    out.blank();
}
