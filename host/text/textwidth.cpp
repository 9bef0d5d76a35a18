#include "host/text/textwidth.h"

#include <QChar>
#include <QVector>

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

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    for (const uint codePoint : text.toUcs4())
        width += codePointWidth(codePoint);
    return width;
}

QString elided(const QString &text, int width)
{
    if (displayWidth(text) <= width)
        return text;

    const QVector<uint> codePoints = text.toUcs4();
    int taken = 1; // the ellipsis
    int end = 0;
    while (taken + codePointWidth(codePoints.at(end)) <= width)
        taken += codePointWidth(codePoints.at(end++));
    return QString::fromUcs4(codePoints.constData(), end) % QChar(0x2026);
}

QString printable(const QString &text)
{
    QString result = text;
    for (QChar &c : result) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    return result;
}
