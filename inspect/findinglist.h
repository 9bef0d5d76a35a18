#pragma once

#include "inspect/finding.h"

#include <QMap>
#include <QVector>

/// Findings in the order in which they were made. Of each kind and severity the first ones are
/// kept, so that a recording in which everything is wrong has a short list, too.
class FindingList
{
public:
    static constexpr int MostOfAKind = 5;

    void add(const Finding &finding);

    /// All that were kept, and behind the last one of its kind one that stands for the others.
    QVector<Finding> findings() const;

private:
    QVector<Finding> m_findings;
    QMap<QString, int> m_counts; ///< by kind and severity
};
