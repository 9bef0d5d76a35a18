#pragma once

#include "plugin/carinfo.h"

#include <QString>
#include <QVector>

namespace ZEP {

/// What a live plug-in offers: its names and its cars.
class LivePluginInfo
{
public:
    /// Display name of the plug-in.
    QString pluginName() const { return m_pluginName; }
    void setPluginName(const QString &pluginName) { m_pluginName = pluginName; }

    /// Name of the data source.
    QString sourceName() const { return m_sourceName; }
    void setSourceName(const QString &sourceName) { m_sourceName = sourceName; }

    /// The cars of the live source, in its order.
    QVector<ZEP::CarInfo> carInfoList;

private:
    QString m_pluginName;
    QString m_sourceName;
};

} // namespace ZEP
