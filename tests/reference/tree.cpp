#include "tests/reference/tree.h"

namespace reference {

Tree *Tree::addSub(const QString &name)
{
    if (!m_children.contains(name)) {
        Tree *root = m_root ? m_root : this;
        Tree *child = &root->m_nodes.emplace_back();
        child->m_root = root;
        child->m_parent = this;
        m_children.insert(name, child);
    }
    return m_children.value(name);
}

const Tree *Tree::pathSub(const QString &path) const
{
    const Tree *node = this;
    const QStringList names = path.split(QLatin1Char('/'), Qt::KeepEmptyParts);
    for (const QString &name : names) {
        node = node->sub(name);
        if (!node)
            return nullptr;
    }
    return node;
}

void Tree::pathSet(const QString &path, const QString &value)
{
    Tree *node = this;
    QStringList names = path.split(QLatin1Char('/'), Qt::KeepEmptyParts);
    const QString key = names.takeLast();
    for (const QString &name : qAsConst(names))
        node = node->addSub(name);
    node->set(key, value);
}

QString Tree::pathValue(const QString &path) const
{
    const Tree *node = this;
    QStringList names = path.split(QLatin1Char('/'), Qt::KeepEmptyParts);
    const QString key = names.takeLast();
    for (const QString &name : qAsConst(names)) {
        node = node->sub(name);
        if (!node)
            return QString();
    }
    return node->value(key);
}

void Tree::setYaml(const char *text)
{
    enum LineKind { None, KeyOnly, KeyValue, ListItem };

    const QStringList lines =
        QString::fromLatin1(text).split(QLatin1Char('\n'), Qt::KeepEmptyParts);
    Tree *node = this;
    int previousIndentation = 0;
    LineKind lineKind = None;
    bool isListItem = false;

    // The first line marks the document. The last one is what follows the final line feed.
    for (int i = 1; i < lines.size() - 1; ++i) {
        const QString &line = lines.at(i);
        if (line.isEmpty())
            continue;

        int blanks = 0;
        while (blanks < line.size() && line.at(blanks) == QLatin1Char(' '))
            ++blanks;
        int indentation = 0;
        if (blanks < line.size()) {
            isListItem = line.at(blanks) == QLatin1Char('-');
            indentation = isListItem ? blanks + 1 : blanks;
        }

        const QStringList parts = line.split(QLatin1String(": "), Qt::KeepEmptyParts);

        LineKind kind = None;
        if (previousIndentation > indentation) {
            for (int level = previousIndentation; level > indentation; --level) {
                if (node->m_parent)
                    node = node->m_parent;
            }
            if (isListItem)
                kind = ListItem;
            else if (parts.size() == 2)
                kind = KeyValue;
            else
                kind = KeyOnly;
        } else {
            if (parts.size() != 2)
                kind = KeyOnly;
            else if (!isListItem)
                kind = KeyValue;
            else
                kind = ListItem;
        }

        switch (kind) {
        case ListItem:
            node = node->addSub(QString(parts.last()).remove(QLatin1Char(' ')));
            break;
        case KeyValue:
            node->set(QString(parts.first()).remove(QLatin1Char(' ')), parts.last());
            break;
        case KeyOnly:
            // The previous key of this level had no children.
            if (lineKind == KeyOnly && previousIndentation == indentation && node->m_parent)
                node = node->m_parent;
            node = node->addSub(line.left(line.size() - 1).remove(QLatin1Char(' ')));
            break;
        case None:
            break;
        }
        lineKind = kind;
        previousIndentation = indentation;
    }
}

} // namespace reference
