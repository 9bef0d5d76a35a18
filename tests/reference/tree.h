// Session-info text as a tree of strings, read line by line.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <list>

namespace reference {

/// A node: its own values by key and its children by name.
///
/// The root owns all nodes, so that text nested without end is released without recursion.
class Tree
{
public:
    Tree() = default;
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    /// The child \a name, created if it is missing.
    Tree *addSub(const QString &name);
    /// The child \a name, or null.
    const Tree *sub(const QString &name) const { return m_children.value(name); }
    /// The node reached by the children named in \a path, separated by slashes, or null.
    const Tree *pathSub(const QString &path) const;

    void set(const QString &key, const QString &value) { m_values.insert(key, value); }
    /// The value of \a key; a null string if it is missing.
    QString value(const QString &key) const { return m_values.value(key); }
    /// Stores \a value under the last name of \a path; the names before it are children.
    void pathSet(const QString &path, const QString &value);
    /// The value under the last name of \a path, or a null string.
    QString pathValue(const QString &path) const;

    QStringList keys() const { return m_values.keys(); }
    QStringList childNames() const { return m_children.keys(); }

    /// Removes the children; the node's own values stay.
    void clear() { m_children.clear(); }

    /// Reads session-info text and adds its content.
    void setYaml(const char *text);

private:
    QMap<QString, QString> m_values;
    QMap<QString, Tree *> m_children;
    Tree *m_root = nullptr; ///< null in the root itself
    Tree *m_parent = nullptr;
    std::list<Tree> m_nodes; ///< all nodes except the root; used only in the root
};

} // namespace reference
