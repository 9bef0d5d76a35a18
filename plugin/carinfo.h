#pragma once

#include <QString>
#include <QVariant>

namespace ZEP {

/// One car that a live source offers.
class CarInfo
{
public:
    /// The car's identifier in its live source.
    QVariant id() const { return m_id; }
    void setId(const QVariant &id) { m_id = id; }

    /// Text shown to the user.
    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString &displayName) { m_displayName = displayName; }

    /// True if telemetry of this car is wanted.
    bool isActive() const { return m_active; }
    void setActive(bool active) { m_active = active; }

private:
    QVariant m_id;
    QString m_displayName;
    bool m_active = false;
};

} // namespace ZEP
