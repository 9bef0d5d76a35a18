#include "host/text/tablewriter.h"

#include "host/text/escapes.h"
#include "host/text/textwidth.h"

#include <algorithm>

namespace {

constexpr int Gap = 2;
constexpr int LeftOut = -1;

QString styled(const QString &text, TableWriter::Style style)
{
    switch (style) {
    case TableWriter::Style::Best:
        return Escapes::styled(text, Escapes::BoldGreen);
    case TableWriter::Style::Faint:
        return Escapes::styled(text, Escapes::Faint);
    case TableWriter::Style::Plain:
        break;
    }
    return text;
}

int totalWidth(const QVector<int> &widths)
{
    int total = -Gap;
    for (const int width : widths)
        total += width == LeftOut ? 0 : width + Gap;
    return total;
}

} // namespace

TableWriter::TableWriter(const QVector<Column> &columns) : m_columns(columns) { }

void TableWriter::addRow(const QStringList &cells, Style style)
{
    QStringList safe;
    safe.reserve(m_columns.size());
    for (int i = 0; i < m_columns.size(); ++i)
        safe.append(printable(cells.value(i)));
    m_rows.append({safe, style, false});
}

void TableWriter::addSection(const QString &title)
{
    m_rows.append({{printable(title)}, Style::Plain, true});
}

QString TableWriter::text(int width, bool colour) const
{
    const QVector<int> widths = fittedWidths(width);
    QString result;

    QStringList titles;
    for (const Column &column : m_columns)
        titles.append(column.title);
    const QString titleLine = line(titles, widths);
    if (!titleLine.isEmpty())
        result +=
            (colour ? Escapes::styled(titleLine, Escapes::Bold) : titleLine) % QLatin1Char('\n');

    for (const Row &row : m_rows) {
        if (row.isSection) {
            if (!result.isEmpty())
                result += QLatin1Char('\n');
            const QString &title = row.cells.first();
            result += (colour ? Escapes::styled(title, Escapes::Bold) : title) % QLatin1Char('\n');
        } else {
            const QString cells = line(row.cells, widths);
            result += (colour ? styled(cells, row.style) : cells) % QLatin1Char('\n');
        }
    }
    return result;
}

QVector<int> TableWriter::naturalWidths() const
{
    QVector<int> widths;
    for (int i = 0; i < m_columns.size(); ++i) {
        int widest = displayWidth(m_columns.at(i).title);
        for (const Row &row : m_rows) {
            if (!row.isSection)
                widest = std::max(widest, displayWidth(row.cells.at(i)));
        }
        widths.append(widest);
    }
    return widths;
}

QVector<int> TableWriter::fittedWidths(int width) const
{
    QVector<int> widths = naturalWidths();
    if (width <= 0)
        return widths;

    QVector<int> order; // from the least important column to the most important one
    for (int i = m_columns.size() - 1; i >= 0; --i)
        order.append(i);
    std::stable_sort(order.begin(), order.end(),
                     [this](int a, int b) { return m_columns.at(a).rank > m_columns.at(b).rank; });
    const auto spare = [&](int i) {
        const int shortest = m_columns.at(i).shortest;
        return shortest > 0 ? std::max(0, widths.at(i) - shortest) : 0;
    };
    int shortestTotal = totalWidth(widths);
    for (const int i : order)
        shortestTotal -= spare(i);

    for (const int i : order) {
        if (shortestTotal <= width || m_columns.at(i).rank == 0)
            break;
        shortestTotal -= widths.at(i) - spare(i) + Gap;
        widths[i] = LeftOut;
    }
    for (const int i : order)
        widths[i] -= std::min(spare(i), std::max(0, totalWidth(widths) - width));
    return widths;
}

QString TableWriter::line(const QStringList &cells, const QVector<int> &widths) const
{
    QString result;
    int gap = 0; // before the next cell; a cell may be as wide as its recording likes
    for (int i = 0; i < m_columns.size(); ++i) {
        if (widths.at(i) == LeftOut)
            continue;
        const QString cell = elided(cells.at(i), std::max(1, widths.at(i)));
        const int padding = widths.at(i) - displayWidth(cell);
        const bool right = m_columns.at(i).align == Align::Right;
        if (!cell.isEmpty()) {
            result += QString(right ? gap + padding : gap, QLatin1Char(' ')) % cell;
            gap = 0;
        }
        gap += Gap + (right && !cell.isEmpty() ? 0 : padding);
    }
    while (result.endsWith(QLatin1Char(' ')))
        result.chop(1);
    return result;
}
