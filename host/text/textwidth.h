#pragma once

#include <QString>

/// Columns that \a text needs on a terminal: none for combining marks, two for wide characters.
int displayWidth(const QString &text);

/// \a text if it needs at most \a width columns, else its beginning and "…"; \a width is at
/// least 1.
QString elided(const QString &text, int width);

/// \a text on one line and without anything that a terminal would obey: every control character
/// becomes U+FFFD. What has no width of its own, and may hide or reorder what is around it, is
/// shown by its number: "\u202e". Recordings and the names of files are somebody else's data.
QString printable(const QString &text);
