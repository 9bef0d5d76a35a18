#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// Lays out rows of text as an aligned table, for a terminal of a given width or for a pipe.
class TableWriter
{
public:
    enum class Align { Left, Right };
    enum class Style {
        Plain,
        Best, ///< highlighted
        Faint, ///< dimmed
    };

    struct Column {
        QString title;
        Align align = Align::Left;
        /// Where the table is too wide, cells are shortened and, if that is not enough, columns are
        /// left out, both from the highest rank down; a column of rank 0 stays.
        int rank = 0;
        /// The width that cells may be shortened to; 0: they are not.
        int shortest = 0;
    };

    /// A table without any title has no title row.
    explicit TableWriter(const QVector<Column> &columns);

    /// One cell for each column; a missing cell is empty.
    void addRow(const QStringList &cells, Style style = Style::Plain);
    /// A separate line above the rows that follow, after an empty line unless it is the first.
    void addSection(const QString &title);

    /// The table. Each line ends with a line feed, without trailing spaces.
    ///
    /// \a width is the number of columns to fit in, 0 for no limit; a table that has nothing more
    /// to leave out is wider than that. \a colour adds terminal escape sequences.
    QString text(int width = 0, bool colour = false) const;

private:
    struct Row {
        QStringList cells;
        Style style;
        bool isSection;
    };

    QVector<int> naturalWidths() const;
    QVector<int> fittedWidths(int width) const;
    QString line(const QStringList &cells, const QVector<int> &widths) const;

    QVector<Column> m_columns;
    QVector<Row> m_rows;
};
