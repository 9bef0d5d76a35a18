#pragma once

#include <QJsonValue>

#include <string>

class CommandOptions;
class Terminal;

/// `--json`: print for scripts instead of for people. docs/json.md describes what they get.
class JsonOption
{
public:
    /// \a instead is what people get: "tables".
    void declare(CommandOptions &options, const std::string &instead = "tables");

    bool isGiven() const { return m_isGiven; }

    /// Prints an array or object.
    static void print(const QJsonValue &value, Terminal &terminal);

private:
    bool m_isGiven = false;
};
