#include "host/text/textwidth.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace {

struct Range {
    uint first;
    uint last;
};

// Blocks whose characters are drawn two columns wide: Hangul, CJK, full-width forms, emoji.
constexpr std::array<Range, 8> wideRanges{{{0x1100, 0x115f},
                                           {0x2e80, 0x303e},
                                           {0x3041, 0xa4cf},
                                           {0xac00, 0xd7a3},
                                           {0xf900, 0xfaff},
                                           {0xff00, 0xff60},
                                           {0x1f300, 0x1faff},
                                           {0x20000, 0x3fffd}}};

int codePointWidth(uint codePoint)
{
    constexpr uint firstOdd = 0xad; // nearly all text is before it
    if (codePoint < firstOdd)
        return 1;
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    const bool wide = std::any_of(wideRanges.begin(), wideRanges.end(), [codePoint](Range range) {
        return codePoint >= range.first && codePoint <= range.last;
    });
    return wide ? 2 : 1;
}

/// The code point at \a index, of two characters where they belong together.
uint codePointAt(const QString &text, int index)
{
    const QChar c = text.at(index);
    return c.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate()
        ? QChar::surrogateToUcs4(c, text.at(index + 1))
        : c.unicode();
}

int characters(uint codePoint)
{
    return QChar::requiresSurrogates(codePoint) ? 2 : 1;
}

/// What is shown in the place of \a codePoint; null if it is shown itself.
QString replacement(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
        return QChar(QChar::ReplacementCharacter);
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return QStringLiteral("\\u%1").arg(codePoint, 4, 16, QLatin1Char('0'));
    default:
        return QString();
    }
}

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    for (int i = 0; i < text.size();) {
        const uint codePoint = codePointAt(text, i);
        width += codePointWidth(codePoint);
        i += characters(codePoint);
    }
    return width;
}

QString elided(const QString &text, int width)
{
    int taken = 0;
    int end = 0; // of what fits beside an ellipsis
    for (int i = 0; i < text.size();) {
        const uint codePoint = codePointAt(text, i);
        taken += codePointWidth(codePoint);
        i += characters(codePoint);
        if (taken < width)
            end = i;
        else if (taken > width)
            return text.left(end) % QChar(0x2026);
    }
    return text;
}

QString printable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    int done = 0; // what the result has of the text
    for (int i = 0; i < text.size();) {
        const uint codePoint = codePointAt(text, i);
        const QString shown = replacement(codePoint);
        if (!shown.isNull()) {
            result.append(text.midRef(done, i - done)).append(shown);
            done = i + characters(codePoint);
        }
        i += characters(codePoint);
    }
    return result.append(text.midRef(done));
}
