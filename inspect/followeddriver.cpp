#include "inspect/followeddriver.h"

#include "ibt/ibtlimits.h"
#include "inspect/infoindentation.h"
#include "yaml/yamltree.h"

namespace {

const QLatin1String DriverInfo("DriverInfo");
const QLatin1String DriverCarIdx("DriverCarIdx");
const QLatin1String Drivers("Drivers");
const QLatin1String UserName("UserName");

} // namespace

void FollowedDriver::find(const TYamlTree &tree)
{
    const TStringTree *driverInfo = tree.sub(DriverInfo);
    if (!driverInfo) {
        m_reason = QStringLiteral("there is no DriverInfo");
        return;
    }
    const QString number = driverInfo->value(DriverCarIdx);
    if (number.isNull()) {
        m_reason = QStringLiteral("DriverInfo has no DriverCarIdx");
        return;
    }
    setCarIdx(number);
    if (*m_carIdx < 0) {
        m_reason = QLatin1String("DriverCarIdx is ") % quotedLine(number)
            % QStringLiteral(", which is not the number of a car (0 to %1)").arg(IbtCarCount - 1);
        return;
    }
    const TStringTree *driver =
        driverInfo->pathSub(Drivers % QLatin1Char('/') % QString::number(*m_carIdx));
    m_isListed = driver != nullptr;
    if (!driver)
        m_reason = QStringLiteral("the list of drivers does not contain car %1").arg(*m_carIdx);
    else if (driver->value(UserName).isEmpty())
        m_reason = QStringLiteral("the driver of car %1 has no UserName").arg(*m_carIdx);
}

bool FollowedDriver::needs(const InfoIndentation &levels, const InfoLine &line) const
{
    if (levels.isEmpty())
        return line.kind == InfoLine::Kind::Section && line.name == DriverInfo;
    if (levels.at(0).name != DriverInfo)
        return false;
    if (levels.size() == 1)
        return line.name == DriverCarIdx || line.name == Drivers;
    if (levels.at(1).name != Drivers)
        return false;
    if (levels.size() == 2)
        return line.kind == InfoLine::Kind::Item && isPlayersCar(line.name);
    return levels.size() == 3 && line.name == UserName && isPlayersCar(levels.at(2).name);
}

void FollowedDriver::read(const InfoIndentation &levels, const InfoLine &line,
                          const InfoPlace &place)
{
    if (levels.isEmpty() || !needs(levels, line))
        return;
    if (line.name == UserName || (levels.size() == 2 && !m_driverPlace)) {
        m_driverPlace = place;
    } else if (line.name == DriverCarIdx) {
        m_carPlace = place;
        setCarIdx(line.value);
    }
}

void FollowedDriver::addLoss(Finding *finding)
{
    finding->loses(QStringLiteral("all laps"));
    finding->text += QLatin1String("; nobody is in the player's car, so no lap is followed");
}

Finding FollowedDriver::finding(qint64 offset) const
{
    const InfoPlace place =
        (m_isListed ? m_driverPlace : m_carPlace).value_or(InfoPlace{0, offset});
    Finding finding(FindingKind::NoDriver, m_reason);
    finding.at(place.offset).inLine(place.number, QString());
    addLoss(&finding);
    return finding;
}

/// As the reader of the laps understands \a number.
void FollowedDriver::setCarIdx(const QString &number)
{
    bool isNumber = false;
    const int carIdx = number.toInt(&isNumber);
    m_carIdx = isNumber && isIbtCarIdx(carIdx) ? carIdx : -1;
}

bool FollowedDriver::isPlayersCar(const QString &carIdx) const
{
    return !m_carIdx || (*m_carIdx >= 0 && carIdx == QString::number(*m_carIdx));
}
