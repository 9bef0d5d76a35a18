#pragma once

#include "host/files/channelchoice.h"
#include "host/files/chosenlaps.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

/// What the page of `zepimport report` shows: sessions, laps, and the samples of the channels that
/// every report has and of further ones. docs/report.md describes it.
class ReportData
{
public:
    ReportData();

    /// Adds a session with the chosen laps of one file, and the samples of \a further channels. It
    /// takes what it needs, so the laps can go.
    void add(const ChosenLaps &chosen, const QVector<ChosenChannel> &further);

    /// True as long as there is no session.
    bool isEmpty() const { return m_sessions.isEmpty(); }
    /// Track, configuration and car of the first session, as far as they are known.
    QString title() const;
    QJsonObject json() const;

private:
    using Samples = QVector<double>; ///< of a lap; NaN where one is missing, empty if all are

    struct Column {
        ChosenChannel channel;
        double parts; ///< steps in the range of the samples, at least
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
