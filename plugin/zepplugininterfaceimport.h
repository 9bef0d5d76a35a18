#pragma once

#include "model/lap.h"
#include "plugin/zepdataemitter.h"
#include "plugin/zepiidprefix.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QtPlugin>
#include <QVariant>
#include <QVector>

/// A plug-in that reads laps from files. The order of the virtual operations is fixed, because
/// hosts are built against it.
class ZepPluginInterfaceImport
{
public:
    virtual ~ZepPluginInterfaceImport();

    /// Display name of the plug-in.
    virtual QString pluginName() const = 0;
    /// Name of the data source.
    virtual QString sourceName() const = 0;
    virtual QString pluginVersion() const = 0;
    /// The formats that import() reads, as a file dialog shows them: "Name (*.suffix)".
    virtual QStringList availableImportFormats() const = 0;
    /// Reads all laps of \a fileName, on the calling thread. \a format is one of
    /// availableImportFormats(). The caller owns the laps. On failure the result is empty, and a
    /// message with a negative level says why.
    virtual QVector<ZEP::Lap *> import(const QString &fileName, const QString &format,
                                       const QMap<QString, QVariant> &options) = 0;

    /// The signals of this plug-in; owned by the plug-in.
    ZepDataEmitter *dataEmitter() { return &m_dataEmitter; }
    /// Sends the plug-in's name followed by \a text to the host. \a level is 0 for information and
    /// negative for errors.
    void message(const QString &text, int level);

private:
    ZepDataEmitter m_dataEmitter;
};

#define ZepPluginInterfaceImport_iid ZEP_IID_PREFIX ".ZepPluginInterfaceImport/0.2"
Q_DECLARE_INTERFACE(ZepPluginInterfaceImport, ZepPluginInterfaceImport_iid)
