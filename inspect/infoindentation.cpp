#include "inspect/infoindentation.h"

namespace {

using Levels = QVector<InfoIndentation::Level>;

/// How many of \a levels \a line may belong to.
int countOpen(const Levels &levels, const InfoLine &line)
{
    const auto isOver = [&line](const InfoIndentation::Level &level) {
        if (level.column != line.column)
            return level.column > line.column;
        return line.kind != InfoLine::Kind::Item || level.isItem;
    };
    int count = levels.size();
    while (count > 0 && isOver(levels.at(count - 1)))
        --count;
    return count;
}

int columnIn(const Levels &levels, const InfoLine &line)
{
    if (levels.isEmpty())
        return 0;
    const InfoIndentation::Level &level = levels.last();
    if (level.isItem)
        return level.column + 2;
    return line.kind == InfoLine::Kind::Item ? level.column : level.column + 1;
}

} // namespace

bool InfoIndentation::isPart(const InfoLine &line, const InfoLine &before)
{
    return line.column == columnIn({{before.column, false, before.name, nullptr}}, line);
}

bool InfoIndentation::canContain(const InfoLine &line) const
{
    return countOpen(m_levels, line) == m_levels.size();
}

int InfoIndentation::meantColumn(const InfoLine &line, int nextColumn, bool isNextItem) const
{
    int most = nextColumn; // of a section whose first part is the next line
    if (line.kind == InfoLine::Kind::Item)
        most -= 2;
    else if (!isNextItem)
        most -= 1;
    Levels levels = m_levels.mid(0, countOpen(m_levels, line));
    if (line.column <= most || line.column == columnIn(levels, line))
        return line.column;
    for (;; levels.removeLast()) {
        const int column = columnIn(levels, line);
        if (column == most)
            return column;
        if (levels.isEmpty())
            return line.column;
    }
}

InfoIndentation::Place InfoIndentation::enter(const InfoLine &line)
{
    const int count = countOpen(m_levels, line);
    if (count < m_levels.size()) {
        m_left = m_levels.mid(count) + m_left;
        m_levels.resize(count);
    }
    if (line.column == expectedColumn(line))
        return Place::Expected;
    return resume(line) ? Place::Resumed : Place::Odd;
}

/// Goes back to the levels that were left, if \a line is indented as a part of one of them.
bool InfoIndentation::resume(const InfoLine &line)
{
    if (m_left.isEmpty())
        return false;
    Levels levels = m_levels + m_left;
    m_left.clear();
    levels.resize(countOpen(levels, line));
    if (levels.size() <= m_levels.size() || line.column != columnIn(levels, line))
        return false;
    m_levels = levels;
    return true;
}

void InfoIndentation::open(const InfoLine &line, const TStringTree *node)
{
    m_levels.append({line.column, line.kind == InfoLine::Kind::Item, line.name, node});
    m_left.clear();
}

int InfoIndentation::expectedColumn(const InfoLine &line) const
{
    return columnIn(m_levels, line);
}
