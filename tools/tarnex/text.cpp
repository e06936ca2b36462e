#include "text.h"

#include <charconv>
#include <cstdio>

namespace tarnex::tool {

namespace {

bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

} // namespace

std::string printable(std::string_view text) {
    std::string shown;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (c == '\n')
            shown += "\\n";
        else
            shown += byte < 0x20 || byte == 0x7F ? '?' : c;
    }
    return shown;
}

std::string shortened(std::string const& text, std::size_t width) {
    std::size_t characters = 0;
    std::size_t cut = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!startsCharacter(text[i])) continue;
        if (characters == width - 3) cut = i;
        if (++characters > width) return text.substr(0, cut) + "...";
    }
    return text;
}

std::string counted(long long count, std::string_view thing) {
    std::string const number = std::to_string(count) + " ";
    if (count == 1) return number + std::string(thing);
    if (thing.ends_with("y")) return number + std::string(thing.substr(0, thing.size() - 1)) + "ies";
    return number + std::string(thing) + "s";
}

std::string joined(std::vector<std::string> const& texts, std::string_view separator) {
    std::string all;
    for (std::string const& text : texts) {
        if (!all.empty()) all += separator;
        all += text;
    }
    return all;
}

std::string reasonInMessages(std::string const& messages) {
    std::string const frame = " file. ";
    std::size_t const behindFrame = messages.rfind(frame);
    std::string const reason =
        behindFrame == std::string::npos ? messages : messages.substr(behindFrame + frame.size());
    return reason.substr(0, reason.find_last_not_of(".\n") + 1);
}

std::string decimal(double value, int digits) {
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
    std::string text(buffer);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

void appendExact(std::string& line, float value, std::size_t width) {
    char digits[200];
    char const* const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed).ptr;
    auto const length = static_cast<std::size_t>(end - digits);
    if (length < width) line.append(width - length, ' ');
    line.append(digits, length);
}

} // namespace tarnex::tool
