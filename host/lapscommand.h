#pragma once

#include "host/filecommand.h"

/// `zepimport laps`: a table of the laps of each file.
class LapsCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    void print(const ImportedFile &file, int lap, Terminal &terminal) const override;
    QJsonObject json(const ImportedFile &file, int lap) const override;
};
