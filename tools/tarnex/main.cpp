#include "commands.h"
#include "tarnexVersion.h"
#include "text.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <iostream>

namespace {

using namespace tarnex::tool;

constexpr char const* description =
    "Reads, shows and converts molecular structure and trajectory files.\n"
    "\"tarnex formats\" lists the formats; \"tarnex COMMAND --help\" explains a command.";

constexpr char const* statusHelp =
    "Exit status: 0 done, 1 the work failed, 2 wrong use (an option, command, format or\n"
    "extension that is not known).";

constexpr char const* infoHelp = "Examples:\n"
                                 "  tarnex info ligands.sdf          the first ten molecules, long values cut\n"
                                 "  tarnex info --all ligands.sdf    everything\n"
                                 "  tarnex info --json *.sdf         for a program: an array, an object for each file\n"
                                 "  tarnex info traj.trr conf.gro topol.top\n"
                                 "                                   a trajectory with its structure and topology\n"
                                 "\n"
                                 "Atoms are numbered from 1. The formula counts the atoms of the file; implicit\n"
                                 "hydrogens are told separately. The extent is that of the first step.\n"
                                 "\n"
                                 "A file that cannot be read, or not to its end, is told on standard error (with\n"
                                 "--json in \"errors\" as well). The others are shown all the same.\n"
                                 "\n";

constexpr char const* convertHelp =
    "Examples:\n"
    "  tarnex convert ligands.sdf ligands.qlt    the extensions name the formats\n"
    "  tarnex convert a.sdf b.sdf all.sdf        joins files, in this order\n"
    "  tarnex convert --frames 0:100:10 run.qlt some.qlt\n"
    "                                            steps 0, 10, 20 ... 100\n"
    "  tarnex convert --to sdf run.qlt - | less\n"
    "  tarnex convert traj.trr conf.gro topol.top out.pdb\n"
    "                                            files that belong together stand in a row\n"
    "  tarnex convert --from trr-single --to trr traj.trr conf.gro out.trr\n"
    "                                            from single to double precision\n"
    "\n"
    "--frames takes steps from each trajectory of more than one. Steps count from 0,\n"
    "and LAST is one of them. Negative numbers count from the end; -1 is the last step.\n"
    "Parts may be left out:\n"
    "  5      step 5 only             ::10     every tenth step\n"
    "  10:    all from step 10 on     =-5:     the last five (--frames=-5:, so that the\n"
    "                                          minus is not taken for an option)\n"
    "\n"
    "The output appears under its name only when it is whole. A conversion that fails\n"
    "or is interrupted leaves nothing behind, and an older file of the name as it was.\n"
    "The output may be one of the inputs; - is standard output.\n"
    "\n"
    "What the output format cannot keep is told on standard error, in a line that\n"
    "begins with \"tarnex: note:\".\n"
    "\n";

constexpr char const* formatsHelp = "Extensions count in upper and lower case alike. The name of a format is for the\n"
                                    "options --from and --to, which go before extensions.";

/// Shows an operand by the text that was set for it.
class OperandFormatter : public CLI::Formatter {
    std::string make_option_usage(CLI::Option const* option) const override { return option->get_option_text(); }
    std::string make_option_name(CLI::Option const* option, bool isOperand) const override {
        return isOperand ? "" : CLI::Formatter::make_option_name(option, isOperand);
    }
};

/// The command line, as parsed.
struct Arguments {
    CLI::App app{description, "tarnex"};
    InfoOptions info;
    ConvertOptions convert;
    FileNames convertFiles;
    bool quiet = false;
    std::function<ExitStatus(Console&)> command;

    Arguments();
    void addInfo();
    void addConvert();
    void addFormats();
    void addQuiet(CLI::App* subcommand) {
        subcommand->add_flag("-q,--quiet", quiet, "No notes and no progress bar, only errors");
    }
};

Arguments::Arguments() {
    app.set_version_flag("--version", "tarnex " TARNEX_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    auto const formatter = std::make_shared<OperandFormatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Files");
    app.formatter(formatter);
    app.footer(statusHelp);
    app.require_subcommand(1);
    addInfo();
    addConvert();
    addFormats();
}

void Arguments::addInfo() {
    CLI::App* sub = app.add_subcommand("info", "Show what is in a file")->group("Commands");
    sub->add_option("files", info.files, "The files to look at")->required()->option_text("FILE...");
    sub->add_flag("--json", info.json, "Everything, as JSON for a program");
    sub->add_flag("-a,--all", info.all, "All molecules, data items and long values");
    sub->add_option("--from", info.from, "Format of the files: " + formatNames())->option_text("FORMAT");
    sub->add_flag("--single", info.single, "The .trr files are in single precision, which no file states");
    addQuiet(sub);
    sub->footer(std::string(infoHelp) + statusHelp);
    sub->final_callback([this] { command = [this](Console& console) { return runInfo(info, console); }; });
}

void Arguments::addConvert() {
    CLI::App* sub = app.add_subcommand("convert", "Convert files to another format")->group("Commands");
    sub->add_option("files", convertFiles, "The files to read, and the one to write")
        ->required()
        ->option_text("IN... OUT");
    sub->add_option("--from", convert.from, "Format of the inputs: " + formatNames())->option_text("FORMAT");
    sub->add_option("--to", convert.to, "Format of the output")->option_text("FORMAT");
    auto const setFrames = [this](std::string const& text) { convert.frames = FrameRange::parse(text); };
    sub->add_option_function<std::string>("--frames", setFrames, "Steps to take of trajectories")
        ->option_text("FIRST:LAST:STEP");
    sub->add_flag("--single", convert.single, "The .trr files, read or written, are in single precision");
    sub->add_flag("-k,--keep-going", convert.keepGoing, "Convert what can be read of a damaged file");
    addQuiet(sub);
    sub->footer(std::string(convertHelp) + statusHelp);
    sub->final_callback([this] {
        if (convertFiles.size() < 2) throw WrongUse{"convert needs a file to read and one to write"};
        convert.output = convertFiles.back();
        convert.inputs.assign(convertFiles.begin(), convertFiles.end() - 1);
        command = [this](Console& console) { return runConvert(convert, console); };
    });
}

void Arguments::addFormats() {
    CLI::App* sub =
        app.add_subcommand("formats", "List the formats, and what each of them keeps and loses")->group("Commands");
    sub->footer(formatsHelp);
    sub->final_callback([this] { command = [](Console&) { return runFormats(); }; });
}

/// What has been printed must have arrived: a full disk behind standard output is a failure.
void finishOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) throw Failure("standard output", errno);
}

/// Help and version end the program in here, with their output on standard output.
void parse(Arguments& arguments, int argc, char** argv) {
    try {
        arguments.app.parse(argc, argv);
    } catch (CLI::Success const& request) {
        arguments.command = [&arguments, request](Console&) {
            arguments.app.exit(request);
            std::cout.flush();
            return succeeded;
        };
    } catch (CLI::ParseError const& error) {
        if (arguments.app.get_subcommands().empty() && argv[1][0] != '-') {
            throw WrongUse{"unknown command \"" + printable(argv[1]) + "\" (see tarnex --help)"};
        }
        throw WrongUse{printable(error.what()) + " (see tarnex --help)"};
    }
}

ExitStatus run(int argc, char** argv) {
    Arguments arguments;
    parse(arguments, argc, argv);
    Console console(arguments.quiet);
    ExitStatus const status = arguments.command(console);
    finishOutput();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(Arguments().app.help().c_str(), stderr);
        return wrongUse;
    }
    try {
        return run(argc, argv);
    } catch (WrongUse const& mistake) {
        printMessage(mistake.message);
        return wrongUse;
    } catch (Failure const& failure) {
        printMessage(failure.message);
    } catch (Interrupted const&) {
        printMessage("interrupted");
    } catch (...) {
        printMessage(reasonOfCurrentException());
    }
    return failed;
}
