#include "host/files/lapchoice.h"

#include "analysis/lapsummary.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace {

constexpr int ToTheEnd = std::numeric_limits<int>::max();

/// What there is instead of a lap that is not there.
QString choosable(int count)
{
    return count == 1 ? QStringLiteral("the only lap is #1")
                      : QStringLiteral("choose from 1 to %1").arg(count);
}

QVector<int> indicesFrom(int first, int count)
{
    QVector<int> result(count);
    std::iota(result.begin(), result.end(), first);
    return result;
}

} // namespace

std::optional<LapChoice::Item> LapChoice::parseItem(const QString &text)
{
    const QString lower = text.toLower();
    if (lower == QLatin1String("best"))
        return Item{Kind::Best, 0, 0};
    if (lower == QLatin1String("last"))
        return Item{Kind::Last, 0, 0};
    if (lower == QLatin1String("all"))
        return Item{Kind::All, 0, 0};
    static const QRegularExpression range(QStringLiteral("\\A(\\d+)(-)?(\\d+)?\\z"));
    const QRegularExpressionMatch match = range.match(text);
    const bool hasDash = match.capturedLength(2) > 0;
    const bool hasLast = match.capturedLength(3) > 0;
    const int first = match.captured(1).toInt();
    int last = hasDash ? ToTheEnd : first;
    if (hasLast)
        last = match.captured(3).toInt();
    if (first < 1 || last < first || (hasLast && !hasDash))
        return std::nullopt;
    return Item{Kind::Range, first, last};
}

std::optional<LapChoice> LapChoice::parse(const QString &text, QString *problem)
{
    LapChoice choice(Kind::All);
    choice.m_items.clear();
    for (const QString &part : text.split(QLatin1Char(','))) {
        const std::optional<Item> item = parseItem(part);
        if (!item) {
            *problem = QStringLiteral("'%1' is not a choice of laps; use best, last, all, or "
                                      "numbers such as 3, 3,5-7 or 3-")
                           .arg(text);
            return std::nullopt;
        }
        choice.m_items.append(*item);
    }
    return choice;
}

QVector<int> LapChoice::itemIndices(const Item &item, const Laps &laps, QString *problem)
{
    const int count = int(laps.size());
    switch (item.kind) {
    case Kind::Best:
        if (const std::optional<int> index = bestLap(laps))
            return {*index};
        *problem = QLatin1String("there is no timed lap; ") % choosable(count);
        return {};
    case Kind::Last:
        return {count - 1};
    case Kind::All:
        return indicesFrom(0, count);
    case Kind::Representative:
        return {representativeLap(laps)};
    case Kind::Range:
        break;
    }
    const int last = item.last == ToTheEnd ? std::max(item.first, count) : item.last;
    if (last <= count)
        return indicesFrom(item.first - 1, last - item.first + 1);
    *problem = QStringLiteral("there is no lap #%1; %2")
                   .arg(QString::number(std::max(item.first, count + 1)), choosable(count));
    return {};
}

QVector<int> LapChoice::indices(const Laps &laps, QString *problem) const
{
    QVector<int> result;
    std::vector<bool> isChosen(laps.size());
    for (const Item &item : m_items) {
        const QVector<int> found = itemIndices(item, laps, problem);
        if (found.isEmpty())
            return {};
        for (const int index : found) {
            if (!isChosen[std::size_t(index)])
                result.append(index);
            isChosen[std::size_t(index)] = true;
        }
    }
    return result;
}

QString LapChoice::text() const
{
    QStringList parts;
    for (const Item &item : m_items) {
        switch (item.kind) {
        case Kind::Best:
            parts.append(QStringLiteral("best"));
            break;
        case Kind::Last:
            parts.append(QStringLiteral("last"));
            break;
        case Kind::All:
            parts.append(QStringLiteral("all"));
            break;
        case Kind::Representative:
            break;
        case Kind::Range: {
            QString range = QString::number(item.first);
            if (item.last != item.first)
                range += QLatin1Char('-');
            if (item.last != item.first && item.last != ToTheEnd)
                range += QString::number(item.last);
            parts.append(range);
            break;
        }
        }
    }
    return parts.join(QLatin1Char(','));
}
