#pragma once

#include "host/filecommand.h"

/// `zepimport channels`: the channels of a lap with their extremes.
class ChannelsCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    void print(const ImportedFile &file, int lap, Terminal &terminal) const override;
    QJsonObject json(const ImportedFile &file, int lap) const override;
};
