#include "host/commands/jsonoption.h"

#include "host/commands/commandline.h"
#include "host/text/terminal.h"
#include "writers/jsonvalues.h"

void JsonOption::declare(CommandOptions &options, const std::string &instead)
{
    options.addFlag("--json", &m_isGiven, "Print JSON instead of " + instead);
}

void JsonOption::print(const QJsonValue &value, Terminal &terminal)
{
    terminal.print(QString::fromUtf8(jsonBytes(value)));
}
