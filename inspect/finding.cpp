#include "inspect/finding.h"

QString Finding::place() const
{
    if (line > 0)
        return QStringLiteral("session info, line %1").arg(line);
    if (!variable.isEmpty())
        return QLatin1String("variable ") % variable;
    return offset ? QStringLiteral("byte %1").arg(*offset) : QString();
}
