#include "inspect/sessioninfoinspection.h"

#include "inspect/findinglist.h"
#include "inspect/followeddriver.h"
#include "inspect/infoindentation.h"
#include "inspect/infoline.h"
#include "yaml/yamllinereader.h"
#include "yaml/yamltree.h"

#include <QStringList>

#include <cstring>
#include <optional>

namespace {

using Kind = InfoLine::Kind;
using Oddity = InfoLine::Oddity;

/// One line of the text, and what it costs.
struct Cause {
    int number = 0; ///< of the line, from 1
    qint64 offset = 0;
    QString line;
    const char *kind = "";
    QString text;
    bool losesItself = false;
    bool losesDriver = false; ///< something that leads to the player's driver is lost
    int misplaced = 0; ///< lines behind it that are filed in the wrong place
    QStringList names; ///< of the first ones of these
};

QString oddityText(Oddity oddity)
{
    switch (oddity) {
    case Oddity::Separators:
        return QStringLiteral("holds \": \" more than once");
    case Oddity::Tab:
        return QStringLiteral("holds a tab where a blank belongs");
    case Oddity::CarriageReturn:
        return QStringLiteral("ends in a carriage return, which stays in the name or value");
    case Oddity::Blanks:
        return QStringLiteral("holds only blanks, which opens an entry without a name");
    case Oddity::Comment:
        return QStringLiteral("is a comment, which opens an entry of its own");
    case Oddity::NoEntry:
        return QStringLiteral("is no entry; if it belongs to the line in front, that one is cut");
    case Oddity::None:
        break;
    }
    return QStringLiteral("is not found where it belongs");
}

const char *oddityKind(Oddity oddity)
{
    switch (oddity) {
    case Oddity::Separators:
        return "text-separators";
    case Oddity::Tab:
        return "text-tab";
    case Oddity::CarriageReturn:
        return "text-carriage-return";
    case Oddity::Blanks:
        return "text-blanks";
    case Oddity::Comment:
        return "text-comment";
    case Oddity::NoEntry:
        return "text-no-entry";
    case Oddity::None:
        break;
    }
    return "text-misplaced";
}

/// Goes through the lines and compares what each means with what the tree has of it.
class Inspection
{
public:
    Inspection(const char *text, qint64 offset, FindingList *findings);

    void run();

private:
    void read(const InfoLine &line);
    void readBehindEnd(const InfoLine &line);
    void readLast(const InfoLine &line);
    void passOver(const InfoLine &line);
    void compare(const InfoLine &line);
    bool isAtRoot(const InfoLine &line) const;
    const TStringTree *node() const;
    void enter(const InfoLine &line);
    bool isFound(const InfoLine &line) const;
    void lose(const InfoLine &line);
    qint64 offsetHere() const { return m_offset + (m_lineBegin - m_text); }
    Cause causeHere(const char *kind, const QString &text) const;
    Cause documentHere() const;
    void blame(const Cause &cause);
    void report();

    const char *m_text;
    qint64 m_offset;
    FindingList *m_findings;
    TYamlTree m_tree;
    TYamlTree m_filed; ///< as far as the text has been read
    YamlLineReader m_filer;
    FollowedDriver m_driver;
    bool m_isDriverExplained = false;

    const char *m_lineBegin; ///< of the line being read
    int m_number = 1;
    QString m_line;
    InfoIndentation m_levels;
    bool m_isOpen = false; ///< the line in front was a section or an item
    Cause m_opener; ///< that line
    Cause m_front; ///< the entry in front
    std::optional<InfoLine> m_empty; ///< that entry, if it is a value without text
    std::optional<Cause> m_suspect; ///< odd, but nothing has been lost since
    std::optional<Cause> m_indented; ///< oddly, which costs nothing until it ends
    int m_indentedColumn = 0; ///< of that line
    std::optional<Cause> m_cause; ///< of what is being lost
    bool m_hasEnded = false; ///< a document, and no entry has come since
    std::optional<Cause> m_document; ///< what comes behind that end
    bool m_isUnread = false; ///< what follows, by the tree
};

Inspection::Inspection(const char *text, qint64 offset, FindingList *findings)
    : m_text(text), m_offset(offset), m_findings(findings), m_filer(&m_filed), m_lineBegin(text)
{
    m_tree.setYaml(text);
    m_driver.find(m_tree);
}

void Inspection::run()
{
    for (const char *end = std::strchr(m_lineBegin, '\n'); end;
         end = std::strchr(m_lineBegin, '\n')) {
        m_line = QString::fromLatin1(m_lineBegin, int(end - m_lineBegin));
        if (m_number > 1)
            m_filer.read(m_line);
        read(InfoLine(m_line));
        m_lineBegin = end + 1;
        ++m_number;
    }
    report();
    m_line = QString::fromLatin1(m_lineBegin);
    readLast(InfoLine(m_line));
    if (m_driver.isMissing() && !m_isDriverExplained)
        m_findings->add(m_driver.finding(m_offset));
}

void Inspection::read(const InfoLine &line)
{
    if (m_number == 1) {
        if (!line.isEntry())
            return;
        m_suspect =
            causeHere("text-first-line", QStringLiteral("is the first line, which is not read"));
    }
    if (m_isUnread) {
        passOver(line);
    } else if (line.kind == Kind::End) {
        if (m_hasEnded && !m_document)
            m_document = documentHere();
        m_hasEnded = true;
    } else if (m_hasEnded && line.kind != Kind::Blank) {
        readBehindEnd(line);
    } else {
        compare(line);
    }
}

/// The first entry behind the end of a document tells whether the tree files what follows at its
/// root, where it belongs, or inside something.
void Inspection::readBehindEnd(const InfoLine &line)
{
    if (!m_document)
        m_document = documentHere();
    if (!line.isEntry())
        return;
    m_hasEnded = false;
    const bool isOutOfStep = m_cause || m_suspect || m_indented || m_isOpen;
    if (isAtRoot(line) || (isOutOfStep && !m_tree.sub(line.name))) {
        compare(line);
    } else {
        blame(*m_document);
        m_isUnread = true;
        passOver(line);
    }
    m_document.reset();
}

bool Inspection::isAtRoot(const InfoLine &line) const
{
    const TStringTree *node = m_filer.node();
    const bool isStored = line.kind == Kind::Value && line.oddity == Oddity::None;
    return (isStored ? node : node->parent()) == &m_filed;
}

/// Goes on behind \a line, which is not read, only to see whether the driver is lost.
void Inspection::passOver(const InfoLine &line)
{
    if (!line.isEntry())
        return;
    m_levels.enter(line);
    if (m_driver.needs(m_levels, line))
        m_cause->losesDriver = true;
    if (line.kind != Kind::Value)
        m_levels.open(line, nullptr);
}

/// \a line has no line feed behind it.
void Inspection::readLast(const InfoLine &line)
{
    if (line.kind == Kind::Blank || line.kind == Kind::End || m_hasEnded || m_isUnread)
        return;
    blame(
        causeHere("text-last-line", QStringLiteral("has no line feed behind it and is not read")));
    passOver(line);
    report();
}

void Inspection::compare(const InfoLine &line)
{
    if (!line.isEntry()) {
        if (line.oddity == Oddity::NoEntry)
            blame(causeHere(oddityKind(line.oddity), oddityText(line.oddity)));
        else if (line.oddity != Oddity::None)
            m_suspect = causeHere(oddityKind(line.oddity), oddityText(line.oddity));
        return;
    }

    enter(line);
    m_driver.read(m_levels, line, m_number, offsetHere());
    if (isFound(line)) {
        report();
        m_suspect.reset();
        if (line.column < m_indentedColumn)
            m_indented.reset();
    } else {
        lose(line);
    }

    m_front = causeHere("text-indentation", QString());
    m_empty.reset();
    if (line.kind == Kind::Value && line.value.trimmed().isEmpty())
        m_empty = line;
    m_isOpen = line.kind != Kind::Value;
    if (!m_isOpen)
        return;
    const bool isItem = line.kind == Kind::Item;
    m_opener =
        causeHere(isItem ? "text-short-item" : "text-empty-section",
                  isItem ? QStringLiteral("is all of its list item, so what follows lies inside it")
                         : QStringLiteral("holds nothing, so what follows lies inside it"));
    m_opener.losesDriver = m_driver.needs(m_levels, line);
    m_levels.open(line, node() ? node()->sub(line.name) : nullptr);
}

/// The node that the tree has for the last level.
const TStringTree *Inspection::node() const
{
    return m_levels.isEmpty() ? &m_tree : m_levels.last().node;
}

/// Goes to the section or item that \a line belongs to, and suspects what is odd on the way.
void Inspection::enter(const InfoLine &line)
{
    if (m_empty && InfoIndentation::isPart(line, *m_empty)) {
        m_levels.open(*m_empty, node() ? node()->sub(m_empty->name) : nullptr);
        m_suspect = m_front;
        m_suspect->kind = "text-section-blank";
        m_suspect->text =
            QStringLiteral("is read as a value because of the blank behind its colon");
    } else if (m_isOpen && !m_levels.holds(line)) {
        m_suspect = m_opener;
    }
    switch (m_levels.enter(line)) {
    case InfoIndentation::Place::Expected:
        break;
    case InfoIndentation::Place::Odd:
        m_suspect = causeHere("text-indentation",
                              QStringLiteral("is indented by %1 blanks instead of %2")
                                  .arg(line.column)
                                  .arg(m_levels.expectedColumn(line)));
        if (!m_indented) {
            m_indented = m_suspect;
            m_indentedColumn = line.column;
        }
        break;
    case InfoIndentation::Place::Resumed:
        m_suspect = m_front;
        m_suspect->text = QStringLiteral("is indented by %1 and the next line by %2 blanks; if it "
                                         "belongs to the line in front, that one is cut")
                              .arg(InfoLine(m_front.line).column)
                              .arg(line.column);
        break;
    }
}

bool Inspection::isFound(const InfoLine &line) const
{
    const TStringTree *parent = node();
    if (!parent)
        return false;
    if (line.kind != Kind::Value)
        return parent->sub(line.name) != nullptr;
    const QString value = parent->value(line.name);
    return !value.isNull() && value == line.value;
}

/// The tree does not have \a line where it belongs: finds whose fault that is.
void Inspection::lose(const InfoLine &line)
{
    const bool isReplaced =
        line.kind == Kind::Value && node() && !node()->value(line.name).isNull();
    if (line.oddity != Oddity::None) {
        blame(causeHere(oddityKind(line.oddity), oddityText(line.oddity)));
        m_cause->losesItself = line.oddity != Oddity::CarriageReturn;
    } else if (!m_cause && isReplaced) {
        blame(causeHere("text-repeated",
                        QStringLiteral("is replaced by a later entry of the same name")));
    } else {
        if (!m_cause) {
            const Cause here = causeHere(oddityKind(Oddity::None), oddityText(Oddity::None));
            blame(m_suspect.value_or(m_indented.value_or(here)));
            m_indented.reset();
            m_suspect.reset();
        }
        constexpr int MostNames = 3;
        if (m_cause->number != m_number) {
            if (++m_cause->misplaced <= MostNames)
                m_cause->names.append(line.name.left(32));
        } else {
            m_cause->losesItself = true;
        }
    }
    if (m_driver.needs(m_levels, line))
        m_cause->losesDriver = true;
}

Cause Inspection::causeHere(const char *kind, const QString &text) const
{
    Cause cause;
    cause.number = m_number;
    cause.offset = offsetHere();
    cause.line = m_line;
    cause.kind = kind;
    cause.text = text;
    return cause;
}

Cause Inspection::documentHere() const
{
    return causeHere("text-document",
                     QStringLiteral("is behind the end of the first document, which alone counts"));
}

void Inspection::blame(const Cause &cause)
{
    report();
    m_cause = cause;
}

/// Reports the cause of what was lost until now.
void Inspection::report()
{
    if (!m_cause)
        return;
    Finding finding;
    finding.kind = QLatin1String(m_cause->kind);
    finding.line = m_cause->number;
    finding.offset = m_cause->offset;
    finding.quote = quotedLine(m_cause->line);
    finding.text = m_cause->text;
    if (m_cause->losesItself)
        finding.text += QLatin1String("; it is lost");
    if (m_cause->misplaced > 0) {
        const bool isOne = m_cause->misplaced == 1;
        const bool isMore = m_cause->misplaced > m_cause->names.size();
        finding.text += QStringLiteral("; %1 behind it %2 lost: ")
                            .arg(isOne ? QStringLiteral("the entry")
                                       : QStringLiteral("%1 entries").arg(m_cause->misplaced),
                                 QLatin1String(isOne ? "is" : "are"))
            % m_cause->names.join(QLatin1String(", ")) % QLatin1String(isMore ? ", ..." : "");
    }
    if (m_cause->losesDriver && m_driver.isMissing() && !m_isDriverExplained) {
        m_isDriverExplained = true;
        FollowedDriver::addLoss(&finding);
    }
    m_findings->add(finding);
    m_cause.reset();
}

} // namespace

void inspectSessionInfo(const char *text, qint64 offset, FindingList *findings)
{
    Inspection(text, offset, findings).run();
}
