#include "inspect/findinglist.h"

namespace {

QString keyOf(const Finding &finding)
{
    return finding.kind % QString::number(int(finding.severity));
}

} // namespace

void FindingList::add(const Finding &finding)
{
    if (m_counts[keyOf(finding)]++ < MostOfAKind)
        m_findings.append(finding);
}

QVector<Finding> FindingList::findings() const
{
    QVector<Finding> result;
    QMap<QString, int> seen;
    for (const Finding &finding : m_findings) {
        result.append(finding);
        const QString key = keyOf(finding);
        const int others = m_counts.value(key) - MostOfAKind;
        if (++seen[key] < MostOfAKind || others <= 0)
            continue;
        Finding rest;
        rest.severity = finding.severity;
        rest.kind = finding.kind;
        rest.text = QStringLiteral("%1 more like the last one").arg(others);
        rest.others = others;
        result.append(rest);
    }
    return result;
}
