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

/// All bytes of the record that a variable uses, in the order of their places.
std::vector<Extent> extentsOf(const irsdk_header &header, const irsdk_varHeader *table)
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
    return extents;
}

/// One finding for each variable that begins inside another. Two names for the same bytes do no
/// harm, but otherwise one of the variables is not where its values are.
void inspectShared(const irsdk_header &header, const irsdk_varHeader *table, const UsedBytes &used,
                   FindingList *findings)
{
    Extent before{0, 0, -1}; // that reaches furthest
    for (const Extent &extent : extentsOf(header, table)) {
        if (extent.begin < before.end) {
            const QString name = nameOf(table[extent.variable]);
            const QString other = nameOf(table[before.variable]);
            const QString shared = bytesFrom(extent.begin, std::min(extent.end, before.end));
            Finding finding(FindingKind::SharedBytes,
                            QStringLiteral("shares %1 of the record with %2").arg(shared, other));
            const bool isSame = extent.begin == before.begin && extent.end == before.end;
            if (!isSame && used.hasAny(before.begin, std::max(extent.end, before.end)))
                finding.loses(
                    QStringLiteral("channel %1 or %2").arg(other.toLower(), name.toLower()));
            findings->add(
                finding.at(header.varHeaderOffset + extent.variable * qint64(sizeof *table))
                    .about(name));
        }
        if (extent.end > before.end)
            before = extent;
    }
}

/// A finding for recorded bytes that belong to no variable. If an entry of the table \a isLost,
/// that includes bytes that are always zero.
void inspectUnnamed(const irsdk_header &header, const irsdk_varHeader *table, const UsedBytes &used,
                    bool isLost, FindingList *findings)
{
    const auto isExplained = [&](qint64 offset) {
        return std::any_of(table, table + header.numVars,
                           [offset](const irsdk_varHeader &variable) {
                               return variable.offset == offset
                                   && (variable.count <= 0 || !isKnownIbtType(variable.type));
                           });
    };
    std::vector<Extent> extents = extentsOf(header, table);
    extents.push_back({header.bufLen, header.bufLen, -1});
    qint64 end = 0; // of what is named so far
    for (const Extent &extent : extents) {
        // How much they use is not known, but they have a finding of their own.
        if (extent.begin > end && (isLost || used.hasAny(end, extent.begin)) && !isExplained(end))
            findings->add(Finding(FindingKind::UnnamedBytes,
                                  bytesFrom(end, extent.begin)
                                      % QLatin1String(" of the records belong to no variable"))
                              .at(header.varBuf[0].bufOffset + end)
                              .loses(QStringLiteral("a channel")));
        end = std::max(end, extent.end);
    }
}

/// Whether the channel of the variable \a index, whose type is unknown, has other values than it
/// would have. It repeats the value that was read before it.
bool isUnknownTypeLost(const irsdk_header &header, const irsdk_varHeader *table, int index,
                       const UsedBytes &used)
{
    const qint64 begin = table[index].offset;
    qint64 end = header.bufLen;
    for (const Extent &extent : extentsOf(header, table)) {
        if (extent.begin >= begin)
            end = std::min(end, extent.begin);
    }
    if (begin < 0)
        return true;
    while (--index >= 0 && !isKnownIbtType(table[index].type)) { }
    if (index < 0)
        return used.hasAny(begin, end);
    const IbtElements readable = ibtReadableElements(table[index], header.bufLen);
    const qint64 size = irsdk_varTypeSize(table[index].type);
    const qint64 last = table[index].offset + readable.last * size;
    if (size == UsedBytes::Step && end - begin == size && begin - last == size)
        return used.hasSteps(begin, end);
    return readable.isEmpty() || used.hasAny(begin, end) || used.hasAny(last, last + size);
}

bool isNameCharacter(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

/// What is wrong with how \a variable is written; empty if nothing is.
QString misspellingOf(const irsdk_varHeader &variable)
{
    const char *nameEnd = std::find(std::begin(variable.name), std::end(variable.name), '\0');
    if (!std::all_of(std::begin(variable.name), nameEnd, isNameCharacter))
        return QStringLiteral("has a name that no simulator gives");
    const char *unitEnd = std::find(std::begin(variable.unit), std::end(variable.unit), '\0');
    const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; };
    return std::any_of(std::begin(variable.unit), unitEnd, isControl)
        ? QStringLiteral("has a unit that no simulator gives")
        : QString();
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

bool isSamePlace(const irsdk_varHeader &one, const irsdk_varHeader &other)
{
    return one.offset == other.offset && one.type == other.type && one.count == other.count;
}

/// Whether an entry of the table describes nothing, perhaps instead of a variable.
bool isEntryLost(const irsdk_header &header, const irsdk_varHeader *table, const Channels &channels)
{
    for (int i = 0; i < header.numVars; ++i) {
        const int channel = channels.value(nameOf(table[i]).toLower());
        if ((nameOf(table[i]).isEmpty() && table[i].count <= 0)
            || (channel > i && isSamePlace(table[channel], table[i])))
            return true;
    }
    return false;
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
                     const Channels &channels, const UsedBytes &used, FindingList *findings)
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
        const bool isSame = isSamePlace(table[channel], table[index]);
        add(FindingKind::EqualNames,
            isSame ? QStringLiteral("is there twice, with the same values")
                   : QStringLiteral("has the same name as a later variable, whose values replace "
                                    "its own"),
            isSame ? QString() : QString(QLatin1String("an earlier variable ") % shown.toLower()));
        return;
    }
    bool isLost = false;
    const QString problem = problemOf(table[index], header.bufLen, &isLost);
    if (table[index].count > 0 && !isKnownIbtType(table[index].type))
        isLost = isUnknownTypeLost(header, table, index, used);
    const QString misspelling = isLost ? QString() : misspellingOf(table[index]);
    if (!misspelling.isEmpty())
        add(FindingKind::Name, misspelling, QLatin1String("channel ") % shown.toLower());
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

bool UsedBytes::hasAny(const std::vector<char> &bytes, qint64 begin, qint64 end)
{
    const auto size = qint64(bytes.size());
    return std::any_of(bytes.begin() + std::min(begin, size), bytes.begin() + std::min(end, size),
                       [](char c) { return c != 0; });
}

void UsedBytes::add(const char *record, int size)
{
    m_bytes.resize(std::size_t(size));
    m_steps.resize(std::size_t(size));
    for (int i = 0; i < size; ++i)
        m_bytes[std::size_t(i)] = char(m_bytes[std::size_t(i)] | record[i]);
    for (int i = Step; i < size; ++i)
        m_steps[std::size_t(i)] = char(m_steps[std::size_t(i)] | (record[i] ^ record[i - Step]));
}

void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      const UsedBytes &used, FindingList *findings)
{
    const Channels channels = channelsOf(header, table);
    for (int i = 0; i < header.numVars; ++i)
        inspectVariable(header, table, i, channels, used, findings);
    inspectShared(header, table, used, findings);
    inspectUnnamed(header, table, used, isEntryLost(header, table, channels), findings);
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
