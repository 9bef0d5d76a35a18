#pragma once

#include "tools/demooptions.h"
#include "tools/recording.h"

#include <QVector>

class Drive;

/// One variable of a demo recording and where its values come from.
struct DemoVariable {
    /// The value at the present tick. Each source decides what \a index counts.
    using Source = double (*)(const Drive &drive, int index);

    RecordingVariable variable;
    double value; ///< throughout the recording, without a source
    Source source; ///< null for a variable that never changes
    int index; ///< passed to the source, plus i for element i of an array
};

/// The variables of a demo recording, about 280 of them, in the order of the table.
class DemoVariables
{
public:
    explicit DemoVariables(const DemoOptions &options);

    const QVector<DemoVariable> &list() const { return m_list; }

private:
    // Adds a variable that never changes, or one that has a source.
    void fixed(const QByteArray &name, qint32 type, const char *unit, const char *desc,
               double value = 0);
    void moving(const QByteArray &name, qint32 type, const char *unit, const QByteArray &desc,
                DemoVariable::Source source, int index = 0, int count = 1);

    void addSession();
    void addComputer();
    void addPlayer();
    void addLaps();
    void addWeather();
    void addPits();
    void addControls();
    void addMotion();
    void addEngine();
    void addSteeringWheel();
    void addAdjustments();
    void addWheels(bool surfaceTemperatures);

    QVector<DemoVariable> m_list;
};
