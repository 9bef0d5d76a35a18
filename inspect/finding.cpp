#include "inspect/finding.h"

Finding &Finding::at(qint64 fileOffset)
{
    offset = fileOffset;
    return *this;
}

Finding &Finding::needs(qint64 bytes, qint64 there)
{
    wanted = bytes;
    had = there;
    return *this;
}

Finding &Finding::about(const QString &variableName)
{
    variable = variableName;
    return *this;
}

Finding &Finding::inLine(int number, const QString &quoted)
{
    line = number;
    quote = quoted;
    return *this;
}

Finding &Finding::loses(const QString &what)
{
    severity = Severity::Damage;
    lost = what;
    return *this;
}

Finding &Finding::inRecords()
{
    isAboutRecords = true;
    return *this;
}

QString Finding::place() const
{
    if (line > 0)
        return QStringLiteral("session info, line %1").arg(line);
    if (!variable.isEmpty())
        return QLatin1String("variable ") % variable;
    return offset ? QStringLiteral("byte %1").arg(*offset) : QString();
}
