#pragma once

#include <QtGlobal>

class FindingList;

/// Adds to \a findings the lines of a session info, zero-terminated, at \a offset of the file, by
/// which a value is lost: their own, or those of the lines after them.
///
/// What a line means follows from its indentation and its first ": ". It is lost if the tree that
/// laps take their values from does not have it where it belongs. To blame is the line after which
/// the reader of the tree filed what follows somewhere else.
void inspectSessionInfo(const char *text, qint64 offset, FindingList *findings);
