#include "inspect/infolosses.h"

#include "inspect/findinglist.h"
#include "inspect/followeddriver.h"

#include <algorithm>

InfoBlame InfoBlame::oddity(InfoLine::Oddity oddity, const InfoPlace &place)
{
    using Oddity = InfoLine::Oddity;
    switch (oddity) {
    case Oddity::Separators:
        return {place, FindingKind::TextSeparators,
                QStringLiteral("contains \": \" more than once")};
    case Oddity::Tab:
        return {place, FindingKind::TextTab,
                QStringLiteral("contains a tab where a space belongs")};
    case Oddity::CarriageReturn:
        return {place, FindingKind::TextCarriageReturn,
                QStringLiteral("ends with a carriage return, which becomes part of the name or "
                               "value")};
    case Oddity::Blanks:
        return {place, FindingKind::TextBlanks,
                QStringLiteral("contains only spaces, which are read as an entry without a name")};
    case Oddity::Comment:
        return {place, FindingKind::TextComment,
                QStringLiteral("is a comment, but is read as an entry")};
    case Oddity::NoEntry:
        return {place, FindingKind::TextNoEntry,
                QStringLiteral("is not an entry; if it belongs to the line before, that line is "
                               "cut off")};
    case Oddity::None:
        break;
    }
    return {place, FindingKind::TextMisplaced, QStringLiteral("is not found where it belongs")};
}

InfoLosses::InfoLosses(const FollowedDriver &driver, FindingList *findings)
    : m_driver(driver), m_findings(findings)
{
}

void InfoLosses::suspect(const InfoBlame &odd)
{
    // Of many, only the first can be named.
    constexpr std::size_t Most = 16;
    if (m_suspects.size() < Most)
        m_suspects.push_back(odd);
}

void InfoLosses::find(int column)
{
    report();
    if (m_suspects.empty())
        return;
    const auto isOver = [column](const InfoBlame &odd) {
        return odd.lastingColumn < 0 || column < odd.lastingColumn;
    };
    m_suspects.erase(std::remove_if(m_suspects.begin(), m_suspects.end(), isOver),
                     m_suspects.end());
}

void InfoLosses::blame(const InfoBlame &line)
{
    report();
    m_loss = Loss{line, false, line.leadsToDriver, 0, {}, {}};
}

void InfoLosses::lose(const InfoPlace &line, const QString &name)
{
    constexpr int MostNames = 3;
    constexpr int LongestName = 32;
    if (!isOpen()) {
        blame(m_suspects.empty() ? InfoBlame::oddity(InfoLine::Oddity::None, line)
                                 : m_suspects.front());
        m_suspects.clear();
    }
    if (m_loss->blame.place.number == line.number)
        m_loss->isItself = true;
    else if (++m_loss->entries <= MostNames)
        m_loss->names.append(name.left(LongestName));
}

void InfoLosses::loseLapValue(const QString &key)
{
    for (QStringList *keys : {&m_loss->lapValues, &m_lapValues}) {
        if (!keys->contains(key))
            keys->append(key);
    }
}

void InfoLosses::report()
{
    if (!m_loss)
        return;
    const Loss &loss = *m_loss;
    const bool losesDriver = loss.isDriver && m_driver.isMissing() && !m_isDriverExplained;
    const bool isDamage = losesDriver || (!loss.lapValues.isEmpty() && !m_driver.isMissing());
    if (!m_findings->wants(loss.blame.kind,
                           isDamage ? Finding::Severity::Damage : Finding::Severity::Remark)) {
        m_loss.reset();
        return;
    }
    const InfoPlace &place = loss.blame.place;
    Finding finding(loss.blame.kind, sentence(loss));
    finding.at(place.offset).inLine(place.number, quotedLine(place.text));
    if (losesDriver) {
        m_isDriverExplained = true;
        FollowedDriver::addLoss(&finding);
    } else if (isDamage) {
        finding.loses(listedNames(loss.lapValues));
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

QString listedNames(const QStringList &names)
{
    constexpr int Most = 3;
    const QString listed = names.mid(0, Most).join(QLatin1String(", "));
    return names.size() <= Most
        ? listed
        : QString(listed % QStringLiteral(" and %1 more").arg(names.size() - Most));
}
