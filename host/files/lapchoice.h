#pragma once

#include "analysis/laps.h"

#include <QString>
#include <QVector>

#include <optional>

/// The laps of a file that the user chose, on the command line as `--lap CHOICE` or `FILE:CHOICE`:
///
///     best     the fastest timed lap
///     last     the last lap
///     all      every lap
///     3,5-7    by their # in the output of `laps`
///     3-       from there to the last one
///
/// and any list of these, in capitals or not.
class LapChoice
{
public:
    static LapChoice best() { return LapChoice(Kind::Best); }
    static LapChoice all() { return LapChoice(Kind::All); }
    /// The lap that represents a file if the user chooses none: see representativeLap().
    static LapChoice representative() { return LapChoice(Kind::Representative); }

    /// Reads \a text as described above. Without a result \a problem says what is wrong with it.
    static std::optional<LapChoice> parse(const QString &text, QString *problem);

    /// The indices of the chosen laps in \a laps, in the order chosen, each once. Empty if \a laps
    /// lack one of them: then \a problem says which, and what to choose from.
    QVector<int> indices(const Laps &laps, QString *problem) const;

    /// What parse() reads as the same choice; empty for representative().
    QString text() const;

private:
    enum class Kind { Best, Last, All, Representative, Range };
    struct Item {
        Kind kind;
        int first; ///< of a range: the number of a lap
        int last; ///< the same; the largest int for the last lap, whatever its number
    };

    explicit LapChoice(Kind kind) : m_items{{kind, 0, 0}} { }

    static std::optional<Item> parseItem(const QString &text);
    static QVector<int> itemIndices(const Item &item, const Laps &laps, QString *problem);

    QVector<Item> m_items; ///< at least one
};
