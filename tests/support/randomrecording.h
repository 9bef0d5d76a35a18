// Random recordings, from everyday ones to thoroughly broken ones.
#pragma once

#include "ibt/ibtformat.h"

#include <QByteArray>
#include <QVector>

#include <cstdint>

/// The recording of a seed, both as its parts and as a file. The same seed makes the same
/// recording. Every third seed makes one without damage.
class RandomRecording
{
public:
    explicit RandomRecording(std::uint32_t seed);

    /// A header that fits variables() and record().
    const irsdk_header &header() const { return m_header; }
    /// Types, places and names may be anything.
    const QVector<irsdk_varHeader> &variables() const { return m_variables; }
    const QByteArray &sessionInfo() const { return m_sessionInfo; }
    int recordCount() const { return m_records.size(); }
    const QByteArray &record(int index) const { return m_records.at(index); }

    /// The whole file. Its headers may contradict the parts, and its end may be missing.
    const QByteArray &file() const { return m_file; }

private:
    irsdk_header m_header = {};
    QVector<irsdk_varHeader> m_variables;
    QByteArray m_sessionInfo;
    QVector<QByteArray> m_records;
    QByteArray m_file;
};
