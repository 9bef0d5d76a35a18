#pragma once

#include <QString>

class QDir;

namespace ZEP {

/// A path in the folder of \a fileName, with a file name that no file in \a dir has: "lap.csv",
/// then "lap_0.csv", "lap_1.csv" and so on.
///
/// The part of the name between its first and its last dot is dropped ("a.b.c" becomes "a.c"), and
/// files in \a dir without a dot in their name do not count.
QString generateUniqueFileName(QDir *dir, const QString &fileName);

/// A signed time: "+1.234", "-1:15.000", "0.000". Hours are not shown; minutes start again at 0.
QString printTime(int milliseconds);

/// True if \a a and \a b differ by at most \a epsilon relative to the smaller magnitude, or if both
/// are closer to zero than \a epsilon. False for NaN.
bool fuzzyCompare(double a, double b, double epsilon);

/// True if \a d is closer to zero than \a epsilon. False for NaN.
bool fuzzyIsNull(double d, double epsilon);

} // namespace ZEP
