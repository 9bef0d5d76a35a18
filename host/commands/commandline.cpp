#include "host/commands/commandline.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>

namespace {

CLI::Option *addOption(CLI::App &command, const CommandOptions::Description &description,
                       std::string *target)
{
    return command.add_option(description.names, *target, description.text)
        ->type_name(description.valueName);
}

/// The first of the arguments that is a file, although it is read as an option; empty if none is.
template <typename Iterator>
std::string fileLikeAnOption(Iterator begin, Iterator end)
{
    const auto found = std::find_if(begin, end, [](const std::string &argument) {
        std::error_code none;
        return argument.size() > 1 && argument.front() == '-'
            && std::filesystem::exists(argument, none);
    });
    return found == end ? std::string() : *found;
}

} // namespace

void CommandOptions::addFlag(const std::string &names, bool *target, const std::string &text)
{
    m_command.add_flag(names, *target, text);
}

void CommandOptions::addText(const Description &description, std::string *target,
                             const Check &check)
{
    CLI::Option *option = addOption(m_command, description, target);
    if (check)
        option->check(check);
}

void CommandOptions::addRequiredText(const Description &description, std::string *target)
{
    addOption(m_command, description, target)->required();
}

void CommandOptions::addChoice(const Description &description, std::string *target,
                               const std::vector<std::string> &choices)
{
    // The help would also show the description of the check.
    addOption(m_command, description, target)->check(CLI::IsMember(choices).description(""));
}

void CommandOptions::addTexts(const Description &description, std::vector<std::string> *target)
{
    m_command.add_option(description.names, *target, description.text)
        ->type_name(description.valueName)
        ->delimiter(',')
        ->expected(1) // word each time, which may be a list
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
}

void CommandOptions::addInteger(const Description &description, int *target, int least, int most)
{
    m_command.add_option(description.names, *target, description.text)
        ->type_name(description.valueName)
        ->check(CLI::Range(least, most).description(""));
}

void CommandOptions::addNumber(const Description &description, double *target, double least,
                               double most)
{
    m_command.add_option(description.names, *target, description.text)
        ->type_name(description.valueName)
        ->check(CLI::Range(least, most))
        ->check([](const std::string &number) { // which every range lets through
            return std::isnan(std::stod(number)) ? "'" + number + "' is not a number"
                                                 : std::string();
        })
        ->capture_default_str();
}

void CommandOptions::addFiles(std::vector<std::string> *target, const std::string &text)
{
    m_command.add_option("FILE", *target, text)->required()->type_name("");
}

CommandLine::CommandLine(const std::string &program, const std::string &description,
                         const std::string &footer, const std::function<std::string()> &version)
    : m_program(std::make_unique<CLI::App>(description, program))
{
    m_program->set_version_flag("--version", version);
    m_program->require_subcommand(1);
    m_program->footer(footer);
}

CommandLine::~CommandLine() = default;

CommandOptions CommandLine::addCommand(const std::string &name, const std::string &description,
                                       const std::string &footer)
{
    CLI::App *command = m_program->add_subcommand(name, description);
    command->footer(footer);
    return CommandOptions(*command);
}

CommandLine::End CommandLine::parse(int argc, char *argv[])
{
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto dashes = std::find(arguments.begin(), arguments.end(), "--");
    const std::string optionLike = fileLikeAnOption(arguments.begin(), dashes);
    // The library takes nothing after "--" if there was a file before it.
    if (dashes != arguments.end()) {
        std::for_each(arguments.erase(dashes), arguments.end(), [](std::string &file) {
            if (file.size() > 1 && file.front() == '-')
                file.insert(0, "./");
        });
    }
    std::reverse(arguments.begin(), arguments.end()); // as the library wants them
    try {
        m_program->parse(arguments);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0) {
            m_program->exit(error); // which prints what was asked for
            return End::Answer;
        }
        if (!command().empty() && !optionLike.empty())
            m_error = "'" + optionLike
                + "' is read as an option; for the file of this name, write ./" + optionLike;
        else if (!command().empty())
            m_error = error.what();
        return End::WrongUse;
    }
    return End::Command;
}

std::string CommandLine::command() const
{
    const std::vector<CLI::App *> chosen = m_program->get_subcommands();
    return chosen.empty() ? std::string() : chosen.front()->get_name();
}
