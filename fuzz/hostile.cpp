#include "fuzz/hostile.h"

#include "tools/recording.h"

#include <algorithm>

namespace {

/// Session info with one driver and \a more lines: after the driver, or inside "WeekendInfo" if
/// \a inWeekend.
QByteArray textWith(const QByteArray &more, bool inWeekend = false)
{
    QByteArray text = Recording::plainSessionInfo();
    const int end = text.indexOf(inWeekend ? "\nSessionInfo:" : "...\n");
    return text.insert(end, more);
}

template <typename LineOf>
QByteArray repeated(int bytes, LineOf lineOf)
{
    QByteArray text;
    text.reserve(bytes + 100);
    for (int i = 0; text.size() < bytes; ++i)
        text += lineOf(i);
    return text;
}

/// A car that ends a lap at every second tick, because its running lap time falls back each time.
void driveShortLaps(Recording *recording, int bytes)
{
    recording->set("IsOnTrack", 1);
    const int ticks = bytes / recording->recordSize();
    recording->ticks(ticks, [](Recording &r, int tick) {
        r.set("LapDistPct", 0.5).set("LapCurrentLapTime", tick % 2 ? 1.0 : 10.0);
    });
}

/// \a more, followed by just the variables that are needed for laps.
Recording smallTable(QVector<RecordingVariable> more = {})
{
    more += {{"IsOnTrack", irsdk_bool},
             {"Lap", irsdk_int},
             {"LapDistPct", irsdk_float},
             {"LapCurrentLapTime", irsdk_float}};
    return Recording::empty().variables(more).sessionInfo(Recording::plainSessionInfo());
}

QByteArray withText(const QByteArray &text)
{
    Recording recording = smallTable();
    recording.sessionInfo(text);
    driveShortLaps(&recording, 10 * recording.recordSize());
    return recording.bytes();
}

QByteArray textOfListItems(int bytes)
{
    return withText(textWith(repeated(bytes, [](int i) -> QByteArray {
        return "   UserName: N\n - CarIdx: " + QByteArray::number(i + 64) + '\n';
    })));
}

QByteArray textOfKeys(int bytes)
{
    return withText(textWith(repeated(
        bytes, [](int i) -> QByteArray { return "Key" + QByteArray::number(i) + ": value\n"; })));
}

QByteArray textOfNodes(int bytes)
{
    return withText(textWith(repeated(
        bytes, [](int i) -> QByteArray { return "Node" + QByteArray::number(i) + ":\n"; })));
}

/// List items of one line, each inside the one before.
QByteArray deepText(int bytes)
{
    return withText(textWith(repeated(bytes, [](int) { return QByteArray("- A: 1\n"); })));
}

QByteArray textOfSeparators(int bytes)
{
    return withText(
        textWith(repeated(bytes, [](int) { return QByteArray(": "); }) + "\nDone: yes\n"));
}

/// Half of the file is one value of the text, the other half is short laps that all carry it.
QByteArray longValue(const QByteArray &before, const QByteArray &piece, bool inWeekend, int bytes)
{
    Recording recording = smallTable();
    recording.sessionInfo(
        textWith(before + repeated(bytes / 2, [&piece](int) { return piece; }) + '\n', inWeekend));
    driveShortLaps(&recording, bytes / 2);
    return recording.bytes();
}

QByteArray longTrackLength(int bytes)
{
    return longValue(" TrackLength: ", "1 ", true, bytes);
}

QByteArray longSessionId(int bytes)
{
    return longValue(" SessionID: ", "1", true, bytes);
}

QByteArray longFuelCapacity(int bytes)
{
    return longValue("DriverInfo:\n DriverCarFuelMaxLtr: ", "1", false, bytes);
}

QByteArray longLicenceColor(int bytes)
{
    return longValue("DriverInfo:\n Drivers:\n - CarIdx: 0\n   LicColor: ", "0x", false, bytes);
}

/// A table of as many variables as fit, all of them the same byte of the record.
QByteArray largeTable(int bytes, bool sameName)
{
    const int count = bytes / Recording::VariableSize;
    QVector<RecordingVariable> more(count);
    for (int i = 0; i < count; ++i) {
        more[i].name = sameName ? QByteArray("Name") : "V" + QByteArray::number(i);
        more[i].type = irsdk_bool;
        more[i].offset = 0;
    }
    Recording recording = smallTable(more);
    driveShortLaps(&recording, 200 * recording.recordSize());
    return recording.bytes();
}

QByteArray tableOfNames(int bytes)
{
    return largeTable(bytes, false);
}

QByteArray tableOfOneName(int bytes)
{
    return largeTable(bytes, true);
}

QByteArray shortLaps(int bytes)
{
    Recording recording = smallTable();
    driveShortLaps(&recording, bytes);
    return recording.bytes();
}

/// Records long enough that the limit of the result does not refuse any lap.
QByteArray shortLapsInLongRecords(int bytes)
{
    Recording recording = smallTable();
    recording.recordSize(64);
    driveShortLaps(&recording, bytes);
    return recording.bytes();
}

/// One lap that needs slightly less memory than its records allow, and short ones that need more.
QByteArray shortLapsBehindALongOne(int bytes)
{
    QVector<RecordingVariable> more(95);
    for (int i = 0; i < more.size(); ++i)
        more[i] = {"V" + QByteArray::number(i), irsdk_bool, "", "", 1, 0};
    Recording recording = smallTable(more);
    recording.set("IsOnTrack", 1).set("LapDistPct", 0.5).set("LapCurrentLapTime", 10);
    const int shortLaps = bytes / 32;
    recording.ticks((bytes - shortLaps) / recording.recordSize());
    driveShortLaps(&recording, shortLaps);
    return recording.bytes();
}

/// \a variables variables of one byte each, side by side.
QByteArray bytesSideBySide(int variables, bool inShortLaps, int bytes)
{
    QVector<RecordingVariable> more(variables);
    for (int i = 0; i < variables; ++i)
        more[i] = {"V" + QByteArray::number(i), irsdk_bool};
    Recording recording = smallTable(more);
    if (inShortLaps) {
        driveShortLaps(&recording, bytes);
    } else {
        recording.set("IsOnTrack", 1).set("LapDistPct", 0.5);
        recording.ticks(bytes / recording.recordSize());
    }
    return recording.bytes();
}

QByteArray shortLapsOfManyChannels(int bytes)
{
    return bytesSideBySide(300, true, bytes);
}

QByteArray oneByteVariables(int bytes)
{
    return bytesSideBySide(300, false, bytes);
}

/// Records of one byte, which is at the same time "on track", the place and the time.
QByteArray oneByteRecords(int bytes)
{
    Recording recording = Recording::empty();
    for (const char *name : {"IsOnTrack", "LapDistPct", "LapCurrentLapTime"})
        recording.variable({name, irsdk_bool, "", "", 1, 0});
    recording.recordSize(1).sessionInfo(Recording::plainSessionInfo());
    recording.record(QByteArray(bytes, '\1'));
    return recording.bytes();
}

/// Variables that share their bytes: a few bytes of a record become thousands of samples.
QByteArray overlaid(int bytes)
{
    QVector<RecordingVariable> more(8000);
    for (int i = 0; i < more.size(); ++i)
        more[i] = {"V" + QByteArray::number(i), irsdk_double, "", "", 1, 0};
    Recording recording = smallTable(more);
    recording.set("IsOnTrack", 1).set("LapDistPct", 0.5);
    recording.ticks(bytes / recording.recordSize());
    return recording.bytes();
}

} // namespace

const QVector<HostileKind> &hostileKinds()
{
    static const QVector<HostileKind> kinds = {
        {"text of list items", textOfListItems, false, false},
        {"text of keys", textOfKeys, false, false},
        {"text of nodes", textOfNodes, false, false},
        {"text nested without end", deepText, false, false},
        {"text of separators on one line", textOfSeparators, false, false},
        {"short laps with a long track length", longTrackLength, true, false},
        {"short laps with a long session id", longSessionId, true, false},
        {"short laps with a long fuel capacity", longFuelCapacity, true, false},
        {"short laps with a long licence color", longLicenceColor, true, false},
        {"table of names", tableOfNames, true, false},
        {"table of one name", tableOfOneName, true, false},
        {"a lap every other tick", shortLaps, true, false},
        {"a lap every other tick of long records", shortLapsInLongRecords, true, false},
        {"short laps behind a long one", shortLapsBehindALongOne, true, false},
        {"a lap every other tick of many channels", shortLapsOfManyChannels, true, false},
        {"variables of one byte", oneByteVariables, false, false},
        {"records of one byte", oneByteRecords, false, false},
        {"variables laid over each other", overlaid, false, true},
    };
    return kinds;
}

const HostileKind &hostileKind(const char *name)
{
    const auto kind =
        std::find_if(hostileKinds().begin(), hostileKinds().end(),
                     [name](const HostileKind &k) { return qstrcmp(k.name, name) == 0; });
    if (kind == hostileKinds().end())
        qFatal("there is no recording %s", name);
    return *kind;
}
