#pragma once

#include <QString>

/// One line of a session info, as whoever wrote it meant it.
struct InfoLine {
    enum class Kind {
        Blank, ///< nothing at all
        Section, ///< "Key:"; what it holds is indented
        Value, ///< "Key: value"
        Item, ///< "- Key: value", the first line of a list item
        Other, ///< no entry
        End, ///< "..." or "---", the end of the document
    };
    /// What is unusual about the writing.
    enum class Oddity {
        None,
        Separators, ///< ": " more than once
        Tab, ///< a tab where a blank belongs
        CarriageReturn, ///< at the end
        Blanks, ///< and nothing else
        Comment,
        NoEntry, ///< neither key nor value
    };

    explicit InfoLine(const QString &text);

    bool isEntry() const
    {
        return kind == Kind::Section || kind == Kind::Value || kind == Kind::Item;
    }

    Kind kind = Kind::Other;
    Oddity oddity = Oddity::None;
    int column = 0; ///< of the key or the dash, from 0
    QString name; ///< the key without blanks; of an item, its value without blanks
    QString value; ///< of a value, as it stands
};

/// \a text in quotation marks, shortened, with escapes for what does not print.
QString quotedLine(const QString &text);
