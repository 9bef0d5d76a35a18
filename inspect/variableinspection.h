#pragma once

#include "ibt/ibtformat.h"

#include <QtGlobal>

#include <vector>

class FindingList;

/// What the bytes of the records are in all of them.
class UsedBytes
{
public:
    /// The size of most values.
    static constexpr int Step = 4;

    /// Adds a \a record of \a size bytes, the same for all.
    void add(const char *record, int size);
    /// Whether any byte from \a begin, which is not negative, until before \a end is ever not zero.
    bool hasAny(qint64 begin, qint64 end) const { return hasAny(m_bytes, begin, end); }
    /// Whether any of these bytes is ever another than that Step bytes before it.
    bool hasSteps(qint64 begin, qint64 end) const { return hasAny(m_steps, begin, end); }

private:
    static bool hasAny(const std::vector<char> &bytes, qint64 begin, qint64 end);

    std::vector<char> m_bytes; ///< all records, laid over each other
    std::vector<char> m_steps; ///< the same for the differences to the bytes before
};

/// Adds to \a findings what is wrong with the \a header.numVars variables of \a table. What is lost
/// by it may depend on the bytes that are \a used.
void inspectVariables(const irsdk_header &header, const irsdk_varHeader *table,
                      const UsedBytes &used, FindingList *findings);
