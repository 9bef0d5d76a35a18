#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Declares the options of one command. Each fills in a variable when the command line is read, and
/// leaves it alone where the user does not give the option.
class CommandOptions
{
public:
    /// Says what is wrong with a value; empty if nothing is.
    using Check = std::function<std::string(const std::string &value)>;

    /// What the user has to know about an option.
    struct Description {
        std::string names; ///< "-o,--output", "--lap"
        std::string valueName; ///< "PATH"
        std::string text; ///< lines of at most 50 characters
    };

    explicit CommandOptions(CLI::App &command) : m_command(command) { }

    /// "--json"
    void addFlag(const std::string &names, bool *target, const std::string &text);
    /// "--lap CHOICE"
    void addText(const Description &description, std::string *target, const Check &check = {});
    /// The same, but the command cannot do without it.
    void addRequiredText(const Description &description, std::string *target);
    /// "--format csv": one of \a choices.
    void addChoice(const Description &description, std::string *target,
                   const std::vector<std::string> &choices);
    /// "--channels speed,gear", also more than once.
    void addTexts(const Description &description, std::vector<std::string> *target);
    /// "--jobs 4", from \a least to \a most.
    void addInteger(const Description &description, int *target, int least, int most);
    /// "--grid 0.5", from \a least to \a most. The help shows this range, and what *target is now.
    void addNumber(const Description &description, double *target, double least, double most);
    /// FILE..., at least one.
    void addFiles(std::vector<std::string> *target, const std::string &text);

private:
    CLI::App &m_command;
};

/// The command line of the program: its commands, and which one the user chose. The library that
/// reads it is named in no other source file than this class's own.
class CommandLine
{
public:
    /// How reading it ended.
    enum class End {
        Command, ///< there is a command to run
        Answer, ///< help or the version, which are printed already
        WrongUse,
    };

    /// \a footer ends the program's help; \a version is asked for with --version.
    CommandLine(const std::string &program, const std::string &description,
                const std::string &footer, const std::function<std::string()> &version);
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;
    ~CommandLine();

    /// Adds a command. The variables of its options have to live until parse() has returned.
    CommandOptions addCommand(const std::string &name, const std::string &description,
                              const std::string &footer);

    /// Reads the arguments that the program got.
    End parse(int argc, char *argv[]);

    /// The name of the command that the user chose; empty if there is none.
    std::string command() const;
    /// After wrong use: what is wrong. Empty if the command itself is missing or unknown.
    const std::string &error() const { return m_error; }

private:
    std::unique_ptr<CLI::App> m_program;
    std::string m_error;
};
