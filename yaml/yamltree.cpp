#include "yaml/yamltree.h"

#include <cstring>

namespace {

QString withoutBlanks(QString text)
{
    return text.remove(QLatin1Char(' '));
}

/// Files one line after the other under the node that its indentation asks for.
///
/// Behind a key without value and behind a list item the current node is one level deeper than the
/// line, behind a value it stays at the line's level.
class LineReader
{
public:
    explicit LineReader(TStringTree *root) : m_node(root) { }

    void read(const QString &line);

private:
    enum class LineKind { None, Key, KeyValue, ListItem };

    void enterListItem(const QString &lastPart);
    void enterKey(const QString &line, int indentation);
    void storeValue(const QString &firstPart, const QString &lastPart);
    void leaveNode();

    TStringTree *m_node;
    int m_indentation = 0;
    LineKind m_lastKind = LineKind::None;
    bool m_isListItem = false;
};

void LineReader::read(const QString &line)
{
    if (line.isEmpty())
        return;

    const int indentation = TYamlTree::countLeadingSpaces(line, m_isListItem);
    const QLatin1String separator(": ");
    const int first = line.indexOf(separator);
    const int last = line.lastIndexOf(separator);
    const bool isPair = first >= 0 && first == last;
    const QString lastPart = last < 0 ? line : line.mid(last + separator.size());
    const bool isDedent = m_indentation > indentation;

    for (int level = m_indentation; level > indentation && m_node->hasParent(); --level)
        leaveNode();

    if (m_isListItem && (isDedent || isPair))
        enterListItem(lastPart);
    else if (isPair)
        storeValue(line.left(first), lastPart);
    else
        enterKey(line, indentation);
    m_indentation = indentation;
}

void LineReader::enterListItem(const QString &lastPart)
{
    m_node = m_node->addSub(withoutBlanks(lastPart));
    m_lastKind = LineKind::ListItem;
}

void LineReader::enterKey(const QString &line, int indentation)
{
    // Two keys in a row at one level: the first one turned out to be empty.
    if (m_lastKind == LineKind::Key && m_indentation == indentation)
        leaveNode();
    m_node = m_node->addSub(withoutBlanks(line.chopped(1)));
    m_lastKind = LineKind::Key;
}

void LineReader::storeValue(const QString &firstPart, const QString &lastPart)
{
    m_node->set(withoutBlanks(firstPart), lastPart);
    m_lastKind = LineKind::KeyValue;
}

/// Steps up one level; the root is never left.
void LineReader::leaveNode()
{
    if (m_node->hasParent())
        m_node = m_node->parent();
}

} // namespace

TYamlTree::TYamlTree() : TStringTree(nullptr) { }

int TYamlTree::countLeadingSpaces(const QString &line, bool &isListItem)
{
    int blanks = 0;
    while (blanks < line.size() && line.at(blanks) == QLatin1Char(' '))
        ++blanks;
    if (blanks == line.size())
        return 0;
    isListItem = line.at(blanks) == QLatin1Char('-');
    return isListItem ? blanks + 1 : blanks;
}

void TYamlTree::setYaml(const char *text)
{
    if (!text)
        return;

    LineReader reader(this);
    const char *line = std::strchr(text, '\n');
    while (line) {
        ++line;
        const char *end = std::strchr(line, '\n');
        if (end)
            reader.read(QString::fromLatin1(line, int(end - line)));
        line = end;
    }
}
