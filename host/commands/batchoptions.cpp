#include "host/commands/batchoptions.h"

#include "host/commands/commandline.h"

void BatchOptions::declare(CommandOptions &options)
{
    constexpr int most = 256;
    declareQuiet(options);
    options.addInteger({"-j,--jobs", "N",
                        "Process N files in parallel, each in its own\n"
                        "process: a crash does not affect the other files"},
                       &m_jobs, 1, most);
}

void BatchOptions::declareQuiet(CommandOptions &options)
{
    m_isDeclared = true;
    options.addFlag("-q,--quiet", &m_quiet, "Show no progress bar and no summary");
}
