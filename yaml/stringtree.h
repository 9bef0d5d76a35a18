#pragma once

#include <QMap>
#include <QString>

/// A tree of strings: each node contains named values and named child nodes.
///
/// A path names children from node to node, separated by "/". There is no escaping, and an empty
/// segment is a name like any other. Names are case-sensitive and ordered as text ("10" before
/// "2"). A value and a child may have the same name. A node owns its children.
class TStringTree
{
public:
    /// A node without values or children. Only addSub() makes it a child of \a parent.
    explicit TStringTree(TStringTree *parent);
    ~TStringTree();
    TStringTree(const TStringTree &) = delete;
    TStringTree &operator=(const TStringTree &) = delete;

    /// Deletes all children; the node's own values stay.
    void clear();

    bool hasParent() const { return parentNode != nullptr; }
    TStringTree *parent() const { return parentNode; }

    /// The child called \a name, created if there is none.
    TStringTree *addSub(const QString &name);
    /// The child called \a name, or null.
    TStringTree *sub(const QString &name) const { return subTrees.value(name); }
    /// The node that \a path leads to, or null. Every segment names a child.
    TStringTree *pathSub(const QString &path) const;

    /// Inserts or overwrites one of the node's own values.
    void set(const QString &key, const QString &value) { values.insert(key, value); }
    /// The node's own value called \a key; a null string if there is none.
    QString value(const QString &key) const { return values.value(key); }
    /// Stores \a value under the last segment of \a path, in the node that the segments before it
    /// lead to. Missing nodes are created.
    void pathSet(const QString &path, const QString &value);
    /// The value under the last segment of \a path, in the node that the segments before it lead
    /// to; a null string if there is none.
    QString pathValue(const QString &path) const;

protected:
    QMap<QString, QString> values;
    QMap<QString, TStringTree *> subTrees;
    TStringTree *parentNode;
};
