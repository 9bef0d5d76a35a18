#pragma once

#include "plugin/livepluginfo.h"
#include "plugin/zepdataemitter.h"

#include <QString>
#include <QVariant>

/// A plug-in that streams telemetry from a running source. The order of the virtual operations is
/// fixed: hosts are built against it.
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
    /// True while samples are sent one by one, in addition to whole laps.
    virtual bool sendsSamples() const = 0;
    virtual void setSendsSamples(bool on) = 0;

    /// The signals of this plug-in; owned by the plug-in.
    ZepDataEmitter *dataEmitter() { return &m_dataEmitter; }

    /// Switches telemetry on for every car and sends the list, also when it is empty.
    void enableTelemetryFromAllCars();
    /// Switches telemetry off for every car and sends the list, also when it is empty.
    void disableTelemetryFromAllCars();
    /// Switches telemetry on for the first car with this \a id and sends the list; without such a
    /// car nothing happens.
    void enableTelemetry(const QVariant &id);
    /// Switches telemetry off for the first car with this \a id and sends the list; without such
    /// a car nothing happens.
    void disableTelemetry(const QVariant &id);
    /// A copy of the car list and the plug-in's names.
    ZEP::LivePluginInfo getTelemetryCarInfoList() const { return m_info; }

    /// Sends \a text to the host, after the plug-in's name; \a level is 0 for information and
    /// negative for errors.
    void message(const QString &text, int level);

private:
    void setTelemetryOfAllCars(bool on);
    void setTelemetry(const QVariant &id, bool on);

    ZepDataEmitter m_dataEmitter;

protected:
    /// The cars and names that the plug-in offers; the plug-in fills them in.
    ZEP::LivePluginInfo m_info;
};
