#pragma once

#include <QString>

/// A number taken from a channel or a value, in its unit.
struct Quantity {
    double value;
    QString unit;
};
