#pragma once

#include "inspect/infoline.h"

#include <QVector>

class TStringTree;

/// The sections and list items that a line of a session info belongs to, by its indentation.
class InfoIndentation
{
public:
    struct Level {
        int column;
        bool isItem;
        QString name;
        const TStringTree *node; ///< of the tree, where it belongs; null if there is none
    };
    enum class Place {
        Expected, ///< indented as it should be
        Odd, ///< indented in another way
        Resumed, ///< as expected only if the less indented values before it ended nothing
    };

    bool isEmpty() const { return m_levels.isEmpty(); }
    int size() const { return m_levels.size(); }
    const Level &at(int index) const { return m_levels.at(index); }
    const Level &last() const { return m_levels.last(); }

    /// Whether \a line is indented as a part of the section \a before, the entry before it.
    static bool isPart(const InfoLine &line, const InfoLine &before);

    /// Whether \a line may belong to the last level.
    bool canContain(const InfoLine &line) const;

    /// The column that \a line, which opens a level, is meant to have: its own, unless the line
    /// after it, indented by \a nextColumn, would be a part of it if it were indented less.
    int meantColumn(const InfoLine &line, int nextColumn, bool isNextItem) const;

    /// Leaves the levels that \a line does not belong to.
    Place enter(const InfoLine &line);

    /// Adds a level for \a line, to which the lines after it may belong. The tree
    /// has \a node for it, or null.
    void open(const InfoLine &line, const TStringTree *node);

    /// Column of \a line as a part of the last level.
    int expectedColumn(const InfoLine &line) const;

private:
    bool resume(const InfoLine &line);

    QVector<Level> m_levels;
    QVector<Level> m_left; ///< by the values before, outermost first
};
