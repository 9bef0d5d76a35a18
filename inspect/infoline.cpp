#include "inspect/infoline.h"

namespace {

QString withoutSpaces(const QStringRef &text)
{
    QString result = text.toString();
    return result.contains(QLatin1Char(' ')) ? result.remove(QLatin1Char(' ')) : result;
}

bool isIndentation(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

} // namespace

InfoLine::InfoLine(const QString &text)
{
    const QLatin1String separator(": ");
    QStringRef line(&text);
    if (line.endsWith(QLatin1Char('\r'))) {
        line.chop(1);
        oddity = Oddity::CarriageReturn;
    }
    while (column < line.size() && isIndentation(line.at(column)))
        ++column;
    if (column == line.size()) {
        kind = Kind::Blank;
        if (!line.isEmpty())
            oddity = Oddity::Blanks;
        return;
    }
    if (line.left(column).contains(QLatin1Char('\t')))
        oddity = Oddity::Tab;
    if (line == QLatin1String("...") || line == QLatin1String("---")) {
        kind = Kind::End;
        return;
    }

    const QStringRef content = line.mid(column);
    const bool hasDash = content.startsWith(QLatin1Char('-')); // the space after it may be missing
    int keyEnd = content.indexOf(separator);
    const int tabbed = keyEnd < 0 ? content.indexOf(QLatin1String(":\t")) : -1;
    if (tabbed > 0) {
        keyEnd = tabbed;
        oddity = Oddity::Tab;
    } else if (keyEnd >= 0 && content.lastIndexOf(separator) != keyEnd) {
        oddity = Oddity::Separators;
    }

    if (content.startsWith(QLatin1Char('#'))) {
        oddity = Oddity::Comment;
    } else if (keyEnd > 0) {
        kind = hasDash ? Kind::Item : Kind::Value;
        const QStringRef after = content.mid(keyEnd + separator.size());
        name = withoutSpaces(hasDash ? after : content.left(keyEnd));
        value = after.toString();
    } else if (!content.startsWith(QLatin1String("- ")) && content.size() > 1
               && content.endsWith(QLatin1Char(':'))) {
        kind = Kind::Section;
        name = withoutSpaces(content.chopped(1));
    } else {
        oddity = Oddity::NoEntry;
    }
}

bool isControl(QChar c)
{
    return (c < QLatin1Char(' ') && c != QLatin1Char('\t')) || c == QLatin1Char('\x7f');
}

QString quotedLine(const QString &text)
{
    constexpr int Longest = 60;
    QString result;
    for (const QChar c : text.leftRef(Longest)) {
        if (c == QLatin1Char('\t'))
            result += QLatin1String("\\t");
        else if (c == QLatin1Char('\r'))
            result += QLatin1String("\\r");
        else if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result += QLatin1Char('\\') % c;
        else if (c.isPrint())
            result += c;
        else
            result += QStringLiteral("\\x%1").arg(int(c.unicode()), 2, 16, QLatin1Char('0'));
    }
    if (text.size() > Longest)
        result += QChar(0x2026);
    return QLatin1Char('"') % result % QLatin1Char('"');
}
