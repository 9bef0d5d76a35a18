#include "yaml/stringtree.h"

#include <QStringList>

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
    // A list instead of recursion: a tree may be as deep as its text is long.
    QList<TStringTree *> doomed = subTrees.values();
    subTrees.clear();
    while (!doomed.isEmpty()) {
        TStringTree *node = doomed.takeLast();
        doomed += node->subTrees.values();
        node->subTrees.clear();
        delete node;
    }
}

TStringTree *TStringTree::addSub(const QString &name)
{
    TStringTree *&node = subTrees[name];
    if (!node)
        node = new TStringTree(this);
    return node;
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
