// ibtgen: writes a demo recording to a file.
#include "tools/demorecording.h"

#include <CLI/CLI.hpp>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

namespace {

constexpr int Failure = 1;
constexpr int WrongUse = 2;

/// What the user asks for.
struct Request {
    DemoOptions options;
    std::string session = "practice";
    std::string output;
    bool isForced = false;
};

const std::map<std::string, SessionKind> &sessionKinds()
{
    static const std::map<std::string, SessionKind> kinds{{"testing", SessionKind::Testing},
                                                          {"practice", SessionKind::Practice},
                                                          {"qualify", SessionKind::Qualify},
                                                          {"race", SessionKind::Race}};
    return kinds;
}

void declareOptions(CLI::App &app, Request &request)
{
    DemoOptions &options = request.options;
    app.set_version_flag("--version", "ibtgen " IBTGEN_VERSION);
    app.add_option("--laps", options.laps, "Timed laps in each stint")
        ->check(CLI::Range(1, DemoOptions::MaxLaps))
        ->capture_default_str();
    CLI::Option *stints = app.add_option("--stints", options.stints, "Number of stints")
                              ->check(CLI::Range(1, 1000))
                              ->capture_default_str();
    app.add_option("--session", request.session, "Kind of session")
        ->check(CLI::IsMember(sessionKinds()))
        ->capture_default_str();
    app.add_option("--seed", options.seed, "Random seed: the same number writes the same file")
        ->capture_default_str();
    app.add_option("--rate", options.rate, "Records per second")
        ->check(CLI::Range(1, 360))
        ->capture_default_str();
    app.add_option("--duration", options.duration,
                   "Seconds to record, instead of --stints; the drive is cut off there")
        ->check(CLI::Range(1.0, 24 * 3600.0))
        ->check([](const std::string &number) { // which every range lets through
            return std::isnan(std::stod(number)) ? "'" + number + "' is not a number"
                                                 : std::string();
        })
        ->excludes(stints);
    app.add_flag("--force", request.isForced, "Replace an existing file");
    app.add_option("OUTPUT", request.output, "File to write, usually *.ibt")
        ->required()
        ->check([](const std::string &name) {
            return name == "-"
                ? std::string("a recording cannot go to standard output, because its "
                              "beginning is written last; give a file")
                : std::string();
        });
    app.footer("Example:\n  ibtgen --session race --laps 5 demo.ibt\n");
}

int failure(const std::string &output, const QString &reason)
{
    std::fprintf(stderr, "ibtgen: cannot write %s: %s\n", output.c_str(), qPrintable(reason));
    return Failure;
}

/// Prints what \a error is about: the help and the version, or what is wrong.
int answer(const CLI::App &app, const CLI::ParseError &error)
{
    if (app.exit(error) != 0)
        return WrongUse;
    if (std::cout.flush())
        return 0;
    std::fputs("ibtgen: the output could not be written; is the disk full?\n", stderr);
    return Failure;
}

} // namespace

int main(int argc, char **argv)
{
    Request request;
    CLI::App app("Write a demo telemetry recording: a few stints on an invented circuit.",
                 "ibtgen");
    declareOptions(app, request);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return answer(app, error);
    }
    request.options.session = sessionKinds().at(request.session);

    // Only for the encoding of the file name: numbers keep their decimal point.
    std::setlocale(LC_CTYPE, "");
    const QString name = QFile::decodeName(request.output.c_str());
    if (QFileInfo(name).isFile() && !request.isForced)
        return failure(request.output,
                       QStringLiteral("it already exists; choose another name, or use --force to "
                                      "replace it"));
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return failure(request.output, file.errorString());
    // A write that stops halfway does not set the error string.
    if (!writeDemoRecording(request.options, &file))
        return failure(request.output, QStringLiteral("a write failed; the disk may be full"));
    if (!file.commit())
        return failure(request.output, file.errorString());
    return 0;
}
