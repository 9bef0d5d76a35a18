#pragma once

#include "host/filecommand.h"

/// `zepimport info`: everything that the header of a lap carries.
class InfoCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    void print(const ImportedFile &file, int lap, Terminal &terminal) const override;
    QJsonObject json(const ImportedFile &file, int lap) const override;
};
