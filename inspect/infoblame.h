#pragma once

#include "inspect/findingkind.h"
#include "inspect/infoline.h"

#include <QString>

/// A line that is to blame if something is lost, and why.
struct InfoBlame {
    InfoPlace place;
    FindingKind kind;
    QString reason; ///< a sentence whose subject is the line
    bool leadsToDriver = false; ///< without what the line means, nobody is in the player's car

    /// Blames the line at \a place for what is unusual about its writing; if nothing is, for being
    /// lost itself.
    static InfoBlame oddity(InfoLine::Oddity oddity, const InfoPlace &place);
};
