#pragma once

#include <QtGlobal>

class FindingList;

/// Adds to \a findings the lines of a session info, zero-terminated, at \a offset of the file, by
/// which a value is lost: their own, or those of the lines after them.
///
/// What a line means follows from its indentation and its first ": ". Nothing is lost if the reader
/// of the tree that laps take their values from files the line where that belongs.
void inspectSessionInfo(const char *text, qint64 offset, FindingList *findings);
