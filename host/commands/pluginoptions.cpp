#include "host/commands/pluginoptions.h"

#include "host/commands/commandline.h"
#include "host/text/terminal.h"

#include <QFile>

void PluginOptions::declare(CommandOptions &options)
{
    options.addFlag("-v,--verbose", &m_verbose, "Show all messages from the plug-ins");
    options.addText({"--plugin", "PATH",
                     "Plug-in, or folder of plug-ins, to use instead of\n"
                     "those in ZEP_PLUGIN_PATH or the installed ones"},
                    &m_plugin);
}

std::optional<PluginRegistry> PluginOptions::load(Terminal &terminal) const
{
    const PluginRegistry registry(PluginRegistry::searchPath(QFile::decodeName(m_plugin.c_str())));
    if (registry.plugins().isEmpty()) {
        terminal.complain(QLatin1String("no import plug-in found (")
                          % registry.remarks().join(QLatin1String("; "))
                          % QLatin1String("); give its file or folder with --plugin PATH"));
        return std::nullopt;
    }
    if (m_verbose) {
        for (const QString &remark : registry.remarks())
            terminal.complain(remark);
    }
    return registry;
}

QStringList PluginOptions::arguments() const
{
    QStringList result;
    if (m_verbose)
        result.append(QStringLiteral("--verbose"));
    if (!m_plugin.empty())
        result.append(QLatin1String("--plugin=") % QFile::decodeName(m_plugin.c_str()));
    return result;
}
