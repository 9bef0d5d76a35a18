#include "host/commands/batchoptions.h"

#include "host/commands/commandline.h"

void BatchOptions::declare(CommandOptions &options)
{
    constexpr int most = 256;
    m_isDeclared = true;
    options.addFlag("-q,--quiet", &m_quiet, "Show no progress and no summary of several files");
    options.addInteger({"-j,--jobs", "N",
                        "Read N files at once, in separate processes,\n"
                        "so that one which crashes costs itself alone"},
                       &m_jobs, 1, most);
}
