#pragma once

#include "plugin/zepplugininterfaceimport.h"

#include <QObject>

/// Imports .ibt telemetry recordings: every lap of the player's car with its channels.
///
/// Stateless apart from its signals; imports are independent of each other. The options of import()
/// are accepted and ignored.
class Q_DECL_EXPORT iRPluginImport : public QObject, public ZepPluginInterfaceImport
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID ZepPluginInterfaceImport_iid)
    Q_INTERFACES(ZepPluginInterfaceImport)

public:
    ~iRPluginImport() override;

    QString pluginName() const override;
    QString sourceName() const override;
    QString pluginVersion() const override;
    QStringList availableImportFormats() const override;
    QVector<ZEP::Lap *> import(const QString &fileName, const QString &format,
                               const QMap<QString, QVariant> &options) override;
};
