#pragma once

#include "inspect/infoline.h"

#include <QVector>

class TStringTree;

/// The sections and list items that a line of a session info belongs to, as its indentation tells.
class InfoIndentation
{
public:
    struct Level {
        int column;
        bool isItem;
        QString name;
        const TStringTree *node; ///< null if the tree has none
    };
    enum class Place {
        Expected, ///< indented as it should be
        Odd, ///< not so
        Resumed, ///< so only if the values in front, which are less indented, ended nothing
    };

    bool isEmpty() const { return m_levels.isEmpty(); }
    int size() const { return m_levels.size(); }
    const Level &at(int index) const { return m_levels.at(index); }
    const Level &last() const { return m_levels.last(); }

    /// Whether \a line is indented as a part of the section \a front, the entry in front of it.
    static bool isPart(const InfoLine &line, const InfoLine &front);

    /// Whether \a line may belong to the last level.
    bool holds(const InfoLine &line) const;

    /// Leaves the levels that \a line does not belong to.
    Place enter(const InfoLine &line);

    /// Adds what the lines behind \a line may belong to, \a node of the tree.
    void open(const InfoLine &line, const TStringTree *node);

    /// Column of \a line as a part of the last level.
    int expectedColumn(const InfoLine &line) const;

private:
    bool resume(const InfoLine &line);

    QVector<Level> m_levels;
    QVector<Level> m_left; ///< by the values in front, outermost first
};
