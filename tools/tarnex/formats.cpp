#include "commands.h"
#include "text.h"

#include <algorithm>
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
    std::string const extensionsTitle = "Extensions";
    std::vector<std::string> extensions;
    std::size_t width = extensionsTitle.size();
    for (Format const& format : formats()) {
        extensions.push_back(joined({format.extensions.begin(), format.extensions.end()}, " "));
        width = std::max(width, extensions.back().size());
    }
    auto const printRow = [width](std::string_view name, std::string const& names, char const* read, char const* write,
                                  std::string_view description) {
        std::printf("%-12.*s%-*s  %-6s%-7s%.*s\n", static_cast<int>(name.size()), name.data(), static_cast<int>(width),
                    names.c_str(), read, write, static_cast<int>(description.size()), description.data());
    };
    printRow("Format", extensionsTitle, "Read", "Write", "What it is");
    for (std::size_t i = 0; i < extensions.size(); ++i) {
        Format const& format = formats()[i];
        printRow(format.name, extensions[i], format.read ? "yes" : "no", format.write ? "yes" : "no",
                 format.description);
        printWrapped("keeps", format.keeps);
        printWrapped("loses", format.loses);
    }
    return succeeded;
}

} // namespace tarnex::tool
