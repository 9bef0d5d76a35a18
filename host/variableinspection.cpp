#include "host/variableinspection.h"

#include "host/findinglist.h"
#include "host/textwidth.h"

#include <QHash>
#include <QString>

#include <algorithm>
#include <iterator>

namespace {

using Severity = Finding::Severity;

QString nameOf(const irsdk_varHeader &variable)
{
    const char *end = std::find(std::begin(variable.name), std::end(variable.name), '\0');
    return QString::fromLatin1(variable.name, int(end - variable.name));
}

/// What costs a variable its channel. Of an array the channel holds the last element, of a text the
/// first character.
QString problemOf(const irsdk_varHeader &variable, qint64 recordSize, bool *isLost)
{
    *isLost = true;
    const qint64 size = irsdk_varTypeSize(variable.type);
    const qint64 count = variable.type == irsdk_char ? 1 : variable.count;
    if (count <= 0)
        return QStringLiteral("has %1 elements, so its channel has no values").arg(variable.count);
    if (size == 0)
        return QStringLiteral("is of type %1, which is not known; its channel repeats the variable "
                              "in front of it")
            .arg(variable.type);

    const qint64 begin = variable.offset;
    const qint64 end = begin + count * size;
    if (begin >= 0 && end <= recordSize)
        return QString();
    // An element in front of the record costs the channel nothing if the last one is inside.
    *isLost = end > recordSize || end < size;
    return QStringLiteral("takes bytes %1 to %2 of records of %3 bytes")
        .arg(begin)
        .arg(end)
        .arg(recordSize);
}

} // namespace

void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      FindingList *findings)
{
    // Variables become channels by their names in lower case.
    QHash<QString, int> lastOfName;
    for (int i = 0; i < header.numVars; ++i)
        lastOfName.insert(nameOf(table[i]).toLower(), i);

    for (int i = 0; i < header.numVars; ++i) {
        const irsdk_varHeader &variable = table[i];
        const QString name = nameOf(variable);
        const auto add = [&](Severity severity, const char *kind, const QString &text) {
            Finding finding;
            finding.severity = severity;
            finding.kind = QLatin1String(kind);
            finding.offset = header.varHeaderOffset + i * qint64(sizeof variable);
            finding.variable = name.isEmpty() ? QStringLiteral("%1").arg(i) : printable(name);
            finding.text = text;
            if (severity == Severity::Damage)
                finding.lost = QLatin1String("channel ") % finding.variable.toLower();
            findings->add(finding);
        };

        bool isLost = false;
        const QString problem = problemOf(variable, header.bufLen, &isLost);
        if (name.isEmpty())
            add(Severity::Remark, "name", QStringLiteral("has no name"));
        if (lastOfName.value(name.toLower()) != i)
            add(Severity::Damage, "equal-names",
                QStringLiteral("has the name of a later one, whose values take its place"));
        if (!problem.isEmpty())
            add(isLost ? Severity::Damage : Severity::Remark, "variable", problem);
    }

    const auto expect = [&](const char *variable, Severity severity, const QString &text) {
        const int index = lastOfName.value(QString::fromLatin1(variable).toLower(), -1);
        if (index >= 0)
            return;
        Finding finding;
        finding.severity = severity;
        finding.kind = QStringLiteral("missing-variable");
        finding.variable = QString::fromLatin1(variable);
        finding.text = text;
        if (severity == Severity::Damage)
            finding.lost = QStringLiteral("all laps");
        findings->add(finding);
    };
    expect("LapDistPct", Severity::Damage,
           QStringLiteral("is missing; without a place on the lap no tick is followed"));
    expect("IsOnTrack", Severity::Damage,
           QStringLiteral("is missing; the car counts as parked for good"));
    expect("LapCurrentLapTime", Severity::Remark,
           QStringLiteral("is missing; nothing tells where a lap ends"));
}
