// SPDX-License-Identifier: MIT

#include "viewer/proc_text.h"

#include <algorithm>
#include <charconv>

namespace mirador {

namespace {

template<class Number> std::optional<Number> Take(std::string_view *text, int base) {
    const std::string_view from = SkipBlanks(*text);
    Number number = 0;
    const auto [end, fault] = std::from_chars(from.data(), from.data() + from.size(), number, base);
    if (fault != std::errc()) return std::nullopt;
    *text = from.substr(static_cast<size_t>(end - from.data()));
    return number;
}

} // namespace

std::string_view TakeLine(std::string_view *text) {
    const size_t end = std::min(text->find('\n'), text->size());
    const std::string_view line = text->substr(0, end);
    text->remove_prefix(std::min(end + 1, text->size()));
    return line;
}

std::string_view SkipBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

std::string_view TakeField(std::string_view *text) {
    const std::string_view from = SkipBlanks(*text);
    const size_t end = std::min(from.find_first_of(" \t"), from.size());
    *text = from.substr(end);
    return from.substr(0, end);
}

std::optional<uint64_t> TakeNumber(std::string_view *text, int base) { return Take<uint64_t>(text, base); }

std::optional<int64_t> TakeSigned(std::string_view *text) { return Take<int64_t>(text, 10); }

bool TakePrefix(std::string_view *text, std::string_view prefix) {
    if (!text->starts_with(prefix)) return false;
    text->remove_prefix(prefix.size());
    return true;
}

bool IsDeleted(std::string_view path) { return path.ends_with(" (deleted)"); }

} // namespace mirador
