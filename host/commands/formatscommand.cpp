#include "host/commands/formatscommand.h"

#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "plugin/zepplugininterfaceimport.h"
#include "writers/jsonvalues.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString table(const PluginRegistry &plugins, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("Format")},
                       {QStringLiteral("Plug-in"), Align::Left, 0, 20},
                       {QStringLiteral("Version"), Align::Left, 1},
                       {QStringLiteral("Source"), Align::Left, 2},
                       {QStringLiteral("Library"), Align::Left, 3}});
    for (const PluginRegistry::Plugin &plugin : plugins.plugins()) {
        const ZepPluginInterfaceImport &interface = *plugin.interface;
        for (const QString &format : interface.availableImportFormats())
            table.addRow({format, interface.pluginName(), interface.pluginVersion(),
                          interface.sourceName(), plugin.library});
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QString json(const PluginRegistry &plugins)
{
    QJsonArray array;
    for (const PluginRegistry::Plugin &plugin : plugins.plugins()) {
        const ZepPluginInterfaceImport &interface = *plugin.interface;
        array.append(QJsonObject{{QStringLiteral("plugin"), interface.pluginName()},
                                 {QStringLiteral("version"), interface.pluginVersion()},
                                 {QStringLiteral("source"), interface.sourceName()},
                                 {QStringLiteral("formats"),
                                  QJsonArray::fromStringList(interface.availableImportFormats())},
                                 {QStringLiteral("library"), plugin.library}});
    }
    return QString::fromUtf8(jsonBytes(array));
}

} // namespace

CLI::App *FormatsCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "formats", "Show the plug-ins found and their formats",
                     "  zepimport formats\n"
                     "  zepimport formats --plugin build/bin");
    command->add_flag("--json", m_wantsJson, "Print JSON instead of tables");
    return command;
}

ExitCode FormatsCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = loadPlugins(terminal);
    if (!plugins)
        return ExitCode::Failure;
    terminal.print(m_wantsJson ? json(*plugins) : table(*plugins, terminal));
    return ExitCode::Success;
}
