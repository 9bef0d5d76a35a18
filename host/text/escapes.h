#pragma once

#include <QString>

/// Escape sequences that terminals obey.
namespace Escapes {

constexpr char Bold[] = "\033[1m";
constexpr char Faint[] = "\033[2m";
constexpr char BoldGreen[] = "\033[1;32m";
constexpr char Yellow[] = "\033[33m";
constexpr char Cyan[] = "\033[36m";
constexpr char Reset[] = "\033[0m";
/// Moves to the start of the line and clears it.
constexpr char ClearLine[] = "\r\033[K";

/// \a text in \a style, which ends with it.
inline QString styled(const QString &text, const char *style)
{
    return QLatin1String(style) % text % QLatin1String(Reset);
}

} // namespace Escapes
