#include "inspect/sessioninfoinspection.h"

#include "inspect/findinglist.h"
#include "inspect/followeddriver.h"
#include "inspect/infoindentation.h"
#include "inspect/infoline.h"
#include "inspect/infolosses.h"
#include "inspect/lapinfo.h"
#include "yaml/yamllinereader.h"
#include "yaml/yamltree.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using Kind = InfoLine::Kind;
using Oddity = InfoLine::Oddity;
using Filing = YamlLineReader::Filing;

/// Reads the lines a second time, along the tree that they were filed in, and compares where each
/// was filed with where its indentation says that it belongs.
class Inspection
{
public:
    Inspection(const char *text, const InfoSurroundings &surroundings, FindingList *findings);

    void run();

private:
    /// What the lines being read are.
    enum class Part {
        Document,
        BetweenDocuments, ///< after the end of one, before the next entry
        Unread, ///< filed where nobody looks for them
    };
    /// What became of an entry.
    enum class Fate {
        Found, ///< filed where it belongs
        Kept, ///< filed elsewhere, but another line left the same entry where it belongs
        Replaced, ///< filed where it belongs, but replaced by a later entry of the same name
        Misfiled,
    };
    struct Entry {
        InfoLine line;
        InfoPlace place;
        bool leadsToDriver; ///< without it nobody is in the player's car
    };

    void readFirst(QString text);
    void read(const InfoLine &line, const Filing &filing);
    void readAfterEnd(const InfoLine &line, const Filing &filing);
    void readLast(const InfoLine &line);
    void readUnread(const InfoLine &line);
    void readEntry(const InfoLine &line, const Filing &filing);
    void readOther(const InfoLine &line);
    void enter(const InfoLine &line);
    void suspectBefore(const InfoLine &line);
    InfoLine asMeant(const InfoLine &line) const;
    void readLapValue(const InfoLine &line);
    void readAfterText(const char *rest);
    void reportLapValues();
    QMap<QString, InfoPlace> misspelled(const QStringList &names) const;
    const TStringTree *node() const;
    Fate fateOf(const InfoLine &line, const Filing &filing) const;
    void lose(const InfoLine &line, Fate fate);
    InfoBlame documentHere() const;

    // Many members: what is known of the whole text, and what is expected of the next line.
    const char *m_text;
    InfoSurroundings m_surroundings;
    FindingList *m_findings;
    TYamlTree m_tree;
    FollowedDriver m_driver;
    std::optional<LapInfo> m_laps; ///< none without a driver
    InfoLosses m_losses;
    std::optional<Entry> m_before; ///< the entry before
    const char *m_next = nullptr; ///< the line after the one being read
    InfoIndentation m_levels; ///< that the next line may belong to
    InfoPlace m_place; ///< of the line being read
    Part m_part = Part::Document;
    std::optional<InfoBlame> m_nextDocument; ///< its first line, between documents
};

Inspection::Inspection(const char *text, const InfoSurroundings &surroundings,
                       FindingList *findings)
    : m_text(text), m_surroundings(surroundings), m_findings(findings),
      m_losses(m_driver, findings), m_place{1, surroundings.offset, {}}
{
    m_tree.setYaml(text);
    m_driver.find(m_tree);
    if (!m_driver.isMissing())
        m_laps.emplace(m_tree, m_driver.carIdx(), surroundings.sessions);
}

void Inspection::run()
{
    YamlLineReader reader(&m_tree);
    const char *line = m_text;
    while (const char *end = std::strchr(line, '\n')) {
        m_place.text = QString::fromLatin1(line, int(end - line));
        m_next = end + 1;
        // The reader of the tree leaves out the first line, too.
        if (m_place.number > 1)
            read(InfoLine(m_place.text), reader.follow(m_place.text));
        else
            readFirst(m_place.text);
        line = end + 1;
        m_place.offset = m_surroundings.offset + (line - m_text);
        ++m_place.number;
    }
    m_losses.report();
    m_place.text = QString::fromLatin1(line);
    readLast(InfoLine(m_place.text));
    if (m_driver.isMissing() && !m_losses.isDriverExplained())
        m_findings->add(m_driver.finding(m_surroundings.offset));
    if (!m_laps)
        return;
    readAfterText(line + std::strlen(line));
    reportLapValues();
}

/// Looks for values after the zero byte that ends the text, if anything is there.
void Inspection::readAfterText(const char *rest)
{
    const qint64 size = m_surroundings.size - (rest - m_text);
    if (size <= 1)
        return;
    m_laps->readGarbled(m_place);
    const QByteArray bytes = QByteArray::fromRawData(rest, int(size));
    for (int begin = 0, end = 0; begin < bytes.size(); begin = end + 1) {
        end = bytes.indexOf('\n', begin);
        if (end < 0)
            end = bytes.size();
        const QString text = QString::fromLatin1(bytes.constData() + begin, end - begin);
        m_laps->read({}, InfoLine(text), m_place);
    }
}

void Inspection::reportLapValues()
{
    QStringList missing = m_laps->missing();
    for (const QString &key : m_losses.lapValues())
        missing.removeAll(key);
    m_laps->reportMissing(missing, misspelled(missing), m_findings);
    m_laps->reportOdd(m_losses.lapValues(), m_findings);
}

/// For each of \a names the first line whose name comes close to it.
QMap<QString, InfoPlace> Inspection::misspelled(const QStringList &names) const
{
    QMap<QString, InfoPlace> places;
    InfoPlace place{1, 0, {}};
    const char *line = m_text;
    for (const char *end = nullptr; !names.isEmpty() && (end = std::strchr(line, '\n')) != nullptr;
         line = end + 1, ++place.number) {
        const InfoLine read(QString::fromLatin1(line, int(end - line)));
        for (const QString &name : names) {
            if (!read.isEntry() || !isMisspelled(read.name, name) || places.contains(name))
                continue;
            place.offset = m_surroundings.offset + (line - m_text);
            place.text = QString::fromLatin1(line, int(end - line));
            places.insert(name, place);
        }
    }
    return places;
}

/// \a text may begin with a byte-order mark.
void Inspection::readFirst(QString text)
{
    const InfoLine line(text.remove(QLatin1String("\xef\xbb\xbf")));
    if (!line.isEntry())
        return;
    m_losses.suspect({m_place, FindingKind::TextFirstLine,
                      QStringLiteral("is the first line, which is not read")});
    readEntry(line, Filing());
}

void Inspection::read(const InfoLine &line, const Filing &filing)
{
    if (m_part == Part::Unread) {
        readUnread(line);
    } else if (line.kind == Kind::End) {
        if (m_part == Part::BetweenDocuments && !m_nextDocument)
            m_nextDocument = documentHere();
        m_part = Part::BetweenDocuments;
    } else if (m_part == Part::BetweenDocuments && line.kind != Kind::Blank) {
        readAfterEnd(line, filing);
    } else if (line.isEntry()) {
        readEntry(line, filing);
    } else {
        readOther(line);
    }
}

/// The first entry after the end of a document shows whether the reader files what follows at the
/// root, where it belongs, or inside something.
void Inspection::readAfterEnd(const InfoLine &line, const Filing &filing)
{
    if (!m_nextDocument)
        m_nextDocument = documentHere();
    if (!line.isEntry())
        return;
    // The end of the document is not to blame for what is lost by an earlier line.
    const bool isSuspected =
        m_losses.hasSuspects() || (m_before && m_before->line.kind != Kind::Value);
    const bool isLostAnyway = (m_losses.isOpen() || isSuspected) && !m_tree.sub(line.name);
    if (filing.parent() == &m_tree || isLostAnyway) {
        m_part = Part::Document;
        readEntry(line, filing);
    } else {
        m_part = Part::Unread;
        m_losses.blame(*m_nextDocument);
        readUnread(line);
    }
    m_nextDocument.reset();
}

/// \a line has no line feed.
void Inspection::readLast(const InfoLine &line)
{
    if (line.kind == Kind::Blank || line.kind == Kind::End || m_part != Part::Document)
        return;
    m_losses.blame({m_place, FindingKind::TextLastLine,
                    QStringLiteral("does not end with a line feed, so it is not read")});
    readUnread(line);
    m_losses.report();
}

/// Only looks whether the driver is lost.
void Inspection::readUnread(const InfoLine &line)
{
    if (!line.isEntry())
        return;
    m_levels.enter(line);
    if (m_driver.needs(m_levels, line))
        m_losses.loseDriver();
    readLapValue(line);
    const QString key = m_laps ? m_laps->keyOf(m_levels, line) : QString();
    if (!key.isEmpty() && m_laps->missing().contains(key))
        m_losses.loseLapValue(key);
    if (line.kind != Kind::Value)
        m_levels.open(line, nullptr);
}

void Inspection::readLapValue(const InfoLine &line)
{
    if (!m_laps)
        return;
    m_laps->read(m_levels, line, m_place);
    if (!m_laps->missing().isEmpty()
        && std::any_of(m_place.text.begin(), m_place.text.end(), isControl))
        m_laps->readGarbled(m_place);
}

void Inspection::readOther(const InfoLine &line)
{
    if (line.oddity == Oddity::NoEntry) {
        m_losses.blame(InfoBlame::oddity(line.oddity, m_place));
        if (m_laps)
            m_laps->readGarbled(m_place);
    } else if (line.oddity != Oddity::None) {
        m_losses.suspect(InfoBlame::oddity(line.oddity, m_place));
    }
}

void Inspection::readEntry(const InfoLine &read, const Filing &filing)
{
    const InfoLine line = asMeant(read);
    enter(line);
    m_driver.read(m_levels, line, m_place);
    readLapValue(line);
    const Fate fate = fateOf(line, filing);
    if (fate == Fate::Found)
        m_losses.find(line.column);
    else if (fate != Fate::Kept)
        lose(line, fate);
    m_before = Entry{line, m_place, m_driver.needs(m_levels, line)};
    if (line.kind != Kind::Value)
        m_levels.open(line, node() ? node()->sub(line.name) : nullptr);
}

/// A section or item whose parts are not indented further is indented too far itself.
InfoLine Inspection::asMeant(const InfoLine &line) const
{
    if (line.kind == Kind::Value)
        return line;
    const char *next = m_next;
    while (*next == '\n')
        ++next;
    const auto column = int(std::strspn(next, " "));
    if (next[column] == '\0')
        return line;
    InfoLine meant = line;
    meant.column = m_levels.meantColumn(line, column, next[column] == '-');
    return meant;
}

/// Goes to the level to which \a line belongs, and suspects what is odd on the way.
void Inspection::enter(const InfoLine &line)
{
    suspectBefore(line);
    InfoBlame odd{m_place, FindingKind::TextIndentation, {}, -1, false};
    switch (m_levels.enter(line)) {
    case InfoIndentation::Place::Expected:
        return;
    case InfoIndentation::Place::Odd:
        odd.reason = QStringLiteral("is indented by %1 spaces instead of %2")
                         .arg(line.column)
                         .arg(m_levels.expectedColumn(line));
        odd.lastingColumn = line.column;
        break;
    case InfoIndentation::Place::Resumed:
        odd.place = m_before->place;
        odd.reason = QStringLiteral("is indented by %1 and the next line by %2 spaces; if it "
                                    "belongs to the line before, that line is cut off")
                         .arg(m_before->line.column)
                         .arg(line.column);
        break;
    }
    m_losses.suspect(odd);
}

/// Suspects the entry before \a line if it opened a level that the reader does not see, or the
/// other way round.
void Inspection::suspectBefore(const InfoLine &line)
{
    if (!m_before)
        return;
    const InfoLine &before = m_before->line;
    InfoBlame odd{m_before->place, FindingKind::TextSectionBlank, {}, -1, false};
    if (before.kind == Kind::Value) {
        // "Drivers: ", which is a value, but perhaps meant as a section.
        if (!before.value.trimmed().isEmpty() || !InfoIndentation::isPart(line, before))
            return;
        m_levels.open(before, nullptr);
        odd.reason = QStringLiteral("is read as a value because of the space after its colon");
    } else {
        if (m_levels.canContain(line))
            return;
        const bool isItem = before.kind == Kind::Item;
        odd.kind = isItem ? FindingKind::TextShortItem : FindingKind::TextEmptySection;
        odd.reason = isItem
            ? QStringLiteral("is the only line of its list item, so what follows is read as part "
                             "of it")
            : QStringLiteral("contains nothing, so what follows is read as part of it");
        odd.leadsToDriver = m_before->leadsToDriver;
    }
    m_losses.suspect(odd);
}

/// The node to which the entries of the last level belong; null if the tree has none.
const TStringTree *Inspection::node() const
{
    return m_levels.isEmpty() ? &m_tree : m_levels.last().node;
}

Inspection::Fate Inspection::fateOf(const InfoLine &line, const Filing &filing) const
{
    const TStringTree *parent = node();
    if (!parent)
        return Fate::Misfiled;
    const bool isValue = line.kind == Kind::Value;
    const auto action = isValue ? Filing::Action::Stored : Filing::Action::Opened;
    const bool isFiledHere =
        filing.action == action && filing.parent() == parent && filing.name == line.name;
    const QString value = parent->value(line.name);
    if (isValue ? !value.isNull() && value == line.value : parent->sub(line.name) != nullptr)
        return isFiledHere ? Fate::Found : Fate::Kept;
    return isFiledHere ? Fate::Replaced : Fate::Misfiled;
}

/// Finds out which line is to blame.
void Inspection::lose(const InfoLine &line, Fate fate)
{
    if (line.oddity != Oddity::None) {
        m_losses.blame(InfoBlame::oddity(line.oddity, m_place));
        if (line.oddity != Oddity::CarriageReturn)
            m_losses.loseItself();
    } else if (!m_losses.isOpen() && fate == Fate::Replaced) {
        m_losses.blame({m_place, FindingKind::TextRepeated,
                        QStringLiteral("is replaced by a later entry with the same name")});
    } else {
        m_losses.lose(m_place, line.name);
    }
    if (m_driver.needs(m_levels, line))
        m_losses.loseDriver();
    const QString key = m_laps ? m_laps->keyOf(m_levels, line) : QString();
    if (!key.isEmpty())
        m_losses.loseLapValue(key);
}

InfoBlame Inspection::documentHere() const
{
    return {m_place, FindingKind::TextDocument,
            QStringLiteral("comes after the end of the first document, and only that one is read")};
}

} // namespace

void inspectSessionInfo(const char *text, const InfoSurroundings &surroundings,
                        FindingList *findings)
{
    Inspection(text, surroundings, findings).run();
}
