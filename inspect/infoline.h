#pragma once

#include <QString>

/// One line of a session info, as whoever wrote it meant it.
struct InfoLine {
    enum class Kind {
        Blank, ///< nothing at all
        Section, ///< "Key:"; what it contains is indented
        Value, ///< "Key: value"
        Item, ///< "- Key: value", the first line of a list item
        Other, ///< no entry
        End, ///< "..." or "---", the end of the document
    };
    /// What is unusual about the writing.
    enum class Oddity {
        None,
        Separators, ///< ": " more than once
        Tab, ///< a tab where a space belongs
        CarriageReturn, ///< at the end
        Blanks, ///< only spaces and tabs
        Comment,
        NoEntry, ///< neither a key nor a value
    };

    explicit InfoLine(const QString &text);

    bool isEntry() const
    {
        return kind == Kind::Section || kind == Kind::Value || kind == Kind::Item;
    }

    Kind kind = Kind::Other;
    Oddity oddity = Oddity::None;
    int column = 0; ///< of the key or the dash, from 0
    QString name; ///< the key without spaces; for an item, its value without spaces
    QString value; ///< for a value, as it is written
};

/// A line of a session info as it is in the file, and where.
struct InfoPlace {
    int number = 0; ///< from 1; 0 for no line
    qint64 offset = 0; ///< of the line in the file, in bytes
    QString text{};
};

/// True for a character that no simulator writes into its session info.
bool isControl(QChar c);

/// \a text in quotation marks, shortened, with escapes for what does not print.
QString quotedLine(const QString &text);
