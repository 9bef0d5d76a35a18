#include "inspect/infoblame.h"

InfoBlame InfoBlame::oddity(InfoLine::Oddity oddity, const InfoPlace &place)
{
    using Oddity = InfoLine::Oddity;
    switch (oddity) {
    case Oddity::Separators:
        return {place, FindingKind::TextSeparators,
                QStringLiteral("contains \": \" more than once")};
    case Oddity::Tab:
        return {place, FindingKind::TextTab,
                QStringLiteral("contains a tab where a space belongs")};
    case Oddity::CarriageReturn:
        return {place, FindingKind::TextCarriageReturn,
                QStringLiteral("ends with a carriage return, which becomes part of the name or "
                               "value")};
    case Oddity::Blanks:
        return {place, FindingKind::TextBlanks,
                QStringLiteral("contains only spaces, which are read as an entry without a name")};
    case Oddity::Comment:
        return {place, FindingKind::TextComment,
                QStringLiteral("is a comment, but is read as an entry")};
    case Oddity::NoEntry:
        return {place, FindingKind::TextNoEntry,
                QStringLiteral("is not an entry; if it belongs to the line before, that line is "
                               "cut off")};
    case Oddity::None:
        break;
    }
    return {place, FindingKind::TextMisplaced, QStringLiteral("is not found where it belongs")};
}
