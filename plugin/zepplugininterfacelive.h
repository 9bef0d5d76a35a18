#pragma once

#include "plugin/livepluginfo.h"
#include "plugin/zepdataemitter.h"

#include <QString>
#include <QVariant>

/// A plug-in that streams telemetry from a running source. The order of the virtual operations is
/// fixed, because hosts are built against it.
class ZepPluginInterfaceLive
{
public:
    virtual ~ZepPluginInterfaceLive();

    /// Starts looking for the source; sendConnected() or sendNotConnected() answers.
    virtual void start() = 0;
    /// Stops streaming; sendDisconnected() answers.
    virtual void stop() = 0;
    virtual bool isConnected() const = 0;
    /// Display name of the plug-in.
    virtual QString pluginName() const = 0;
    /// Name of the data source.
    virtual QString sourceName() const = 0;
    virtual QString pluginVersion() const = 0;
    /// Time between two polls of the source, milliseconds.
    virtual int pollInterval() const = 0;
    virtual void setPollInterval(int milliseconds) = 0;
    /// True while single samples are sent in addition to whole laps.
    virtual bool sendsSamples() const = 0;
    virtual void setSendsSamples(bool on) = 0;

    /// The signals of this plug-in; owned by the plug-in.
    ZepDataEmitter *dataEmitter() { return &m_dataEmitter; }

    /// Switches telemetry on for every car and sends the list, even if it is empty.
    void enableTelemetryFromAllCars();
    /// Switches telemetry off for every car and sends the list, even if it is empty.
    void disableTelemetryFromAllCars();
    /// Switches telemetry on for the first car with this \a id and sends the list. If there is no
    /// such car, nothing happens.
    void enableTelemetry(const QVariant &id);
    /// Switches telemetry off for the first car with this \a id and sends the list. If there is no
    /// such car, nothing happens.
    void disableTelemetry(const QVariant &id);
    /// A copy of the car list and the plug-in's names.
    ZEP::LivePluginInfo getTelemetryCarInfoList() const { return m_info; }

    /// Sends the plug-in's name followed by \a text to the host. \a level is 0 for information and
    /// negative for errors.
    void message(const QString &text, int level);

private:
    void setTelemetryOfAllCars(bool on);
    void setTelemetry(const QVariant &id, bool on);

    ZepDataEmitter m_dataEmitter;

protected:
    /// The cars and names that the plug-in offers. The plug-in fills them in.
    ZEP::LivePluginInfo m_info;
};
