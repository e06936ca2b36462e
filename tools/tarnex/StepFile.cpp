#include "StepFile.h"

#include "Failure.h"
#include "text.h"

#include <cmath>

namespace tarnex::tool {

void StepFile::addPlace(McVec3f const& place) {
    constexpr std::size_t width = 12;
    for (float const coordinate : {place.x, place.y, place.z}) {
        if (!std::isfinite(coordinate))
            throw Failure(output.name(), "an atom has a coordinate that is not a finite number");
        if (!line.empty()) line += ' ';
        appendExact(line, coordinate, width);
    }
}

void StepFile::endLine() {
    constexpr std::size_t piece = 300;
    if ((line.size() + 1) % piece == 0) line += ' ';
    line += '\n';
    file.text().write(line.data(), line.size());
    line.clear();
}

MolTrajectory& onlyTrajectory(Bundle const& bundle, OutputFile const& output, char const* subject) {
    if (bundle.size != 1) {
        throw Failure(output.name(),
                      std::string(subject) + " one molecule or trajectory, here are " + std::to_string(bundle.size));
    }
    if (bundle[0]->getNumTimeSteps() < 1) throw Failure(output.name(), "there is no step to write");
    return *bundle[0];
}

} // namespace tarnex::tool
