#include "reader/variablelayout.h"

#include "model/sample.h"

#include <QMap>

VariableLayout::VariableLayout(const irsdk_header &header, const irsdk_varHeader *varHeaders,
                               const QVector<QString> &names, const QVector<QString> &units)
    : m_recordBytes(qMax(0, header.bufLen))
{
    QMap<QString, Column> columns;
    const int count = qMin(header.numVars, names.size());
    forEachVariable(header, varHeaders, count, [&](int v, const StoredElements &elements) {
        // Equal names and the elements of an array overwrite each other; the last one stays.
        Column column;
        column.name = names.at(v);
        column.unit = units.at(v);
        column.element = elements.at(elements.last());
        columns.insert(column.name, column);
    });
    m_variables.assign(columns.cbegin(), columns.cend());

    for (std::size_t i = 0; i < LapVariableCount; ++i) {
        const auto column = columns.constFind(sampleName(LapVariable(i)));
        if (column != columns.constEnd())
            m_lapElements[i] = column->element;
    }

    Column marker;
    marker.name = fullTelemetryName();
    marker.constant = FullTelemetry;
    columns.insert(marker.name, marker);
    m_columns.assign(columns.cbegin(), columns.cend());
    m_columnNames = columns.keys();
}

void VariableLayout::addTo(ZEP::Sample *sample, const char *record) const
{
    for (const Column &column : m_variables)
        sample->addValue(column.name, column.element.toVariant(record), column.unit);
}

const QString &VariableLayout::fullTelemetryName()
{
    static const QString name = QStringLiteral("fulltelemetry");
    return name;
}
