#include "host/files/nearestnames.h"

#include <QPair>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace {

/// The number of slips between \a a and \a b.
int distance(const QString &a, const QString &b)
{
    QVector<int> beforeLast;
    QVector<int> last(b.size() + 1);
    std::iota(last.begin(), last.end(), 0);
    for (int i = 1; i <= a.size(); ++i) {
        QVector<int> row(b.size() + 1);
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const bool isSame = a.at(i - 1) == b.at(j - 1);
            row[j] = std::min({last.at(j) + 1, row.at(j - 1) + 1, last.at(j - 1) + !isSame});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                row[j] = std::min(row.at(j), beforeLast.at(j - 2) + 1);
        }
        beforeLast = std::exchange(last, row);
    }
    return last.last();
}

} // namespace

QStringList nearestNames(const QString &text, const QStringList &names)
{
    constexpr int most = 3;
    const QString typed = text.toLower();
    const int tolerance = std::max(1, typed.size() / 3);
    QVector<QPair<int, QString>> found;
    for (const QString &name : names) {
        const QString candidate = name.toLower();
        const int slips = distance(typed, candidate);
        if (slips <= tolerance || (typed.size() > 1 && candidate.contains(typed)))
            found.append({slips, name});
    }
    std::sort(found.begin(), found.end());
    QStringList result;
    for (int i = 0; i < std::min(most, int(found.size())); ++i)
        result.append(found.at(i).second);
    return result;
}

QString didYouMean(const QString &text, const QStringList &names)
{
    QStringList nearest = nearestNames(text, names);
    if (nearest.isEmpty())
        return QString();
    const QString last = nearest.takeLast();
    const QString others = nearest.join(QLatin1String(", "));
    return QLatin1String("; did you mean ")
        % (others.isEmpty() ? last : QString(others % QLatin1String(" or ") % last))
        % QLatin1Char('?');
}
