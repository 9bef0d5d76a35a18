#pragma once

#include "yaml/stringtree.h"

/// Stores one line after the other under the node that its indentation selects.
///
/// After a key without a value and after a list item, the current node is one level deeper than the
/// line. After a value it is at the line's level.
class YamlLineReader
{
public:
    explicit YamlLineReader(TStringTree *root);

    /// Stores \a line, given without its line feed. An empty line is skipped.
    void read(const QString &line);

    /// The node that the last line opened, or in which its value was stored.
    const TStringTree *node() const { return m_node; }

private:
    enum class LineKind { None, Key, KeyValue, ListItem };

    void enterListItem(const QString &lastPart);
    void enterKey(const QString &line, int indentation);
    void storeValue(const QString &firstPart, const QString &lastPart);
    void leaveNode();

    TStringTree *m_node;
    int m_indentation = 0;
    LineKind m_lastKind = LineKind::None;
    bool m_isListItem = false;
};
