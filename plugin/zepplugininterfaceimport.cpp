#include "plugin/zepplugininterfaceimport.h"

#include "plugin/pluginmessage.h"

ZepPluginInterfaceImport::~ZepPluginInterfaceImport() = default;

void ZepPluginInterfaceImport::message(const QString &text, int level)
{
    Q_EMIT m_dataEmitter.sendMessage(pluginMessage(pluginName(), text), level);
}
