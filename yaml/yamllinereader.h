#pragma once

#include "yaml/stringtree.h"

/// Stores one line after the other under the node that its indentation selects.
///
/// After a key without a value and after a list item, the current node is one level deeper than the
/// line. After a value it is at the line's level.
class YamlLineReader
{
public:
    /// Where a line was filed.
    struct Filing {
        enum class Action {
            Nothing, ///< an empty line
            Opened, ///< a node, for a key or a list item
            Stored, ///< a value
        };
        Action action = Action::Nothing;
        /// That was opened or has the value; after an empty line, that of the line before.
        const TStringTree *node = nullptr;
        QString name{}; ///< of the node or the value
        QString value{};

        /// The node to which a line that is not empty added something.
        const TStringTree *parent() const
        {
            return action == Action::Opened ? node->parent() : node;
        }
    };

    explicit YamlLineReader(TStringTree *root);

    /// Stores \a line, given without its line feed. An empty line is skipped.
    Filing read(const QString &line);

    /// Goes on to where read() stores \a line, but stores no value: on a tree that was read from
    /// the same lines, it changes nothing.
    Filing follow(const QString &line);

private:
    enum class LineKind { None, Key, KeyValue, ListItem };

    Filing open(const QString &name, LineKind kind);
    void leaveNode();

    TStringTree *m_node;
    int m_indentation = 0;
    LineKind m_lastKind = LineKind::None;
    bool m_isListItem = false;
};
