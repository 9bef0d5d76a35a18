#include "host/files/lapchoice.h"

#include "analysis/lapsummary.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <numeric>
#include <vector>

std::optional<LapChoice> LapChoice::parse(const QString &text, QString *problem)
{
    if (text == QLatin1String("best"))
        return best();
    if (text == QLatin1String("all"))
        return all();
    static const QRegularExpression item(QStringLiteral("\\A(\\d+)(?:-(\\d+))?\\z"));
    LapChoice choice(Kind::Listed);
    for (const QString &part : text.split(QLatin1Char(','))) {
        const QRegularExpressionMatch match = item.match(part);
        const int first = match.captured(1).toInt();
        const int last = match.capturedLength(2) > 0 ? match.captured(2).toInt() : first;
        if (first < 1 || last < first) {
            *problem =
                QStringLiteral("'%1' is not a choice of laps; use best, all, or numbers such "
                               "as 3 or 3,5-7")
                    .arg(text);
            return std::nullopt;
        }
        choice.m_ranges.append({first, last});
    }
    return choice;
}

QVector<int> LapChoice::indices(const Laps &laps, QString *problem) const
{
    const int count = int(laps.size());
    QVector<int> result;
    switch (m_kind) {
    case Kind::Best:
        if (const std::optional<int> index = bestLap(laps))
            result.append(*index);
        else
            *problem = QStringLiteral("there is no timed lap; choose from 1 to %1").arg(count);
        break;
    case Kind::All:
        result.resize(count);
        std::iota(result.begin(), result.end(), 0);
        break;
    case Kind::Representative:
        result.append(representativeLap(laps));
        break;
    case Kind::Listed: {
        std::vector<bool> isChosen(laps.size());
        for (const Range &range : m_ranges) {
            if (range.second > count) {
                *problem = QStringLiteral("there is no lap #%1; choose from 1 to %2")
                               .arg(std::max(range.first, count + 1))
                               .arg(count);
                return {};
            }
            for (int number = range.first; number <= range.second; ++number) {
                if (!isChosen[std::size_t(number - 1)])
                    result.append(number - 1);
                isChosen[std::size_t(number - 1)] = true;
            }
        }
        break;
    }
    }
    return result;
}

QString LapChoice::text() const
{
    if (m_kind == Kind::Best)
        return QStringLiteral("best");
    if (m_kind == Kind::All)
        return QStringLiteral("all");
    QStringList parts;
    for (const Range &range : m_ranges)
        parts.append(QStringLiteral("%1-%2").arg(range.first).arg(range.second));
    return parts.join(QLatin1Char(','));
}
