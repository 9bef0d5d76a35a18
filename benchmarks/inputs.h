#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

/// What a correct import of an input returns.
struct ExpectedLaps {
    int laps;
    qint64 ticks; ///< over all laps
};

/// One recording to measure with. It is written when it is first used.
struct Input {
    QString name;
    std::function<bool(const QString &fileName)> write;
    std::optional<ExpectedLaps> expected; ///< if known from how the input was made
};

/// The inputs of the benchmarks, each written once into a folder.
class Inputs
{
public:
    /// \a small: each takes about a tenth of a second, to test that everything runs. \a large: also
    /// the recording of more than 4 GiB. \a recordings: a folder with real recordings, or empty.
    Inputs(const QString &folder, const QString &recordings, bool small, bool large);

    const std::vector<Input> &list() const { return m_list; }
    /// The file of \a input, written if it is not there yet. Ends the program if that fails.
    QByteArray file(const Input &input) const;

private:
    void addDriven(const char *name, int variables, qint64 records, int lapTicks);

    QString m_folder;
    std::vector<Input> m_list;
};

/// A session-info text of about \a bytes bytes.
QByteArray sessionText(int bytes);
