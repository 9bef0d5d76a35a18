#pragma once

#include <QString>
#include <QVector>

/// Draws curves over a common axis in text, with the dots of Braille characters.
class TextChart
{
public:
    enum class Colour { Default, Cyan, Yellow };

    /// Columns and lines that a chart needs.
    static constexpr int LeastWidth = 24;
    static constexpr int LeastHeight = 4;

    struct Curve {
        QString name; ///< shown above the chart, in the curve's colour; may be empty
        QVector<double> values; ///< evenly spread over the axis; at least two
        Colour colour = Colour::Default;
    };

    /// The axis goes from 0 to \a end in \a unit.
    TextChart(double end, const QString &unit);

    /// The chart below a line with \a title and the names, each line ended by a line feed.
    ///
    /// \a width and \a height are the columns and lines of the chart, its axis and labels
    /// included, at least LeastWidth and LeastHeight. \a colour adds terminal escape sequences.
    /// Later curves lie above earlier ones.
    QString text(const QString &title, const QVector<Curve> &curves, int width, int height,
                 bool colour) const;

private:
    double m_end;
    QString m_unit;
};
