#pragma once

#include "reader/recordelement.h"
#include "reader/tickvalues.h"

#include <QList>
#include <QString>
#include <QVector>

#include <array>
#include <optional>
#include <vector>

namespace ZEP {
class Sample;
}

/// A variable table compiled once: what a sample of each record would contain, in the order
/// of its names, without making that sample.
class VariableLayout
{
public:
    /// One named value of every record.
    struct Column {
        QString name;
        QString unit;
        RecordElement element;
        double constant = 0.0; ///< the sample of a column whose element is nowhere
    };

    /// \a names and \a units are those of the table's variables, in its order.
    VariableLayout(const irsdk_header &header, const irsdk_varHeader *varHeaders,
                   const QVector<QString> &names, const QVector<QString> &units);

    /// Bytes of one record.
    int recordBytes() const { return m_recordBytes; }

    /// The columns of a recorded tick, ascending by name: the variables and FullTelemetry.
    const std::vector<Column> &columns() const { return m_columns; }
    /// Their names.
    const QList<QString> &columnNames() const { return m_columnNames; }

    /// Adds the variables of \a record to \a sample.
    void addTo(ZEP::Sample *sample, const char *record) const;

    /// Where the record contains \a variable; none if it does not.
    const std::optional<RecordElement> &element(LapVariable variable) const
    {
        return m_lapElements[std::size_t(variable)];
    }

    /// The value that marks a tick of the player's car, the only one recorded with all variables.
    static const QString &fullTelemetryName();
    static constexpr int FullTelemetry = 1;

private:
    std::vector<Column> m_variables;
    std::vector<Column> m_columns;
    QList<QString> m_columnNames;
    std::array<std::optional<RecordElement>, LapVariableCount> m_lapElements;
    int m_recordBytes;
};

/// Values of a tick from a raw record.
class RecordSource
{
public:
    RecordSource(const VariableLayout &layout, const char *record)
        : m_layout(layout), m_record(record)
    {
    }

    bool has(LapVariable variable) const { return m_layout.element(variable).has_value(); }
    int toInt(LapVariable variable) const { return element(variable).toInt(m_record); }
    float toFloat(LapVariable variable) const { return element(variable).toFloat(m_record); }
    bool toBool(LapVariable variable) const { return element(variable).toBool(m_record); }
    /// False: "Speed" has no capital in the names of a record, see SampleSource::isSlow().
    bool isSlow() const { return false; }

private:
    const RecordElement &element(LapVariable variable) const { return *m_layout.element(variable); }

    const VariableLayout &m_layout;
    const char *m_record;
};
