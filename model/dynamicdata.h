#pragma once

#include "model/value.h"

#include <QList>
#include <QMap>
#include <QString>

namespace ZEP {

/// An open set of named values, in ascending and case-sensitive order of their names.
///
/// Copies are cheap and independent, because the map is implicitly shared.
class DynamicData
{
public:
    DynamicData() = default;
    DynamicData(const DynamicData &) = default;
    DynamicData(DynamicData &&) = default;
    DynamicData &operator=(const DynamicData &) = default;
    DynamicData &operator=(DynamicData &&) = default;
    virtual ~DynamicData();

    /// The value called \a name, or a default Value (invalid variant, no unit). Never inserts.
    ZEP::Value value(const QString &name) const { return m_values.value(name); }
    bool hasValues() const { return !m_values.isEmpty(); }
    bool containsValue(const QString &name) const { return m_values.contains(name); }

    /// Inserts a value, or replaces the quantity and unit of the value with the same name.
    void addValue(const QString &name, const ZEP::Value &value) { m_values.insert(name, value); }
    void addValue(const QString &name, const QVariant &value, const QString &unit);

    void removeValue(const QString &name) { m_values.remove(name); }
    /// Removes every value; the same as clear().
    void removeValues() { m_values.clear(); }
    /// Removes every value.
    void clear() { m_values.clear(); }

    /// All names, ascending.
    QList<QString> valueNameList() const { return m_values.keys(); }

private:
    friend class Lap; // iterates over the values of a sample while it merges them into its channels

    QMap<QString, ZEP::Value> m_values;
};

} // namespace ZEP
