#pragma once

#include <QString>

/// A message as hosts show it: after the display name of the plug-in that it comes from.
inline QString pluginMessage(const QString &pluginName, const QString &text)
{
    return QLatin1Char('[') + pluginName + QLatin1String(" plugin] ") + text;
}
