// ibtgen: writes a demo recording to a file.
#include "tools/demorecording.h"

#include <CLI/CLI.hpp>
#include <QFile>
#include <QSaveFile>

#include <clocale>
#include <cstdio>
#include <map>
#include <string>

namespace {

int failure(const std::string &output, const QString &reason)
{
    std::fprintf(stderr, "ibtgen: cannot write %s: %s\n", output.c_str(), qPrintable(reason));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    const std::map<std::string, SessionKind> kinds{{"testing", SessionKind::Testing},
                                                   {"practice", SessionKind::Practice},
                                                   {"qualify", SessionKind::Qualify},
                                                   {"race", SessionKind::Race}};
    DemoOptions options;
    std::string session = "practice";
    std::string output;

    CLI::App app("Write a demo telemetry recording: a few stints on an invented circuit.",
                 "ibtgen");
    app.set_version_flag("--version", "ibtgen " IBTGEN_VERSION);
    app.add_option("--laps", options.laps, "Timed laps in each stint")
        ->check(CLI::Range(1, DemoOptions::MaxLaps))
        ->capture_default_str();
    app.add_option("--stints", options.stints, "Number of stints")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_option("--session", session, "Kind of session")
        ->check(CLI::IsMember(kinds))
        ->capture_default_str();
    app.add_option("--seed", options.seed, "Random seed: the same number writes the same file")
        ->capture_default_str();
    app.add_option("--rate", options.rate, "Records per second")
        ->check(CLI::Range(1, 360))
        ->capture_default_str();
    app.add_option("--duration", options.duration,
                   "Seconds to record, instead of --stints; the drive is cut off there")
        ->check(CLI::Range(1.0, 24 * 3600.0));
    app.add_option("OUTPUT", output, "File to write, usually *.ibt")->required();
    app.footer("Example:\n  ibtgen --session race --laps 5 demo.ibt\n");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        constexpr int WrongUse = 2;
        return app.exit(error) == 0 ? 0 : WrongUse;
    }
    options.session = kinds.at(session);

    // Only for the encoding of the file name: numbers keep their decimal point.
    std::setlocale(LC_CTYPE, "");
    QSaveFile file(QFile::decodeName(output.c_str()));
    if (!file.open(QIODevice::WriteOnly))
        return failure(output, file.errorString());
    // A write that stops halfway does not set the error string.
    if (!writeDemoRecording(options, &file))
        return failure(output, QStringLiteral("a write failed; the disk may be full"));
    if (!file.commit())
        return failure(output, file.errorString());
    return 0;
}
