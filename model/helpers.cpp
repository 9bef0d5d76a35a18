#include "model/helpers.h"

#include <QDir>
#include <QFileInfo>
#include <QTime>

#include <algorithm>
#include <cmath>

namespace ZEP {

QString generateUniqueFileName(QDir *dir, const QString &fileName)
{
    const QFileInfo info(fileName);
    const QString base = info.baseName();
    const QString suffix = QLatin1Char('.') % info.suffix();
    const QStringList taken =
        dir->entryList({QStringLiteral("*.*")}, QDir::Files | QDir::NoDotAndDotDot, QDir::Unsorted);

    QString candidate = base % suffix;
    for (int n = 0; taken.contains(candidate); ++n)
        candidate = base % QLatin1Char('_') % QString::number(n) % suffix;
    return info.path() % QLatin1Char('/') % candidate;
}

QString printTime(int milliseconds)
{
    // The magnitude of the smallest int does not fit into an int.
    const qint64 magnitude = std::abs(qint64(milliseconds));
    const QString sign(milliseconds > 0       ? QStringLiteral("+")
                           : milliseconds < 0 ? QStringLiteral("-")
                                              : QString());
    const QString format = magnitude < 60000 ? QStringLiteral("s.zzz") : QStringLiteral("m:ss.zzz");
    constexpr qint64 msPerDay = 24 * 60 * 60 * 1000;
    return sign % QTime::fromMSecsSinceStartOfDay(int(magnitude % msPerDay)).toString(format);
}

bool fuzzyCompare(double a, double b, double epsilon)
{
    if (std::abs(a) < epsilon)
        return std::abs(b) < epsilon;
    if (std::abs(b) < epsilon)
        return false;
    return std::abs(a - b) <= epsilon * std::min(std::abs(a), std::abs(b));
}

bool fuzzyIsNull(double d, double epsilon)
{
    return std::abs(d) < epsilon;
}

} // namespace ZEP
