#include "OutputFile.h"
#include "commands.h"
#include "losses.h"

#include <filesystem>

namespace tarnex::tool {

namespace {

Format const& outputFormat(ConvertOptions const& options) {
    if (options.to.empty() && options.output == "-") throw WrongUse{"standard output needs a format: --to FORMAT"};
    Format const& format = chosenFormat(options.output, options.to, options.single);
    if (!format.write) throw WrongUse{"the format " + std::string(format.name) + " is only read"};
    return format;
}

/// A file beside the output has a name that the user did not give: it must not take the place of an input.
void protectInputs(FileNames const& inputs, OutputFile const& output) {
    for (std::string const& beside : output.namesBeside()) {
        for (std::string const& input : inputs) {
            std::error_code ignored;
            if (std::filesystem::equivalent(beside, input, ignored)) {
                throw Failure(output.name(),
                              "it comes with the file " + beside + ", which is an input; choose another name");
            }
        }
    }
}

/// Damaged input is a failure unless the user takes what could be read of it.
void tellDamage(Document const& document, bool keepGoing, Console& console) {
    for (Failure const& damage : document.damage) {
        if (!keepGoing) throw damage.followedBy("; nothing is written (--keep-going converts what can be read)");
        console.error(damage.message + "; what cannot be read is left out");
    }
}

Bundle readSelected(std::vector<Input> const& inputs, ConvertOptions const& options, Transfer& transfer) {
    Bundle selection;
    for (Input const& input : inputs) {
        Document const document = readInput(input, transfer.console);
        tellDamage(document, options.keepGoing, transfer.console);
        for (McHandle<MolTrajectory> const& trajectory : document.bundle) {
            appendSelected(selection, trajectory, options.frames, input.files.front(), transfer);
        }
    }
    return selection;
}

void write(Bundle const& bundle, Format const& format, OutputFile& output, Transfer& transfer) {
    transfer.console.startPart("writing " + output.name());
    try {
        workOn(output.name(), [&] { format.write(bundle, output, transfer.console); });
    } catch (Failure const&) {
        transfer.throwIfFailed();
        throw;
    }
    transfer.throwIfFailed();
}

void tellFilesBeside(std::vector<std::string> const& names, Console& console) {
    constexpr std::size_t fewNames = 3;
    if (names.size() > fewNames) {
        console.note(names.front() + " to " + names.back() + " are written as well");
        return;
    }
    for (std::string const& name : names) console.note(name + " is written as well");
}

} // namespace

ExitStatus runConvert(ConvertOptions const& options, Console& console) {
    Format const& format = outputFormat(options);
    std::vector<Input> const inputs = groupInputs(options.inputs, options.from, options.single);
    OutputFile output(options.output, format.writtenBeside);
    protectInputs(options.inputs, output);
    Transfer transfer(console, !format.capacity.everything);
    Bundle const bundle = readSelected(inputs, options, transfer);
    std::string const losses = lossesOf(bundle, format);
    if (!losses.empty()) console.note(std::string(format.name) + " does not keep " + losses);
    write(bundle, format, output, transfer);
    output.putInPlace();
    tellFilesBeside(output.namesBeside(), console);
    return succeeded;
}

} // namespace tarnex::tool
