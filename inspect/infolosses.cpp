#include "inspect/infolosses.h"

#include "inspect/findinglist.h"
#include "inspect/followeddriver.h"

InfoLosses::InfoLosses(const FollowedDriver &driver, FindingList *findings)
    : m_driver(driver), m_findings(findings)
{
}

void InfoLosses::blame(const InfoBlame &blame)
{
    report();
    m_loss = Loss{blame, false, blame.leadsToDriver, 0, {}};
}

void InfoLosses::addItself()
{
    m_loss->isItself = true;
}

void InfoLosses::addEntry(const InfoPlace &line, const QString &name)
{
    constexpr int MostNames = 3;
    constexpr int LongestName = 32;
    if (m_loss->blame.place.number == line.number)
        m_loss->isItself = true;
    else if (++m_loss->entries <= MostNames)
        m_loss->names.append(name.left(LongestName));
}

void InfoLosses::addDriver()
{
    m_loss->isDriver = true;
}

void InfoLosses::report()
{
    if (!m_loss)
        return;
    const InfoPlace &place = m_loss->blame.place;
    Finding finding(m_loss->blame.kind, sentence(*m_loss));
    finding.at(place.offset).inLine(place.number, quotedLine(place.text));
    if (m_loss->isDriver && m_driver.isMissing() && !m_isDriverExplained) {
        m_isDriverExplained = true;
        FollowedDriver::addLoss(&finding);
    }
    m_findings->add(finding);
    m_loss.reset();
}

QString InfoLosses::sentence(const Loss &loss)
{
    QString text = loss.blame.reason;
    if (loss.isItself)
        text += QLatin1String(", so it is lost");
    if (loss.entries == 0)
        return text;
    text += loss.entries == 1
        ? QStringLiteral("; the entry after it is lost: ")
        : QStringLiteral("; %1 entries after it are lost: ").arg(loss.entries);
    text += loss.names.join(QLatin1String(", "));
    if (loss.entries > loss.names.size())
        text += QLatin1String(", ...");
    return text;
}
