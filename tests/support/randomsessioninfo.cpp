#include "tests/support/randomsessioninfo.h"

#include "tests/support/randomdrive.h"

#include <algorithm>

namespace {

using Lines = QVector<QByteArray>;

constexpr std::array Types = {
    "Practice",        "Race", "Race",        "Qualify", "Practice", "Warmup", "Offline testing",
    "Offline Testing", "race", "Lone Qualify"};
constexpr std::array Players = {"-1", "64", "abc", "5", "", " 3 ", "2147483648", "63", "-2", "0x1"};

/// One of \a choice. The tamer the text is, the more often it is the first.
template <std::size_t Size>
QByteArray text(Random *random, double wildness, const std::array<const char *, Size> &choice)
{
    return chance(random, wildness * 0.5) ? pick(random, choice) : choice[0];
}

Lines weekendInfo(Random *random, double wildness)
{
    const auto some = [random, wildness](const auto &choice) {
        return text(random, wildness, choice);
    };
    Lines lines = {"WeekendInfo:"};
    const auto add = [&lines, random, wildness](const char *key, const QByteArray &value) {
        if (!chance(random, wildness * 0.1))
            lines.append(QByteArray(" ") + key + ": " + value);
    };
    add("TrackName", "spa up");
    add("TrackLength",
        some(std::array{"3.70 km", "3.70", "", "x km", "  1e3   m  y", "inf km", "nan km", "0.0 km",
                        "-2.5 km", "3,7 km"}));
    add("TrackDisplayName",
        some(std::array{"Spa-Francorchamps", "\"A: B\"", "N\xfcrburg ", "a: b"}));
    add("TrackDisplayShortName", "Spa");
    add("TrackConfigName", some(std::array{"Grand Prix", "", "null"}));
    add("TrackCity", "Francorchamps");
    add("TrackCountry", "Belgium");
    add("TrackNumTurns", some(std::array{"19", "many"}));
    add("TrackSkies", "Partly Cloudy");
    add("TrackSurfaceTemp",
        some(std::array{"34.33 C",
                        "34.33\xa0"
                        "C",
                        "\t34.33\tC"}));
    add("TrackAirTemp", "25.00 C");
    add("TrackNorthOffset", some(std::array{"2.6253 rad", "2.6253", ""}));
    add("SessionID", some(std::array{"12", "", "1a", "zz", "123456789012345678901234567890"}));
    add("SubSessionID", some(std::array{"345", "{345}", "1234567890", "-"}));
    add("Official", "0");
    add("Category", "Road");
    lines.append(" WeekendOptions:");
    lines.append(some(std::array{"  WeatherTemp: 25.56 C", "  WeatherTemp: 25", "  Other: 1"}));
    return lines;
}

Lines driverInfo(Random *random, const RandomSession &session, double wildness)
{
    const auto some = [random, wildness](const auto &choice) {
        return text(random, wildness, choice);
    };
    Lines lines = {"DriverInfo:"};
    lines.append(" DriverCarIdx: " + session.playerIndex);
    const auto add = [&lines, random](const char *key, const QByteArray &value) {
        if (!chance(random, 0.1))
            lines.append(QByteArray(key) + ": " + value);
    };
    add(" DriverCarFuelKgPerLtr",
        some(
            std::array{"0.750", "0.7371", "0.000", "1e-13", "-0.5", "inf", "nan", "x", "0.75 kg"}));
    add(" DriverCarFuelMaxLtr", some(std::array{"110.000", "nan", ""}));
    add(" DriverCarMaxFuelPct", some(std::array{"1.000", "0.5", "pct"}));
    if (chance(random, wildness * 0.1))
        return lines;
    lines.append(" Drivers:");
    for (int car : session.drivers) {
        lines.append(" - CarIdx: " + (chance(random, wildness * 0.1) ? "0" : QByteArray())
                     + QByteArray::number(car));
        const QByteArray number = QByteArray::number(car);
        if (!chance(random, wildness * 0.05))
            lines.append("   UserName: " + some(std::array{"Driver ", "", "Ren\xe9 ", "A: "})
                         + number);
        add("   AbbrevName", "Dr, A");
        add("   Initials", "AD");
        add("   UserID", "90" + number);
        add("   TeamName", "Team " + number);
        add("   CarPath", "formulavee");
        add("   CarClassID", "0");
        add("   CarID", "142");
        add("   CarScreenName", "Formula Vee");
        add("   CarClassShortName", some(std::array{"", "GT3"}));
        add("   IRating", "1350");
        add("   LicString", "R 0.01");
        add("   LicColor", some(std::array{"0xfc0706", "0x123", "red", "", "0xzz", "0x0x12"}));
        add("   ClubName", "Benelux");
        add("   DivisionName", "Division 1");
    }
    return lines;
}

Lines sessionInfo(Random *random, const RandomSession &session, double wildness)
{
    Lines lines = {"SessionInfo:", " Sessions:"};
    for (int number = 0; number < session.types.size(); ++number) {
        lines.append(" - SessionNum: " + QByteArray::number(number));
        lines.append("   SessionLaps: unlimited");
        lines.append("   SessionType: " + session.types.at(number));
        lines.append("   SessionName: " + session.types.at(number).toUpper());
        lines.append("   ResultsPositions:");
        int position = below(random, 2);
        for (int car : session.drivers) {
            if (chance(random, 0.3))
                continue;
            lines.append("   - Position: " + QByteArray::number(position++));
            if (!chance(random, wildness * 0.1))
                lines.append("     CarIdx: " + QByteArray::number(car));
            lines.append("     LapsComplete: "
                         + text(random, wildness, std::array{"3", "0", "-1", "x"}));
        }
        // Without it, the lines that follow would become part of an empty list.
        if (!chance(random, wildness * 0.3))
            lines += {"   ResultsFastestLap:", "   - CarIdx: 255", "     FastestLap: 0"};
    }
    return lines;
}

Lines carSetup(Random *random, double wildness)
{
    return {
        "CarSetup:",
        " UpdateCount: 1",
        " Chassis:",
        "  Front:",
        "   ToeIn: -1/32 in",
        "  Rear:",
        "   FuelLevel: "
            + text(random, wildness,
                   std::array{"30.0 L", "30.0 kg", "30.0 KG", "30.0", "", "30.0  kg ", "1 kg x"})};
}

void damage(Random *random, Lines *lines)
{
    const int i = below(random, lines->size());
    QByteArray &line = (*lines)[i];
    switch (below(random, 14)) {
    case 0:
        lines->remove(i);
        break;
    case 1:
        lines->insert(i, line);
        break;
    case 2:
        line.prepend(' ');
        break;
    case 3:
        line.prepend(QByteArray(below(random, 9), ' '));
        break;
    case 4:
        line = line.trimmed();
        break;
    case 5:
        line.append('\r');
        break;
    case 6:
        line.prepend('\t');
        break;
    case 7:
        lines->insert(i, QByteArray(1 + below(random, 5), ' '));
        break;
    case 8:
        line.insert(below(random, line.size() + 1), ": ");
        break;
    case 9:
        line.insert(below(random, line.size() + 1), char(128 + below(random, 128)));
        break;
    case 10:
        lines->insert(
            i,
            QByteArray(below(random, 6), ' ')
                + pick(random, std::array{"- Foo", "-", "- ", ":", ": ", "- : ", "- -: 1"}));
        break;
    case 11:
        line.chop(below(random, 4));
        break;
    case 12:
        line.replace(": ", pick(random, std::array{":", " : ", ":  ", ": : "}));
        break;
    default:
        line.insert(below(random, line.size() + 1), pick(random, std::array{'\0', '/', '#', '"'}));
        break;
    }
}

} // namespace

RandomSession::RandomSession(Random *random, double wildness)
{
    const int count = chance(random, 0.1) ? 64 : 1 + below(random, 5);
    for (int car = 0; car < 64 && drivers.size() < count; ++car) {
        if (count == 64 || chance(random, 0.2))
            drivers.append(car);
    }
    if (drivers.isEmpty())
        drivers.append(below(random, 64));
    playerIndex = QByteArray::number(drivers.at(below(random, drivers.size())));
    if (chance(random, wildness * 0.1))
        playerIndex = pick(random, Players);

    const int sessions = 1 + below(random, 3);
    for (int i = 0; i < sessions; ++i)
        types.append(pick(random, Types));
}

QByteArray randomSessionInfo(Random *random, const RandomSession &session, double wildness)
{
    QVector<Lines> sections = {weekendInfo(random, wildness), driverInfo(random, session, wildness),
                               sessionInfo(random, session, wildness), carSetup(random, wildness)};
    for (int i = sections.size() - 1; i > 0; --i)
        std::swap(sections[i], sections[below(random, i + 1)]);

    Lines lines;
    for (const Lines &section : qAsConst(sections)) {
        if (!chance(random, wildness * 0.05))
            lines += section + Lines{QByteArray()};
    }
    if (chance(random, wildness)) {
        for (int damages = below(random, 6); damages > 0 && !lines.isEmpty(); --damages)
            damage(random, &lines);
    }
    if (chance(random, wildness * 0.1)) {
        for (QByteArray &line : lines)
            line.append('\r');
    }

    QByteArray text = "---\n";
    for (const QByteArray &line : qAsConst(lines))
        text += line + '\n';
    text += "...\n";
    if (chance(random, wildness * 0.1))
        text.chop(below(random, 200));
    if (chance(random, wildness * 0.2))
        text.truncate(text.indexOf('\n', below(random, text.size() + 1)) + 1);
    if (chance(random, wildness * 0.05))
        text.clear();
    return text;
}
