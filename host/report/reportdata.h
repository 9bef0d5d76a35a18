#pragma once

#include "host/files/channelchoice.h"
#include "host/files/chosenlaps.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// The data that the page of `zepimport report` shows: sessions, laps, and the samples of the usual
/// channels and of further ones. docs/report.md describes them.
class ReportData
{
public:
    ReportData();

    /// Adds a session with the chosen laps of one file, and the samples of \a further channels. The
    /// laps are not needed afterwards.
    void add(const ChosenLaps &chosen, const QVector<ChosenChannel> &further);

    /// True as long as there is no session.
    bool isEmpty() const { return m_sessions.isEmpty(); }
    /// Track, configuration and car of the first session, if they are known.
    QString title() const;
    QJsonObject json() const;

private:
    using Samples = QVector<double>; ///< of a lap; NaN if a sample is missing, empty if all are

    struct Column {
        ChosenChannel channel;
        double parts; ///< the least number of steps in the range of the samples
        QString unit; ///< of the first lap that has the channel
        QVector<Samples> laps; ///< up to the last one that has the channel
    };

    void addSamples(const ZEP::Lap &lap, const ChosenChannel &channel);
    QJsonObject packed(const Column &column, QByteArray &bytes) const;

    QJsonArray m_sessions;
    QJsonArray m_laps;
    QVector<int> m_sizes; ///< samples of each lap
    /// Distance, time, latitude, longitude, the usual channels, and then the further ones.
    QVector<Column> m_columns;
};
