#pragma once

#include <QtGlobal>
#include <QVector>

class FindingList;

/// What an inspection of a session info knows beside its text.
struct InfoSurroundings {
    qint64 offset = 0; ///< of the text in the file
    /// Bytes that belong to the text, whether or not a zero ends it before; -1 if nothing follows.
    qint64 size = -1;
    QVector<int> sessions{}; ///< the numbers of those that are driven
};

/// Adds to \a findings the lines of a session info, zero-terminated, by which a value is lost:
/// their own, or those of the lines after them.
///
/// What a line means follows from its indentation and its first ": ". It is lost if the tree that
/// laps take their values from does not have it where it belongs. To blame is the first odd line
/// before it. If laps carry the value, the loss is damage.
void inspectSessionInfo(const char *text, const InfoSurroundings &surroundings,
                        FindingList *findings);
