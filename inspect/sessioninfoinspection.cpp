#include "inspect/sessioninfoinspection.h"

#include "inspect/findinglist.h"
#include "inspect/followeddriver.h"
#include "inspect/infoindentation.h"
#include "inspect/infoline.h"
#include "inspect/infolosses.h"
#include "inspect/infosuspects.h"
#include "yaml/yamllinereader.h"
#include "yaml/yamltree.h"

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
    Inspection(const char *text, qint64 offset, FindingList *findings);

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

    void read(const InfoLine &line, const Filing &filing);
    void readAfterEnd(const InfoLine &line, const Filing &filing);
    void readLast(const InfoLine &line);
    void readUnread(const InfoLine &line);
    void readEntry(const InfoLine &line, const Filing &filing);
    void readOther(const InfoLine &line);
    const TStringTree *node() const;
    Fate fateOf(const InfoLine &line, const Filing &filing) const;
    void lose(const InfoLine &line, Fate fate);
    InfoBlame documentHere() const;

    const char *m_text;
    FindingList *m_findings;
    TYamlTree m_tree;
    FollowedDriver m_driver;
    InfoLosses m_losses;
    InfoSuspects m_suspects;
    InfoIndentation m_levels; ///< that the next line may belong to
    InfoPlace m_place; ///< of the line being read
    Part m_part = Part::Document;
    std::optional<InfoBlame> m_nextDocument; ///< its first line, between documents
};

Inspection::Inspection(const char *text, qint64 offset, FindingList *findings)
    : m_text(text), m_findings(findings), m_losses(m_driver, findings), m_place{1, offset, {}}
{
    m_tree.setYaml(text);
    m_driver.find(m_tree);
}

void Inspection::run()
{
    const qint64 offset = m_place.offset;
    YamlLineReader reader(&m_tree);
    const char *line = m_text;
    while (const char *end = std::strchr(line, '\n')) {
        m_place.text = QString::fromLatin1(line, int(end - line));
        // The reader of the tree leaves out the first line, too.
        read(InfoLine(m_place.text), m_place.number > 1 ? reader.follow(m_place.text) : Filing());
        line = end + 1;
        m_place.offset = offset + (line - m_text);
        ++m_place.number;
    }
    m_losses.report();
    m_place.text = QString::fromLatin1(line);
    readLast(InfoLine(m_place.text));
    if (m_driver.isMissing() && !m_losses.isDriverExplained())
        m_findings->add(m_driver.finding(offset));
}

void Inspection::read(const InfoLine &line, const Filing &filing)
{
    if (m_place.number == 1) {
        if (!line.isEntry())
            return;
        m_suspects.suspect({m_place, FindingKind::TextFirstLine,
                            QStringLiteral("is the first line, which is not read")});
    }
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
    const bool isLostAnyway = (m_losses.isOpen() || m_suspects.areAny()) && !m_tree.sub(line.name);
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
        m_losses.addDriver();
    if (line.kind != Kind::Value)
        m_levels.open(line, nullptr);
}

void Inspection::readOther(const InfoLine &line)
{
    if (line.oddity == Oddity::NoEntry)
        m_losses.blame(InfoBlame::oddity(line.oddity, m_place));
    else if (line.oddity != Oddity::None)
        m_suspects.suspect(InfoBlame::oddity(line.oddity, m_place));
}

void Inspection::readEntry(const InfoLine &line, const Filing &filing)
{
    m_suspects.enter(line, m_place, &m_levels);
    m_driver.read(m_levels, line, m_place);
    const Fate fate = fateOf(line, filing);
    if (fate == Fate::Found) {
        m_losses.report();
        m_suspects.acquit(line.column);
    } else if (fate != Fate::Kept) {
        lose(line, fate);
    }
    m_suspects.leave(line, m_place, m_driver.needs(m_levels, line));
    if (line.kind != Kind::Value)
        m_levels.open(line, node() ? node()->sub(line.name) : nullptr);
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
            m_losses.addItself();
    } else if (!m_losses.isOpen() && fate == Fate::Replaced) {
        m_losses.blame({m_place, FindingKind::TextRepeated,
                        QStringLiteral("is replaced by a later entry with the same name")});
    } else {
        if (!m_losses.isOpen()) {
            const std::optional<InfoBlame> suspect = m_suspects.take();
            m_losses.blame(suspect ? *suspect : InfoBlame::oddity(Oddity::None, m_place));
        }
        m_losses.addEntry(m_place, line.name);
    }
    if (m_driver.needs(m_levels, line))
        m_losses.addDriver();
}

InfoBlame Inspection::documentHere() const
{
    return {m_place, FindingKind::TextDocument,
            QStringLiteral("comes after the end of the first document, and only that one is read")};
}

} // namespace

void inspectSessionInfo(const char *text, qint64 offset, FindingList *findings)
{
    Inspection(text, offset, findings).run();
}
