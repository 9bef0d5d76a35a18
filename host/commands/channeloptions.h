#pragma once

#include "host/files/channelchoice.h"
#include "host/files/chosenlaps.h"

#include <QStringList>
#include <QVector>

#include <optional>
#include <string>
#include <vector>

class CommandOptions;
class Terminal;

/// `--channels`: the channels that the user chose; all of them unless some are named.
class ChannelOptions
{
public:
    /// \a text says what becomes of the channels: "Channels to show (default: all)".
    void declare(CommandOptions &options, const std::string &text);

    bool isGiven() const { return !m_names.empty(); }

    /// The chosen channels of \a laps. None if one does not exist; then that has been reported.
    std::optional<QVector<ChosenChannel>> chosen(const ChosenLaps &laps, Terminal &terminal) const;

    /// The same choice as arguments of another process.
    QStringList arguments() const;

private:
    QStringList names() const;

    std::vector<std::string> m_names;
};
