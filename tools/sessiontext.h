#pragma once

#include <QByteArray>
#include <QStringBuilder>

/// A session-info text that grows line by line, in the simulator's dialect: one entry per line and
/// one space per level.
class SessionText
{
public:
    /// \a value with \a decimals digits after the point.
    static QByteArray number(double value, int decimals)
    {
        return QByteArray::number(value, 'f', decimals);
    }

    /// One line, indented by \a level spaces.
    void line(int level, const QByteArray &text) { m_text += QByteArray(level, ' ') + text + '\n'; }
    /// A line with a key and its value. Without a value it ends in a space.
    void entry(int level, const QByteArray &key, const QByteArray &value)
    {
        line(level, key + ": " + value);
    }
    void entry(int level, const QByteArray &key, int value)
    {
        entry(level, key, QByteArray::number(value));
    }
    /// The first line of a list item, \a level spaces and a dash. Its other lines need two more.
    void item(int level, const QByteArray &key, int value) { entry(level, "- " + key, value); }
    void blank() { m_text += '\n'; }

    const QByteArray &text() const { return m_text; }

private:
    QByteArray m_text;
};
