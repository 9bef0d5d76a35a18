// Everything in a tree, as lines to compare.
#pragma once

#include "yaml/yamltree.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/// Lists the contents of any node of a tree.
class TreeContents : public TStringTree
{
public:
    /// Every child as "path/" and every value as "path/key=value", node by node: first its values,
    /// then each child followed by its contents, all in ascending order.
    static QStringList of(const TStringTree &node, const QString &path = QString())
    {
        QStringList lines;
        const QMap<QString, QString> &pairs = node.*(&TreeContents::values);
        for (auto pair = pairs.cbegin(); pair != pairs.cend(); ++pair)
            lines += path + pair.key() + '=' + pair.value();
        const QMap<QString, TStringTree *> &children = node.*(&TreeContents::subTrees);
        for (auto child = children.cbegin(); child != children.cend(); ++child) {
            const QString childPath = path + child.key() + '/';
            lines += childPath;
            lines += of(*child.value(), childPath);
        }
        return lines;
    }

    static QMap<QString, TStringTree *> childrenOf(const TStringTree &node)
    {
        return node.*(&TreeContents::subTrees);
    }

    static QMap<QString, QString> valuesOf(const TStringTree &node)
    {
        return node.*(&TreeContents::values);
    }
};

/// The contents of an empty tree after a text was read into it.
inline QStringList contentsOf(const QByteArray &text)
{
    TYamlTree tree;
    tree.setYaml(text.constData());
    return TreeContents::of(tree);
}
