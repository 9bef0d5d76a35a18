#include "host/commands/fileoptions.h"

#include "host/commands/commandline.h"

#include <algorithm>

void FileOptions::declare(CommandOptions &options, const std::string &text)
{
    m_plugins.declare(options);
    options.addFiles(&m_files, text);
    options.addFlag("-r,--recursive", &m_recursive, "Include recordings in subfolders");
}

void FileOptions::declareWithLaps(CommandOptions &options)
{
    declare(options,
            "Recordings to read, or folders of recordings;\n"
            "FILE:CHOICE chooses laps, as --lap does");
}

RecordingFiles FileOptions::find(const PluginRegistry &plugins) const
{
    return RecordingFiles(m_files, m_recursive, plugins);
}

bool FileOptions::take(const std::string &name)
{
    const auto place = std::find(m_files.begin(), m_files.end(), name);
    if (place == m_files.end())
        return false;
    m_files.erase(place);
    return true;
}
