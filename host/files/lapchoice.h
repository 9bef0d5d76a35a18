#pragma once

#include "analysis/laps.h"

#include <QPair>
#include <QString>
#include <QVector>

#include <optional>

/// The laps of a file that the user chose, on the command line as `--lap CHOICE` or `FILE:CHOICE`:
///
///     best     the fastest timed lap
///     all      every lap
///     3,5-7    by their # in the output of `laps`
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
    enum class Kind { Best, All, Representative, Listed };
    using Range = QPair<int, int>; ///< numbers of the first and the last lap

    explicit LapChoice(Kind kind) : m_kind(kind) { }

    Kind m_kind;
    QVector<Range> m_ranges; ///< for Listed, at least one
};
