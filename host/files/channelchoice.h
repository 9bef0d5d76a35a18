#pragma once

#include "analysis/chosenchannel.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// The channels that the user chose, on the command line as `--channels CHOICE,...`. A CHOICE is
///
///     speed    the channel of that name
///     tire*    all channels whose names the wildcards fit
///     driver   the channels of that preset which the laps have
///
/// Case does not matter. A channel takes precedence over a preset of the same name.
class ChannelChoice
{
public:
    /// Every channel.
    ChannelChoice() = default;
    explicit ChannelChoice(const QStringList &choices) : m_choices(choices) { }

    bool isEverything() const { return m_choices.isEmpty(); }

    /// Those channels of \a laps that were chosen, in the order of the choices, each once. The
    /// channels of one choice are in the order of a lap: recorded, then calculated, each by name.
    /// Empty if a choice matches nothing: then \a problem contains it, and the nearest names.
    QVector<ChosenChannel> channels(const QVector<const ZEP::Lap *> &laps, QString *problem) const;

    /// Names of the presets.
    static QStringList presets();

private:
    QStringList m_choices;
};
