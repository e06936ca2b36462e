#include "StepFile.h"

#include "Failure.h"
#include "text.h"

namespace tarnex::tool {

void StepFile::addPlace(McVec3f const& place) {
    constexpr std::size_t width = 12;
    for (float const coordinate : {place.x, place.y, place.z}) {
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

} // namespace tarnex::tool
