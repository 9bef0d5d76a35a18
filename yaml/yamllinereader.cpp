#include "yaml/yamllinereader.h"

#include "yaml/yamltree.h"

namespace {

QString withoutSpaces(QString text)
{
    return text.remove(QLatin1Char(' '));
}

} // namespace

YamlLineReader::YamlLineReader(TStringTree *root) : m_node(root) { }

YamlLineReader::Filing YamlLineReader::read(const QString &line)
{
    Filing filing = follow(line);
    if (filing.action == Filing::Action::Stored)
        m_node->set(filing.name, filing.value);
    return filing;
}

YamlLineReader::Filing YamlLineReader::follow(const QString &line)
{
    if (line.isEmpty())
        return {Filing::Action::Nothing, m_node};

    const int indentation = TYamlTree::countLeadingSpaces(line, m_isListItem);
    const QLatin1String separator(": ");
    const int first = line.indexOf(separator);
    const int last = line.lastIndexOf(separator);
    const bool isPair = first >= 0 && first == last;
    const QString lastPart = last < 0 ? line : line.mid(last + separator.size());
    const bool isDedent = m_indentation > indentation;
    const bool isSameLevel = m_indentation == indentation;

    for (int level = m_indentation; level > indentation && m_node->hasParent(); --level)
        leaveNode();
    m_indentation = indentation;

    if (m_isListItem && (isDedent || isPair))
        return open(lastPart, LineKind::ListItem);
    if (isPair) {
        m_lastKind = LineKind::KeyValue;
        return {Filing::Action::Stored, m_node, withoutSpaces(line.left(first)), lastPart};
    }
    // Two keys in a row at one level: the first one was empty.
    if (m_lastKind == LineKind::Key && isSameLevel)
        leaveNode();
    return open(line.chopped(1), LineKind::Key);
}

YamlLineReader::Filing YamlLineReader::open(const QString &name, LineKind kind)
{
    const QString nodeName = withoutSpaces(name);
    m_node = m_node->addSub(nodeName);
    m_lastKind = kind;
    return {Filing::Action::Opened, m_node, nodeName};
}

/// Moves up one level, except from the root.
void YamlLineReader::leaveNode()
{
    if (m_node->hasParent())
        m_node = m_node->parent();
}
