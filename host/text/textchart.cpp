#include "host/text/textchart.h"

#include "host/text/displaytext.h"
#include "host/text/escapes.h"
#include "host/text/textwidth.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Each character has two columns of four dots.
constexpr int DotColumns = 2;
constexpr int DotRows = 4;
constexpr ushort EmptyBraille = 0x2800;

/// The bit of the dot at \a column and \a row of its character.
ushort dotBit(int column, int row)
{
    static constexpr ushort bits[DotRows][DotColumns] = {
        {0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    return bits[row][column];
}

QString inColour(const QString &text, TextChart::Colour colour, bool isWanted)
{
    if (!isWanted || colour == TextChart::Colour::Default)
        return text;
    return Escapes::styled(text,
                           colour == TextChart::Colour::Cyan ? Escapes::Cyan : Escapes::Yellow);
}

/// Characters that curves are drawn into, dot by dot.
class Canvas
{
public:
    Canvas(int width, int height)
        : m_width(width), m_height(height), m_cells(std::size_t(width) * std::size_t(height))
    {
    }

    int dotWidth() const { return m_width * DotColumns; }
    int dotHeight() const { return m_height * DotRows; }

    /// Sets the dots of \a column between two rows.
    void drawColumn(int column, int row, int otherRow, TextChart::Colour colour)
    {
        for (int r = std::min(row, otherRow); r <= std::max(row, otherRow); ++r) {
            Cell &cell = m_cells[std::size_t(r / DotRows) * std::size_t(m_width)
                                 + std::size_t(column / DotColumns)];
            cell.dots = ushort(cell.dots | dotBit(column % DotColumns, r % DotRows));
            cell.colour = colour;
        }
    }

    /// One line of characters; \a blank is shown where there is no dot.
    QString line(int row, QChar blank, bool colour) const
    {
        QString text;
        const auto *cells = m_cells.data() + std::size_t(row) * std::size_t(m_width);
        for (int column = 0; column < m_width;) {
            // Neighbours of one colour share their escape sequences.
            const TextChart::Colour run = cells[column].colour;
            QString characters;
            for (; column < m_width && cells[column].colour == run; ++column) {
                const ushort dots = cells[column].dots;
                characters += dots ? QChar(ushort(EmptyBraille + dots)) : blank;
            }
            text += inColour(characters, run, colour);
        }
        while (text.endsWith(QLatin1Char(' ')))
            text.chop(1);
        return text;
    }

private:
    struct Cell {
        ushort dots = 0;
        TextChart::Colour colour = TextChart::Colour::Default;
    };

    int m_width;
    int m_height;
    std::vector<Cell> m_cells;
};

void draw(Canvas *canvas, const TextChart::Curve &curve, double lowest, double highest)
{
    const int lastRow = canvas->dotHeight() - 1;
    const int lastColumn = canvas->dotWidth() - 1;
    int previousRow = -1;
    for (int column = 0; column <= lastColumn; ++column) {
        const int index = int(std::lround(double(column) / lastColumn * (curve.values.size() - 1)));
        const double part = (curve.values.at(index) - lowest) / (highest - lowest);
        if (!(part >= 0 && part <= 1)) { // not a number, or out of the range of a double
            previousRow = -1;
            continue;
        }
        const int row = lastRow - int(std::lround(part * lastRow));
        canvas->drawColumn(column, row, previousRow < 0 ? row : previousRow, curve.colour);
        previousRow = row;
    }
}

} // namespace

TextChart::TextChart(double end, const QString &unit) : m_end(end), m_unit(unit) { }

QString TextChart::text(const QString &title, const QVector<Curve> &curves, int width, int height,
                        bool colour) const
{
    double lowest = curves.first().values.first();
    double highest = lowest;
    QString result = title;
    for (const Curve &curve : curves) {
        const auto range = std::minmax_element(curve.values.begin(), curve.values.end());
        lowest = std::min(lowest, *range.first);
        highest = std::max(highest, *range.second);
        if (!curve.name.isEmpty())
            result += QLatin1String("  ")
                % inColour(QStringLiteral("━━ ") % curve.name, curve.colour, colour);
    }
    if (!(highest > lowest))
        highest = lowest + 1;
    result += QLatin1Char('\n');

    const auto label = [](double value) {
        constexpr double fixedBelow = 1e6;
        return QString::number(value, std::abs(value) < fixedBelow ? 'f' : 'g', 2);
    };
    const int labelWidth = std::max(label(lowest).size(), label(highest).size());
    const int rows = height - 3; // the title, the axis and its labels
    Canvas canvas(width - labelWidth - 2, rows);
    for (const Curve &curve : curves)
        draw(&canvas, curve, lowest, highest);

    const bool hasZero = lowest < 0 && highest > 0 && std::isfinite(highest - lowest);
    const int zeroRow = hasZero ? int(highest / (highest - lowest) * (rows - 1) + 0.5) : -1;
    for (int row = 0; row < rows; ++row) {
        QString text;
        if (row == zeroRow)
            text = QStringLiteral("0");
        else if (row == 0)
            text = label(highest);
        else if (row == rows - 1)
            text = label(lowest);
        result += text.rightJustified(labelWidth)
            % (text.isEmpty() ? QStringLiteral(" │") : QStringLiteral(" ┤"))
            % canvas.line(row, row == zeroRow ? QChar(u'┈') : QLatin1Char(' '), colour)
            % QLatin1Char('\n');
    }

    const QString indent(labelWidth + 1, QLatin1Char(' '));
    const int axisWidth = width - labelWidth - 2;
    const QString end =
        elided(formatNumber(std::round(m_end)) % QLatin1Char(' ') % m_unit, axisWidth - 1);
    result += indent % QChar(u'└') % QString(axisWidth, QChar(u'─')) % QLatin1Char('\n');
    result += indent % QLatin1String(" 0") % end.rightJustified(axisWidth - 1) % QLatin1Char('\n');
    return result;
}
