#include "yaml/stringtree.h"

#include <QStringList>

#include <memory>

namespace {

QStringList segments(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::KeepEmptyParts, Qt::CaseSensitive);
}

} // namespace

TStringTree::TStringTree(TStringTree *parent) : parentNode(parent) { }

TStringTree::~TStringTree()
{
    clear();
}

void TStringTree::clear()
{
    // It must not recurse, because a tree may be as deep as its text is long. It must not allocate,
    // because it may run after memory ran out.
    TStringTree *node = this;
    while (node != this || !node->subTrees.isEmpty()) {
        if (node->subTrees.isEmpty()) {
            TStringTree *parent = node->parentNode;
            delete node;
            node = parent;
        } else {
            const auto first = node->subTrees.begin();
            TStringTree *child = *first;
            node->subTrees.erase(first);
            node = child;
        }
    }
}

TStringTree *TStringTree::addSub(const QString &name)
{
    if (TStringTree *known = sub(name))
        return known;
    auto node = std::make_unique<TStringTree>(this);
    subTrees.insert(name, node.get());
    return node.release();
}

TStringTree *TStringTree::pathSub(const QString &path) const
{
    const TStringTree *node = this;
    TStringTree *reached = nullptr;
    for (const QString &segment : segments(path)) {
        reached = node->sub(segment);
        if (!reached)
            return nullptr;
        node = reached;
    }
    return reached;
}

void TStringTree::pathSet(const QString &path, const QString &value)
{
    QStringList names = segments(path);
    const QString key = names.takeLast();
    TStringTree *node = this;
    for (const QString &name : qAsConst(names))
        node = node->addSub(name);
    node->set(key, value);
}

QString TStringTree::pathValue(const QString &path) const
{
    QStringList names = segments(path);
    const QString key = names.takeLast();
    const TStringTree *node = this;
    for (const QString &name : qAsConst(names)) {
        node = node->sub(name);
        if (!node)
            return QString();
    }
    return node->value(key);
}
