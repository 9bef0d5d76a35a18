#pragma once

#include "host/text/displayunits.h"

#include <QStringList>

#include <string>

class CommandOptions;

/// `--units`: the units in which people are shown numbers. JSON keeps those that were recorded.
class UnitOptions
{
public:
    void declare(CommandOptions &options);

    UnitSystem system() const;

    /// The same choice as arguments of another process.
    QStringList arguments() const;

private:
    std::string m_name = "raw";
};
