#pragma once

#include "inspect/finding.h"

#include <QString>

#include <optional>

class InfoIndentation;
struct InfoLine;
class TYamlTree;

/// The driver of the player's car, without whom no lap is followed: why a session info has none,
/// and which of its lines are about that.
class FollowedDriver
{
public:
    /// Looks for the driver in the \a tree of the text.
    void find(const TYamlTree &tree);

    /// Whether the tree has nobody in the player's car.
    bool isMissing() const { return !m_reason.isEmpty(); }

    /// Whether nobody is found without \a line, a part of \a levels.
    bool needs(const InfoIndentation &levels, const InfoLine &line) const;

    /// Learns from \a line, the one with the \a number, at \a offset of the file.
    void read(const InfoIndentation &levels, const InfoLine &line, int number, qint64 offset);

    /// Adds to \a finding that all laps are lost with the driver.
    static void addLoss(Finding *finding);

    /// Why the driver is missing, in a text at \a offset of the file.
    Finding finding(qint64 offset) const;

private:
    struct Place {
        int line = 0;
        qint64 offset = 0;
    };

    void setCar(const QString &number);
    bool isPlayers(const QString &car) const;

    QString m_reason; ///< empty if somebody is there
    bool m_isListed = false; ///< the player's car is in the list of drivers
    std::optional<int> m_car; ///< -1 if it is no car, unset if nothing tells
    std::optional<Place> m_carPlace; ///< tells the player's car
    std::optional<Place> m_driverPlace; ///< tells the driver's name, or begins the entry of the car
};
