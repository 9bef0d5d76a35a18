#include "inspect/variableinspection.h"

#include "inspect/findinglist.h"

#include <QMap>
#include <QString>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

using Severity = Finding::Severity;

QString nameOf(const irsdk_varHeader &variable)
{
    const char *end = std::find(std::begin(variable.name), std::end(variable.name), '\0');
    return QString::fromLatin1(variable.name, int(end - variable.name));
}

/// A variable by which laps are told apart, and what it costs to be without it.
struct DriveVariable {
    const char *name;
    const char *cost;
    const char *lost;
};

constexpr DriveVariable DriveVariables[] = {
    {"LapDistPct", "without a place on the lap no tick is followed", "all laps"},
    {"IsOnTrack", "the car counts as parked for good", "all laps"},
    {"OnPitRoad", "a car that stood in the garage is not seen to leave the pits",
     "stints that begin in the garage"},
    {"Lap", "without the number of the lap none ends", "the ends of laps"},
    {"LapCurrentLapTime", "nothing tells where a lap ends", "the ends of laps"},
    {"LapLastLapTime", "no lap has a time", "lap times"},
};

const DriveVariable *driveVariable(const QString &name)
{
    const auto *found = std::find_if(
        std::begin(DriveVariables), std::end(DriveVariables), [&name](const DriveVariable &drive) {
            return name.compare(QLatin1String(drive.name), Qt::CaseInsensitive) == 0;
        });
    return found == std::end(DriveVariables) ? nullptr : found;
}

/// "bytes 3 to 5" for the bytes from \a begin to in front of \a end.
QString bytesFrom(qint64 begin, qint64 end)
{
    return end - begin == 1 ? QStringLiteral("byte %1").arg(begin)
                            : QStringLiteral("bytes %1 to %2").arg(begin).arg(end - 1);
}

/// The bytes of a record that \a variable takes.
struct Extent {
    qint64 begin;
    qint64 end;
    int variable; ///< its index in the table
};

/// Where variables lie on each other: one finding for each that begins inside another.
void inspectExtents(const irsdk_header &header, const irsdk_varHeader *table, FindingList *findings)
{
    std::vector<Extent> extents;
    for (int i = 0; i < header.numVars; ++i) {
        const qint64 begin = table[i].offset;
        const qint64 size = qint64(table[i].count) * irsdk_varTypeSize(table[i].type);
        if (begin >= 0 && size > 0 && begin + size <= header.bufLen)
            extents.push_back({begin, begin + size, i});
    }
    std::stable_sort(extents.begin(), extents.end(),
                     [](const Extent &a, const Extent &b) { return a.begin < b.begin; });
    Extent before{0, 0, -1}; // that reaches furthest
    for (const Extent &extent : extents) {
        if (extent.begin < before.end) {
            Finding finding;
            finding.kind = QStringLiteral("shared-bytes");
            finding.offset = header.varHeaderOffset + extent.variable * qint64(sizeof *table);
            finding.variable = nameOf(table[extent.variable]);
            finding.text = QStringLiteral("shares %1 of the record with %2")
                               .arg(bytesFrom(extent.begin, std::min(extent.end, before.end)),
                                    nameOf(table[before.variable]));
            findings->add(finding);
        }
        if (extent.end > before.end)
            before = extent;
    }
}

/// Elements that are converted: of a text the first character.
qint64 elementsOf(const irsdk_varHeader &variable)
{
    return variable.type == irsdk_char ? 1 : variable.count;
}

/// Whether an element of \a variable is converted, so that its name has a value. Those outside of
/// the record are not, if their type tells where they end.
bool hasValue(const irsdk_varHeader &variable, qint64 recordSize)
{
    const qint64 size = irsdk_varTypeSize(variable.type);
    const qint64 count = elementsOf(variable);
    if (size == 0)
        return count > 0;
    const qint64 outside = variable.offset < 0 ? (size - 1 - variable.offset) / size : 0;
    return outside < count && variable.offset + (outside + 1) * size <= recordSize;
}

/// What costs a variable its channel, which of an array holds the last element.
QString problemOf(const irsdk_varHeader &variable, qint64 recordSize, bool *isLost)
{
    *isLost = true;
    const qint64 size = irsdk_varTypeSize(variable.type);
    const qint64 count = elementsOf(variable);
    if (count <= 0)
        return QStringLiteral("has %1 elements").arg(variable.count);
    if (size == 0)
        return QStringLiteral(
                   "is of type %1, which is not known; its channel repeats what was read "
                   "in front of it, or zeros")
            .arg(variable.type);

    const qint64 begin = variable.offset;
    const qint64 end = begin + count * size;
    if (begin >= 0 && end <= recordSize)
        return QString();
    // An element in front of the record costs the channel nothing if the last one is inside.
    *isLost = end > recordSize || end < size;
    return QStringLiteral("takes %1 of records of %2 bytes")
        .arg(bytesFrom(begin, end))
        .arg(recordSize);
}

} // namespace

void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      FindingList *findings)
{
    // Variables become channels by their names in lower case: the last one of a name that has a
    // value, -1 if none has.
    QMap<QString, int> channels; // no hash, since the file chooses the keys
    for (int i = 0; i < header.numVars; ++i) {
        const QString name = nameOf(table[i]).toLower();
        channels.insert(name, hasValue(table[i], header.bufLen) ? i : channels.value(name, -1));
    }

    for (int i = 0; i < header.numVars; ++i) {
        const irsdk_varHeader &variable = table[i];
        const QString name = nameOf(variable);
        const QString shown = name.isEmpty() ? QString::number(i) : name;
        const auto add = [&](const char *kind, const QString &text, const QString &lost) {
            Finding finding;
            finding.severity = lost.isEmpty() ? Severity::Remark : Severity::Damage;
            finding.kind = QLatin1String(kind);
            finding.offset = header.varHeaderOffset + i * qint64(sizeof variable);
            finding.variable = shown;
            finding.text = text;
            finding.lost = lost;
            findings->add(finding);
        };

        const int channel = channels.value(name.toLower());
        if (name.isEmpty())
            add("name", QStringLiteral("has no name"), QString());
        if (channel > i) {
            add("equal-names",
                QStringLiteral("has the name of a later one, whose values take its place"),
                QLatin1String("an earlier variable ") % shown.toLower());
            continue;
        }
        bool isLost = false;
        const QString problem = problemOf(variable, header.bufLen, &isLost);
        if (problem.isEmpty())
            continue;
        const DriveVariable *drive = channel < 0 ? driveVariable(name) : nullptr;
        if (drive)
            add("variable", problem % QLatin1String("; ") % QLatin1String(drive->cost),
                QString::fromLatin1(drive->lost));
        else if (channel >= 0 && channel < i)
            add("variable", problem, QLatin1String("a later variable ") % shown.toLower());
        else
            add("variable", problem,
                isLost ? QString(QLatin1String("channel ") % shown.toLower()) : QString());
    }

    inspectExtents(header, table, findings);
    for (const DriveVariable &drive : DriveVariables) {
        if (channels.contains(QString::fromLatin1(drive.name).toLower()))
            continue;
        Finding finding;
        finding.severity = Severity::Damage;
        finding.kind = QStringLiteral("missing-variable");
        finding.variable = QString::fromLatin1(drive.name);
        finding.text = QLatin1String("is missing; ") % QLatin1String(drive.cost);
        finding.lost = QString::fromLatin1(drive.lost);
        findings->add(finding);
    }
}
