#include "inspect/findingkind.h"

#include <iterator>

namespace {

struct KindText {
    FindingKind kind;
    const char *name;
    const char *meaning;
};

constexpr KindText KindTexts[] = {
    {FindingKind::Header, "header", "the file ends before its headers do, so everything is lost"},
    {FindingKind::Claim, "claim",
     "the session info or the variable table does not lie in the file, or has a negative length "
     "or offset, so everything is lost"},
    {FindingKind::Unreadable, "unreadable",
     "the system could not read a part of the file, or the file was shortened while it was read"},
    {FindingKind::Memory, "memory",
     "this machine does not have enough memory to look into the recording, so what is lost is "
     "unknown"},
    {FindingKind::Overlap, "overlap",
     "two parts of the file share bytes; what is lost by it has a finding of its own"},
    {FindingKind::Records, "records",
     "there are fewer records than the sub-header counts, the last record is cut off, bytes "
     "follow the last record, or the headers leave no place for records"},
    {FindingKind::RecordCount, "record-count",
     "the sub-header counts fewer records than there are, because the recording was never closed, "
     "or more although the last one is there"},
    {FindingKind::EmptyRecords, "empty-records",
     "the last records contain only zeros, because they were never written to the disk"},
    {FindingKind::ForeignRecords, "foreign-records",
     "records do not fit the ones next to them: they were overwritten, or bytes were inserted or "
     "lost before them"},
    {FindingKind::EndTime, "end-time", "the sub-header ends at another time than the last record"},
    {FindingKind::Variable, "variable",
     "a variable does not lie in the record, has no elements, or has an unknown type"},
    {FindingKind::EqualNames, "equal-names",
     "a variable has the same name as a later one; this is damage unless it is also in the same "
     "place"},
    {FindingKind::Name, "name",
     "a variable has no name, or one or a unit with characters that no simulator uses"},
    {FindingKind::MissingVariable, "missing-variable",
     "a variable is missing that says where the car is, when a lap ends, or how long it took"},
    {FindingKind::SharedBytes, "shared-bytes",
     "two variables use the same bytes of a record; this is damage unless all of them are the "
     "same"},
    {FindingKind::UnnamedBytes, "unnamed-bytes",
     "bytes of the records that are not always zero belong to no variable"},
    {FindingKind::TimeGap, "time-gap", "ticks are missing between two records"},
    {FindingKind::TimeReturn, "time-return", "the time goes backwards"},
    {FindingKind::TimeStandstill, "time-standstill", "the time never advances"},
    {FindingKind::TimeUnusable, "time-unusable",
     "the time is not a number, or one that no session has"},
    {FindingKind::TickRate, "tick-rate",
     "the tick rate does not fit the records, or there is none, so missing ticks cannot be "
     "detected"},
    {FindingKind::TextSeparators, "text-separators", "a line contains \": \" more than once"},
    {FindingKind::TextNoEntry, "text-no-entry",
     "a line is not an entry, as after a line break in a value"},
    {FindingKind::TextTab, "text-tab", "a line contains a tab where a space belongs"},
    {FindingKind::TextCarriageReturn, "text-carriage-return", "a line ends with a carriage return"},
    {FindingKind::TextBlanks, "text-blanks", "a line contains only spaces"},
    {FindingKind::TextComment, "text-comment", "a line is a comment"},
    {FindingKind::TextIndentation, "text-indentation",
     "a line is indented by too many or too few spaces"},
    {FindingKind::TextEmptySection, "text-empty-section",
     "a section or list is empty, and something else follows"},
    {FindingKind::TextShortItem, "text-short-item",
     "a list item has only one line, and something else follows"},
    {FindingKind::TextSectionBlank, "text-section-blank",
     "a section or list has a space after its colon"},
    {FindingKind::TextRepeated, "text-repeated", "a later entry replaces an entry"},
    {FindingKind::TextMisplaced, "text-misplaced", "an entry is lost for no other reason"},
    {FindingKind::TextFirstLine, "text-first-line",
     "the first line is an entry, but is never read"},
    {FindingKind::TextLastLine, "text-last-line",
     "the last line has no line feed, so it is not read"},
    {FindingKind::TextDocument, "text-document",
     "text follows the end of the first document, and is not read"},
    {FindingKind::TextEnd, "text-end", "a zero byte ends the text early"},
    {FindingKind::TextMissing, "text-missing",
     "a value that laps carry is missing, and the text shows that it was written"},
    {FindingKind::TextValue, "text-value",
     "a value that laps carry cannot be what was written: it is not a number, or contains a "
     "control "
     "character"},
    {FindingKind::NoDriver, "no-driver",
     "nobody is in the player's car, although every line is found; the finding has the line of the "
     "car or its driver, if there is one"},
    {FindingKind::NoLap, "no-lap", "no lap of the player's car begins, so the only lap is empty"},
    {FindingKind::TooLarge, "too-large",
     "the recording is refused because its laps would be out of all proportion, or need more "
     "memory than is available"},
    {FindingKind::Import, "import", "what the plug-in says, or the search for a plug-in"},
};

constexpr bool isInOrder()
{
    for (int i = 0; i < FindingKindCount; ++i) {
        if (int(KindTexts[i].kind) != i)
            return false;
    }
    return std::size(KindTexts) == FindingKindCount;
}
static_assert(isInOrder(), "a kind is the index of its texts");

} // namespace

QString findingKindName(FindingKind kind)
{
    return QString::fromLatin1(KindTexts[int(kind)].name);
}

QString findingKindMeaning(FindingKind kind)
{
    return QString::fromLatin1(KindTexts[int(kind)].meaning);
}
