#pragma once

#include "model/lap.h"
#include "model/lapheader.h"
#include "model/sample.h"
#include "plugin/livepluginfo.h"

#include <QObject>

/// The signals by which a plug-in reaches its host. They are emitted synchronously, on the thread
/// that called the plug-in; hosts may connect to them by position, so their order is fixed.
class ZepDataEmitter : public QObject
{
    Q_OBJECT

public:
    explicit ZepDataEmitter(QObject *parent = nullptr);

Q_SIGNALS:
    void sendConnected();
    void sendDisconnected();
    void sendNotConnected();
    void sendTelemetryLap(const ZEP::Lap &lap);
    void sendTelemetryLapHeader(const ZEP::LapHeader &header);
    void sendAvailableCarListChanged(const ZEP::LivePluginInfo &carInfoList);
    void sendSample(const ZEP::Sample &sample);
    /// \a verbose is 0 for information and negative for errors.
    void sendMessage(const QString &message, int verbose);
    /// \a percent runs from 0 to 100.
    void sendProgress(int percent);
};
