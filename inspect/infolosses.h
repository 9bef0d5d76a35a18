#pragma once

#include "inspect/infoblame.h"

#include <QStringList>

#include <optional>

class FindingList;
class FollowedDriver;

/// What is lost of a session info: collects what one line is to blame for, until another is, and
/// makes a finding of it.
class InfoLosses
{
public:
    InfoLosses(const FollowedDriver &driver, FindingList *findings);

    /// Whether a line is being blamed.
    bool isOpen() const { return m_loss.has_value(); }
    /// From now on, \a blame has the line that is to blame.
    void blame(const InfoBlame &blame);
    /// The blamed line is lost itself.
    void addItself();
    /// \a line, called \a name, is lost: the blamed line, or one after it.
    void addEntry(const InfoPlace &line, const QString &name);
    /// Something is lost without which nobody is in the player's car.
    void addDriver();
    /// Adds the finding, if there is one; no line is blamed then.
    void report();

    /// Whether a finding says why nobody is in the player's car.
    bool isDriverExplained() const { return m_isDriverExplained; }

private:
    struct Loss {
        InfoBlame blame;
        bool isItself = false;
        bool isDriver = false;
        int entries = 0; ///< after the line that is to blame
        QStringList names; ///< of the first of them
    };

    static QString sentence(const Loss &loss);

    const FollowedDriver &m_driver;
    FindingList *m_findings;
    std::optional<Loss> m_loss;
    bool m_isDriverExplained = false;
};
