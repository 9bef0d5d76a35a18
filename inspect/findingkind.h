#pragma once

#include <QString>

/// What sort of thing a finding is about. Each has a name and a meaning, see below.
enum class FindingKind {
    Header,
    Claim,
    Unreadable,
    Memory,
    Overlap,
    Records,
    RecordCount,
    EmptyRecords,
    ForeignRecords,
    EndTime,
    Variable,
    EqualNames,
    Name,
    MissingVariable,
    SharedBytes,
    UnnamedBytes,
    TimeGap,
    TimeReturn,
    TimeStandstill,
    TimeUnusable,
    TickRate,
    TextSeparators,
    TextNoEntry,
    TextTab,
    TextCarriageReturn,
    TextBlanks,
    TextComment,
    TextIndentation,
    TextEmptySection,
    TextShortItem,
    TextSectionBlank,
    TextRepeated,
    TextMisplaced,
    TextFirstLine,
    TextLastLine,
    TextDocument,
    TextEnd,
    TextMissing,
    TextValue,
    NoDriver,
    NoLap,
    TooLarge,
    Import,
};
constexpr int FindingKindCount = int(FindingKind::Import) + 1;

/// The name by which scripts know \a kind: "record-count". Names never change.
QString findingKindName(FindingKind kind);

/// What was found, for people who look \a kind up: "a line contains ": " more than once".
QString findingKindMeaning(FindingKind kind);
