#include "commands.h"
#include "text.h"

#include <cstdio>

namespace tarnex::tool {

namespace {

void printWrapped(char const* title, std::string_view text) {
    constexpr std::size_t width = 66;
    while (!text.empty()) {
        std::size_t length = text.size();
        if (length > width) length = text.rfind(' ', width);
        std::printf("  %-8s%.*s\n", title, static_cast<int>(length), text.data());
        title = "";
        text.remove_prefix(length < text.size() ? length + 1 : length);
    }
}

} // namespace

ExitStatus runFormats() {
    std::printf("%-12s%-18s%-6s%-7s%s\n", "Format", "Extensions", "Read", "Write", "What it is");
    for (Format const& format : formats()) {
        std::vector<std::string> const extensions(format.extensions.begin(), format.extensions.end());
        std::printf("%-12s%-18s%-6s%-7s%s\n", std::string(format.name).c_str(), joined(extensions, " ").c_str(),
                    format.read ? "yes" : "no", format.write ? "yes" : "no", std::string(format.description).c_str());
        printWrapped("keeps", format.keeps);
        printWrapped("loses", format.loses);
    }
    return succeeded;
}

} // namespace tarnex::tool
