#pragma once

#include <QString>

class QDir;

namespace ZEP {

/// A path for \a fileName, in the folder that \a fileName names, whose file name none of the files
/// of \a dir has: "lap.csv", then "lap_0.csv", "lap_1.csv" and so on.
///
/// What stands between the first and the last dot of the name is dropped ("a.b.c" becomes "a.c"),
/// and files of \a dir without a dot in their name do not count.
QString generateUniqueFileName(QDir *dir, const QString &fileName);

/// A signed time: "+1.234", "-1:15.000", "0.000". Hours are not shown: minutes start again at 0.
QString printTime(int milliseconds);

/// True when \a a and \a b differ by at most \a epsilon relative to the smaller magnitude, or when
/// both are nearer to zero than \a epsilon. False for NaN.
bool fuzzyCompare(double a, double b, double epsilon);

/// True when \a d is nearer to zero than \a epsilon. False for NaN.
bool fuzzyIsNull(double d, double epsilon);

} // namespace ZEP
