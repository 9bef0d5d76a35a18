#pragma once

#include "plugin/zepplugininterfaceimport.h"

#include <QObject>

/// Imports laps that a test wrote as text, one item to a line:
///
///     message|LEVEL|TEXT                  sent to the host
///     crash                               ends the process, as a broken plug-in would
///     lap|TYPE|COMPLETED|MILLISECONDS|LAP IN SESSION|STINT|LAP IN STINT     begins a lap
///     track|TEXT  configuration|TEXT  car|TEXT  driver|TEXT  session|NUMBER  date|ISO DATE
///     text|NAME|TEXT  number|NAME|NUMBER|UNIT  colour|NAME|COLOUR
///     channel|NAME|UNIT|SAMPLES  calculated|NAME|UNIT|SAMPLES
///
/// Samples are separated by spaces, and "-" is a missing one. A lap without MILLISECONDS has no
/// time. The second format never returns a lap, and never says why.
class LapSheetImport : public QObject, public ZepPluginInterfaceImport
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID ZepPluginInterfaceImport_iid)
    Q_INTERFACES(ZepPluginInterfaceImport)

public:
    QString pluginName() const override;
    QString sourceName() const override;
    QString pluginVersion() const override;
    QStringList availableImportFormats() const override;
    QVector<ZEP::Lap *> import(const QString &fileName, const QString &format,
                               const QMap<QString, QVariant> &options) override;

private:
    QVector<ZEP::Lap *> readLaps(const QString &text);
};
