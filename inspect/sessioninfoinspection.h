#pragma once

#include <QtGlobal>

class FindingList;

/// Adds to \a findings the lines of a session info, zero-terminated, at \a offset of the file, that
/// cost a value: its own, or those of the lines behind it.
///
/// What a line means is told by its indentation and its first ": "; what becomes of it is asked of
/// the tree that laps take their values from.
void inspectSessionInfo(const char *text, qint64 offset, FindingList *findings);
