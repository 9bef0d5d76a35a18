#include "yaml/yamltree.h"

#include "yaml/yamllinereader.h"

#include <cstring>

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

    YamlLineReader reader(this);
    const char *line = std::strchr(text, '\n');
    while (line) {
        ++line;
        const char *end = std::strchr(line, '\n');
        if (end)
            reader.read(QString::fromLatin1(line, int(end - line)));
        line = end;
    }
}
