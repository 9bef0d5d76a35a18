#pragma once

#include <QString>
#include <QStringList>

/// Those of \a names that somebody who typed \a text may have meant, the nearest first: names that
/// contain it, and names that a few slips of the finger turn into it (a letter too many, too few or
/// wrong, or two letters swapped); none counts letters in capitals. At most three.
QStringList nearestNames(const QString &text, const QStringList &names);

/// Says what nearestNames() found: "; did you mean speed or lfspeed?". Empty if that is nothing.
QString didYouMean(const QString &text, const QStringList &names);
