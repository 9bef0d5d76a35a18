#include "tests/support/readerpair.h"
#include "tests/support/samebits.h"

namespace {

QString textDifference(const char *what, const QString &actual, const QString &expected)
{
    if (actual == expected)
        return QString();
    return QStringLiteral("%1 is \"%2\" instead of \"%3\"")
        .arg(QLatin1String(what), actual, expected);
}

template <typename T>
QString numberDifference(const char *what, T actual, T expected)
{
    if (actual == expected)
        return QString();
    return textDifference(what, QVariant(actual).toString(), QVariant(expected).toString());
}

QString numberDifference(const char *what, float actual, float expected)
{
    const QString found = bitDifference(actual, expected);
    return found.isEmpty() ? found : QLatin1String(what) + QLatin1String(": ") + found;
}

QString firstOf(std::initializer_list<QString> differences)
{
    for (const QString &difference : differences) {
        if (!difference.isEmpty())
            return difference;
    }
    return QString();
}

QString stateDifference(const CarTrackerSample &state, const reference::TickState &expected,
                        LapComparison *comparison)
{
    return firstOf({
        comparison->difference(state.lapId, expected.lapId),
        comparison->difference(state.stintId, expected.stintId),
        textDifference("text", state.text, expected.text),
        numberDifference("lap", state.lap, expected.lap),
        numberDifference("lapInStint", state.lapInStint, expected.lapInStint),
        numberDifference("stintCount", state.stintCount, expected.stintCount),
        numberDifference("lapDistPct", state.lapDistPct, expected.lapDistPct),
        numberDifference("lapCurrentLapTime", state.lapCurrentLapTime, expected.lapCurrentLapTime),
        numberDifference("lapLastLapTime", state.lapLastLapTime, expected.lapLastLapTime),
        numberDifference("sessionState", state.sessionState, expected.sessionState),
        numberDifference("carStatus", state.carStatus, expected.carStatus),
        numberDifference("sessionType", state.sessionType, expected.sessionType),
        numberDifference("lapCompleted", state.lapCompleted, expected.lapCompleted),
        numberDifference("completionHold", state.completionHold, expected.completionHold),
    });
}

} // namespace

QString ReaderPair::quickDifference()
{
    QString found = firstOf({
        numberDifference("isMyLapReady", m_product.isMyLapReady(), m_expected.isMyLapReady()),
        numberDifference("myCarIdx", m_product.myCarIdx(), m_expected.myCarIdx()),
        numberDifference("cars", m_product.carCount(), m_expected.carCount()),
    });
    for (int i = 0; i < m_expected.carCount() && found.isEmpty(); ++i) {
        found = firstOf({
            numberDifference("isLapReady", m_product.isLapReady(i), m_expected.isLapReady(i)),
            numberDifference("isCarInWorld", m_product.isCarInWorld(i), m_expected.isCarInWorld(i)),
            numberDifference("isCarActive", m_product.isCarActive(i), m_expected.isCarActive(i)),
        });
        if (!found.isEmpty())
            found = QStringLiteral("car %1: %2").arg(i).arg(found);
    }
    return found;
}

QString ReaderPair::carDifference(int i)
{
    const CarTracker &car = m_product.car(i);
    const reference::CarTracker &expected = m_expected.car(i);
    const QString current = stateDifference(car.current, expected.current, &m_comparison);
    const QString previous = stateDifference(car.previous, expected.previous, &m_comparison);
    const QString lap = m_comparison.difference(car.lap, expected.lap);
    const QString nextLap = m_comparison.difference(car.nextLap, expected.nextLap);
    const auto within = [](const char *part, const QString &found) {
        return found.isEmpty() ? found : QLatin1String(part) + QLatin1String(": ") + found;
    };
    return firstOf({
        textDifference("driver", car.driverName, expected.driverName),
        textDifference("team", car.teamName, expected.teamName),
        numberDifference("isPlayerCar", car.isPlayerCar, expected.isPlayerCar),
        numberDifference("active", car.active, expected.active),
        numberDifference("diskLoading", car.diskLoading, expected.diskLoading),
        numberDifference("lapReady", car.lapReady, expected.lapReady),
        within("current", current),
        within("previous", previous),
        within("sample", m_comparison.difference(car.sample, expected.sample)),
        within("lap", lap),
        within("next lap", nextLap),
    });
}

QString ReaderPair::difference()
{
    QString found = quickDifference();
    for (int i = 0; i < m_expected.carCount() && found.isEmpty(); ++i) {
        found = carDifference(i);
        if (!found.isEmpty())
            return QStringLiteral("car %1: %2").arg(i).arg(found);
    }
    for (int i = 0; i < m_keptLaps.size() && found.isEmpty(); ++i) {
        found = m_comparison.difference(m_keptLaps.at(i), m_expectedKeptLaps.at(i));
        if (!found.isEmpty())
            return QStringLiteral("lap taken %1 before the last: %2")
                .arg(m_keptLaps.size() - 1 - i)
                .arg(found);
    }
    return found;
}
