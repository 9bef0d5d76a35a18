#pragma once

#include "inspect/finding.h"

#include <QMap>
#include <QPair>
#include <QVector>

/// Findings in the order in which they were made. Of each kind and severity the first ones are
/// kept, so that even a recording in which everything is wrong has a short list.
class FindingList
{
public:
    static constexpr int MostOfAKind = 5;

    void add(const Finding &finding);
    /// Counts a finding of this sort, which may spare the making of one: false if it would not be
    /// kept. If true, add() has to follow.
    bool wants(FindingKind kind, Finding::Severity severity);

    /// All that were kept, and after the last one of its kind one that stands for the others.
    QVector<Finding> findings() const;

private:
    using Key = QPair<FindingKind, Finding::Severity>;

    static Key keyOf(const Finding &finding) { return {finding.kind, finding.severity}; }

    QVector<Finding> m_findings;
    QMap<Key, int> m_counts;
};
