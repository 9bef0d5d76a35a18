#pragma once

#include "analysis/chosenchannel.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Which channels are asked for, on the command line as `--channels CHOICE,...`. A CHOICE is
///
///     speed    the channel of that name
///     tire*    all channels whose names the wildcards fit
///     driver   the channels of that preset which the laps have
///
/// Small and capital letters are the same. A channel wins over a preset of its name.
class ChannelChoice
{
public:
    /// Every channel.
    ChannelChoice() = default;
    explicit ChannelChoice(const QStringList &choices) : m_choices(choices) { }

    bool isEverything() const { return m_choices.isEmpty(); }

    /// The chosen ones of the channels that any of \a laps has, in the order asked for, each once;
    /// what one choice finds is in the order of a lap: recorded, then calculated, each by name.
    /// Empty if a choice finds nothing: then \a problem names it, and the names next to it.
    QVector<ChosenChannel> channels(const QVector<const ZEP::Lap *> &laps, QString *problem) const;

    /// Names of the presets.
    static QStringList presets();

private:
    QStringList m_choices;
};
