#include "inspect/variableinspection.h"

#include "ibt/ibtelements.h"
#include "ibt/lapvariables.h"
#include "inspect/findinglist.h"

#include <QMap>
#include <QString>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

QString nameOf(const irsdk_varHeader &variable)
{
    const char *end = std::find(std::begin(variable.name), std::end(variable.name), '\0');
    return QString::fromLatin1(variable.name, int(end - variable.name));
}

/// What is lost without a variable that decides about laps.
struct Dependence {
    LapVariable variable;
    const char *consequence;
    const char *lost;
};

/// Nothing is lost without the other ones.
constexpr Dependence Dependences[] = {
    {LapVariable::LapDistPct, "without the position on the lap, no lap is followed", "all laps"},
    {LapVariable::IsOnTrack, "the car counts as parked all the time", "all laps"},
    {LapVariable::OnPitRoad, "a car that stood in the garage is not seen leaving the pits",
     "stints that begin in the garage"},
    {LapVariable::Lap, "without the number of the lap, no lap ends", "the ends of laps"},
    {LapVariable::LapCurrentLapTime, "nothing shows where a lap ends", "the ends of laps"},
    {LapVariable::LapLastLapTime, "no lap has a time", "lap times"},
};

/// Null if laps do not depend on a variable called \a name.
const Dependence *dependenceOn(const QString &name)
{
    const auto *found = std::find_if(
        std::begin(Dependences), std::end(Dependences), [&name](const Dependence &dependence) {
            const QLatin1String variable(lapVariableName(dependence.variable));
            return name.compare(variable, Qt::CaseInsensitive) == 0;
        });
    return found == std::end(Dependences) ? nullptr : found;
}

/// "bytes 3 to 5" for the bytes from \a begin until before \a end.
QString bytesFrom(qint64 begin, qint64 end)
{
    return end - begin == 1 ? QStringLiteral("byte %1").arg(begin)
                            : QStringLiteral("bytes %1 to %2").arg(begin).arg(end - 1);
}

/// The bytes of a record that a variable uses.
struct Extent {
    qint64 begin;
    qint64 end;
    int variable; ///< its index in the table
};

/// One finding for each variable that begins inside another.
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
            const QString shared = bytesFrom(extent.begin, std::min(extent.end, before.end));
            findings->add(Finding(FindingKind::SharedBytes,
                                  QStringLiteral("shares %1 of the record with %2")
                                      .arg(shared, nameOf(table[before.variable])))
                              .at(header.varHeaderOffset + extent.variable * qint64(sizeof *table))
                              .about(nameOf(table[extent.variable])));
        }
        if (extent.end > before.end)
            before = extent;
    }
}

/// What is wrong with the elements of \a variable; empty if nothing is. \a isLost says whether its
/// channel is lost by that, which for an array contains the last element.
QString problemOf(const irsdk_varHeader &variable, qint32 recordSize, bool *isLost)
{
    const qint64 count = ibtElementCount(variable);
    *isLost = count <= 0 || !isKnownIbtType(variable.type);
    if (count <= 0)
        return QStringLiteral("has %1 elements").arg(variable.count);
    if (!isKnownIbtType(variable.type))
        return QStringLiteral("has the unknown type %1; its channel repeats the value that was "
                              "read before it, or zeros")
            .arg(variable.type);

    const IbtElements readable = ibtReadableElements(variable, recordSize);
    if (readable.first == 0 && readable.last == count - 1)
        return QString();
    *isLost = readable.isEmpty() || readable.last < count - 1;
    const qint64 begin = variable.offset;
    return QStringLiteral("needs %1 of a record of %2 bytes")
        .arg(bytesFrom(begin, begin + count * irsdk_varTypeSize(variable.type)))
        .arg(recordSize);
}

/// For each name in lower case the last variable that has a value, -1 if none has: the one whose
/// values its channel contains.
using Channels = QMap<QString, int>; // no hash, since the file chooses the keys

Channels channelsOf(const irsdk_header &header, const irsdk_varHeader *table)
{
    Channels channels;
    for (int i = 0; i < header.numVars; ++i) {
        const QString name = nameOf(table[i]).toLower();
        const bool hasValue = !ibtReadableElements(table[i], header.bufLen).isEmpty();
        channels.insert(name, hasValue ? i : channels.value(name, -1));
    }
    return channels;
}

/// What is lost with a variable called \a name, whose elements have a problem, if the channel of
/// that name contains values of the variable \a channel. Empty if nothing is.
QString lossOf(const QString &name, int index, int channel, bool isLost)
{
    if (channel >= 0 && channel < index)
        return QLatin1String("a later variable ") % name.toLower();
    return isLost ? QString(QLatin1String("channel ") % name.toLower()) : QString();
}

void inspectVariable(const irsdk_header &header, const irsdk_varHeader *table, int index,
                     const Channels &channels, FindingList *findings)
{
    const QString name = nameOf(table[index]);
    const QString shown = name.isEmpty() ? QString::number(index) : name;
    const auto add = [&](FindingKind kind, const QString &text, const QString &lost) {
        Finding finding(kind, text);
        if (!lost.isEmpty())
            finding.loses(lost);
        findings->add(
            finding.at(header.varHeaderOffset + index * qint64(sizeof *table)).about(shown));
    };

    const int channel = channels.value(name.toLower());
    if (name.isEmpty())
        add(FindingKind::Name, QStringLiteral("has no name"), QString());
    if (channel > index) {
        add(FindingKind::EqualNames,
            QStringLiteral("has the same name as a later variable, whose values replace its own"),
            QLatin1String("an earlier variable ") % shown.toLower());
        return;
    }
    bool isLost = false;
    const QString problem = problemOf(table[index], header.bufLen, &isLost);
    if (problem.isEmpty())
        return;
    const Dependence *dependence = channel < 0 ? dependenceOn(name) : nullptr;
    if (dependence)
        add(FindingKind::Variable,
            problem % QLatin1String("; ") % QLatin1String(dependence->consequence),
            QString::fromLatin1(dependence->lost));
    else
        add(FindingKind::Variable, problem, lossOf(shown, index, channel, isLost));
}

} // namespace

void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      FindingList *findings)
{
    const Channels channels = channelsOf(header, table);
    for (int i = 0; i < header.numVars; ++i)
        inspectVariable(header, table, i, channels, findings);
    inspectExtents(header, table, findings);
    for (const Dependence &dependence : Dependences) {
        const QString name = QString::fromLatin1(lapVariableName(dependence.variable));
        if (!channels.contains(name.toLower()))
            findings->add(
                Finding(FindingKind::MissingVariable,
                        QLatin1String("is missing; ") % QLatin1String(dependence.consequence))
                    .about(name)
                    .loses(QString::fromLatin1(dependence.lost)));
    }
}
