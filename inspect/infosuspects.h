#pragma once

#include "inspect/infoblame.h"
#include "inspect/infoindentation.h"

#include <optional>

/// Whom to blame if an entry of a session info is lost that is not odd itself: the last line that
/// made the reader see other levels than the indentation means. Nobody notices before an entry is
/// lost by it, perhaps many lines later.
class InfoSuspects
{
public:
    /// \a blame is odd, which may do no harm.
    void suspect(const InfoBlame &blame) { m_suspect = blame; }

    /// Goes to the level to which the entry \a line at \a place belongs, and suspects what is odd
    /// on the way.
    void enter(const InfoLine &line, const InfoPlace &place, InfoIndentation *levels);

    /// The entry is read, its own level not yet opened; \a leadsToDriver as in InfoBlame.
    void leave(const InfoLine &line, const InfoPlace &place, bool leadsToDriver);

    /// An entry indented by \a column spaces was found where it belongs: nothing before did harm,
    /// except perhaps an odd indentation that is still going on.
    void acquit(int column);

    /// Whether a line may have changed levels, so that the lines after it are lost.
    bool areAny() const;

    /// The line to blame, if there is one; it is not suspected any more.
    std::optional<InfoBlame> take();

private:
    /// The entry before.
    struct Entry {
        InfoLine line;
        InfoPlace place;
        bool leadsToDriver;
    };
    /// A line whose indentation does no harm until it ends.
    struct Indented {
        InfoBlame blame;
        int column;
    };

    InfoBlame blameBefore(FindingKind kind, const QString &reason) const;
    void suspectLevels(const InfoLine &line, InfoIndentation *levels);

    std::optional<Entry> m_before;
    std::optional<InfoBlame> m_suspect;
    std::optional<Indented> m_indented;
};
