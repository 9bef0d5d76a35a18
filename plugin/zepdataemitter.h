#pragma once

#include "model/lap.h"
#include "model/lapheader.h"
#include "model/sample.h"
#include "plugin/livepluginfo.h"

#include <QObject>

/// The signals that a plug-in sends to its host. They are emitted synchronously, on the thread that
/// called the plug-in. Their order is fixed, because hosts may connect to them by position.
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
    /// \a percent is from 0 to 100.
    void sendProgress(int percent);
};
