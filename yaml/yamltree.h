#pragma once

#include "yaml/stringtree.h"

/// A string tree filled from session-info text.
///
/// This is not a general YAML parser. It reads the narrow dialect in which simulators write their
/// session info: one entry per line, one space of indentation per level, list items that begin with
/// "- ", no flow collections, no multi-line scalars. Nothing is rejected: text outside the dialect
/// is stored in a predictable place that nobody looks up.
///
/// A list item becomes a child named after the value of its first entry, so the driver with
/// "- CarIdx: 3" is "DriverInfo/Drivers/3"; that first entry itself is not stored.
class TYamlTree : public TStringTree
{
public:
    TYamlTree();

    /// The number of leading spaces of \a line, plus one for the dash of a list item. \a isListItem
    /// becomes true if the first character after the spaces is a dash. For a line of only spaces
    /// the result is 0, and \a isListItem does not change.
    static int countLeadingSpaces(const QString &line, bool &isListItem);

    /// Adds the content of \a text, zero-terminated Latin-1, to the tree. The first line (the
    /// document marker) and what follows the last line feed are skipped. Null is an empty text.
    void setYaml(const char *text);
};
