#include "host/commands/formatscommand.h"

#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "plugin/zepplugininterfaceimport.h"

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

QJsonArray json(const PluginRegistry &plugins)
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
    return array;
}

} // namespace

Command::Description FormatsCommand::description() const
{
    return {"formats", "List the plug-ins and the formats that they import",
            "  zepimport formats\n"
            "  zepimport formats --plugin build/bin"};
}

void FormatsCommand::declare(CommandOptions &options)
{
    m_plugins.declare(options);
    m_json.declare(options);
}

ExitCode FormatsCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = m_plugins.load(terminal);
    if (!plugins)
        return ExitCode::Failure;
    if (m_json.isGiven())
        JsonOption::print(json(*plugins), terminal);
    else
        terminal.print(table(*plugins, terminal));
    return ExitCode::Success;
}
