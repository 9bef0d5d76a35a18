#include "yaml/yamllinereader.h"

#include "yaml/yamltree.h"

namespace {

QString withoutBlanks(QString text)
{
    return text.remove(QLatin1Char(' '));
}

} // namespace

YamlLineReader::YamlLineReader(TStringTree *root) : m_node(root) { }

void YamlLineReader::read(const QString &line)
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

void YamlLineReader::enterListItem(const QString &lastPart)
{
    m_node = m_node->addSub(withoutBlanks(lastPart));
    m_lastKind = LineKind::ListItem;
}

void YamlLineReader::enterKey(const QString &line, int indentation)
{
    // Two keys in a row at one level: the first one was empty.
    if (m_lastKind == LineKind::Key && m_indentation == indentation)
        leaveNode();
    m_node = m_node->addSub(withoutBlanks(line.chopped(1)));
    m_lastKind = LineKind::Key;
}

void YamlLineReader::storeValue(const QString &firstPart, const QString &lastPart)
{
    m_node->set(withoutBlanks(firstPart), lastPart);
    m_lastKind = LineKind::KeyValue;
}

/// Moves up one level, except from the root.
void YamlLineReader::leaveNode()
{
    if (m_node->hasParent())
        m_node = m_node->parent();
}
