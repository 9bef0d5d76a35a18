#pragma once

#include "inspect/finding.h"
#include "inspect/infoline.h"

#include <QString>

#include <optional>

class InfoIndentation;
class TYamlTree;

/// The driver whose laps are followed, which is the one of the player's car: why a session info has
/// none, and which of its lines are about that.
class FollowedDriver
{
public:
    /// Looks for the driver in the \a tree of the text.
    void find(const TYamlTree &tree);

    /// Whether the tree has nobody in the player's car.
    bool isMissing() const { return !m_reason.isEmpty(); }

    /// The number of the car of a driver who is not missing.
    int carIdx() const { return *m_carIdx; }

    /// Whether the driver is not found without \a line, which belongs to \a levels.
    bool needs(const InfoIndentation &levels, const InfoLine &line) const;

    /// Remembers \a line if it is about the driver.
    void read(const InfoIndentation &levels, const InfoLine &line, const InfoPlace &place);

    /// Adds to \a finding that all laps are lost, because the driver is.
    static void addLoss(Finding *finding);

    /// Why the driver is missing, in a text at \a offset of the file.
    Finding finding(qint64 offset) const;

private:
    void setCarIdx(const QString &number);
    bool isPlayersCar(const QString &carIdx) const;

    QString m_reason; ///< empty if somebody is there
    bool m_isListed = false; ///< the player's car is in the list of drivers
    std::optional<int> m_carIdx; ///< -1 if it is not a car, unset if there is no line for it
    std::optional<InfoPlace> m_carPlace; ///< has the number of the player's car
    std::optional<InfoPlace>
        m_driverPlace; ///< has the driver's name, or begins the entry of the car
};
