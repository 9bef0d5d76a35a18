#include "inspect/findinglist.h"

void FindingList::add(const Finding &finding)
{
    if (m_counts[keyOf(finding)]++ < MostOfAKind)
        m_findings.append(finding);
}

bool FindingList::wants(FindingKind kind, Finding::Severity severity)
{
    int &count = m_counts[{kind, severity}];
    if (count < MostOfAKind)
        return true;
    ++count;
    return false;
}

QVector<Finding> FindingList::findings() const
{
    QVector<Finding> result;
    QMap<Key, int> seen;
    for (const Finding &finding : m_findings) {
        result.append(finding);
        const Key key = keyOf(finding);
        const int others = m_counts.value(key) - MostOfAKind;
        if (++seen[key] < MostOfAKind || others <= 0)
            continue;
        Finding rest(finding.kind, QStringLiteral("%1 more like the last one").arg(others));
        rest.severity = finding.severity;
        rest.others = others;
        result.append(rest);
    }
    return result;
}
