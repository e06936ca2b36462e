#include "Frames.h"

#include "model/Molecule.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tarnex::tool {

namespace {

std::optional<int> parseCount(std::string_view text, std::string const& whole) {
    if (text.empty()) return std::nullopt;
    int value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw WrongUse{"--frames " + whole + ": not of the form first:last:step"};
    }
    return value;
}

bool hasFiniteCoordinates(Molecule const& molecule) {
    return std::all_of(molecule.coords.begin(), molecule.coords.end(), [](McVec3f const& place) {
        return std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(place.z);
    });
}

/// Some steps of a trajectory, which is kept alive.
class SelectedSteps : public MolTrajectory {
public:
    SelectedSteps(MolTrajectory* whole, int firstStep, int every, int number, std::string const& sourceFile,
                  Transfer& stepTransfer)
        : MolTrajectory(whole->getTopology()), source(whole), first(firstStep), stride(every), count(number),
          file(sourceFile), transfer(stepTransfer) {}

    int getNumTimeSteps() const override { return count; }

    bool getTimeStep(int step, Molecule* molecule) override {
        transfer.console.setProgressValue(static_cast<float>(transfer.stepsDone++) /
                                          static_cast<float>(transfer.totalSteps));
        if (transfer.console.wasInterrupted(1) || step < 0 || step >= count) return false;
        int const sourceStep = first + step * stride;
        std::string fault = "cannot be read";
        try {
            if (source->getTimeStep(sourceStep, molecule)) {
                if (!transfer.finiteOnly || hasFiniteCoordinates(*molecule)) return true;
                fault = "has a coordinate that is not a finite number";
            }
        } catch (...) {
            fault += ": " + reasonOfCurrentException();
        }
        // Writers that pass over a step go on; the first failure tells most.
        if (!transfer.failure) {
            transfer.failure.emplace(file, "step " + std::to_string(sourceStep) + " of \"" +
                                               source->getTopology()->getName() + "\" " + fault);
        }
        return false;
    }

private:
    McHandle<MolTrajectory> source;
    int first;
    int stride;
    int count;
    std::string file;
    Transfer& transfer;
};

} // namespace

FrameRange FrameRange::parse(std::string const& text) {
    std::string_view parts[3];
    std::string_view rest = text;
    int number = 0;
    while (true) {
        std::size_t const colon = rest.find(':');
        if (number == 3) throw WrongUse{"--frames " + text + ": not of the form first:last:step"};
        parts[number++] = rest.substr(0, colon);
        if (colon == std::string_view::npos) break;
        rest.remove_prefix(colon + 1);
    }
    FrameRange range;
    range.first = parseCount(parts[0], text);
    range.last = number == 1 ? range.first : parseCount(parts[1], text);
    range.step = parseCount(parts[2], text).value_or(1);
    if (text.empty() || range.step < 1) throw WrongUse{"--frames " + text + ": the step must be 1 or more"};
    return range;
}

void Transfer::throwIfFailed() const {
    console.throwIfInterrupted();
    if (failure) throw Failure(*failure);
}

void appendSelected(Bundle& selection, MolTrajectory* trajectory, FrameRange const& range, std::string const& file,
                    Transfer& transfer) {
    int const steps = trajectory->getNumTimeSteps();
    int first = 0;
    int last = steps - 1;
    int stride = 1;
    if (steps > 1) {
        auto const fromStart = [steps](int step) { return step < 0 ? step + steps : step; };
        first = std::max(fromStart(range.first.value_or(0)), 0);
        last = std::min(fromStart(range.last.value_or(-1)), steps - 1);
        stride = range.step;
        if (first > last) {
            throw Failure(file, "--frames selects none of the " + std::to_string(steps) + " steps of \"" +
                                    trajectory->getTopology()->getName() + "\"");
        }
    }
    int const count = first > last ? 0 : (last - first) / stride + 1;
    transfer.totalSteps += count;
    selection.append(new SelectedSteps(trajectory, first, stride, count, file, transfer));
}

} // namespace tarnex::tool
