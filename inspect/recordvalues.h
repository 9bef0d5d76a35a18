#pragma once

#include "ibt/ibtformat.h"

#include <vector>

/// The values of a record beside those of its neighbours. From tick to tick few values change and
/// come back at once. In a record that was overwritten, whole stretches do.
class RecordValues
{
public:
    /// \a table has \a header.numVars entries.
    RecordValues(const irsdk_header &header, const irsdk_varHeader *table);

    /// Whether \a record cannot come from the drive that \a before and \a after, the records next
    /// to it, come from.
    bool isForeign(const char *before, const char *record, const char *after) const;

private:
    /// An element of a variable.
    struct Element {
        int offset; ///< in the record
        int size; ///< in bytes
        bool isTruth; ///< 0 or 1
        bool isSteady; ///< may change, but does not come back
    };

    std::vector<Element> m_elements;
};
