#pragma once

#include "analysis/lapsummary.h"
#include "host/files/channelchoice.h"
#include "host/files/chosenlaps.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPair>
#include <QSet>
#include <QString>
#include <QVector>

/// The data that the page of `zepimport report` shows: sessions, laps, and the samples of the usual
/// channels and of further ones. docs/report.md describes them.
class ReportData
{
public:
    ReportData();

    /// Adds a session with the chosen laps of one file, and the samples of \a further channels. A
    /// file that has been added before gets the laps that it lacks. The laps are not needed
    /// afterwards.
    void add(const ChosenLaps &chosen, const QVector<ChosenChannel> &further);

    /// True as long as there is no session.
    bool isEmpty() const { return m_sessions.isEmpty(); }
    /// Track, configuration and car of the first session, if they are known.
    QString title() const;
    QJsonObject json() const;

private:
    using Samples = QVector<double>; ///< of a lap; NaN if a sample is missing, empty if all are

    struct PageLap {
        int session;
        int index; ///< in its file
        QString track; ///< the same text for laps that can be compared
        LapSummary summary;
        int size; ///< samples
        QJsonObject json; ///< without what depends on the other laps of the page
    };

    struct Column {
        ChosenChannel channel;
        double parts; ///< the least number of steps in the range of the samples of a file
        double longestStep;
        QString unit; ///< of the first lap that has the channel
        QVector<Samples> laps; ///< up to the last one that has the channel
    };

    int sessionOf(const ChosenLaps &chosen, double trackLength);
    void addSamples(const ZEP::Lap &lap, const ChosenChannel &channel);
    QVector<int> order() const;
    QJsonArray lapsJson(const QVector<int> &order) const;
    QJsonObject packed(const Column &column, const QVector<int> &order, QByteArray &bytes) const;

    QVector<QString> m_files; ///< of each session, as they are found on disk
    QJsonArray m_sessions;
    QVector<PageLap> m_laps; ///< as they were added
    QSet<QPair<int, int>> m_known; ///< session and index of each
    /// Distance, time, latitude, longitude, the usual channels, and then the further ones.
    QVector<Column> m_columns;
};
