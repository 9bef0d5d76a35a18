#pragma once

#include "yaml/stringtree.h"

/// A string tree filled from session-info text.
///
/// This is no general YAML parser. It reads the narrow dialect in which simulators write their
/// session info: one entry per line, one blank of indentation per level, list items that begin with
/// "- ", no flow collections, no multi-line scalars. Nothing is rejected: text outside the dialect
/// is filed in some predictable place that nobody asks for.
///
/// A list item becomes a child named after the value of its first entry, so the driver with
/// "- CarIdx: 3" is "DriverInfo/Drivers/3"; that first entry itself is not stored.
class TYamlTree : public TStringTree
{
public:
    TYamlTree();

    /// Leading blanks of \a line, plus one for the dash of a list item. \a isListItem tells whether
    /// the first character behind them is a dash; a line without such a character counts 0 and
    /// leaves \a isListItem alone.
    static int countLeadingSpaces(const QString &line, bool &isListItem);

    /// Adds the content of \a text, zero-terminated Latin-1, to the tree. The first line (the
    /// document marker) and what follows the last line feed are not read. Null is an empty text.
    void setYaml(const char *text);
};
