// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Reading the kernel's texts from left to right: each function takes something off the front of `text`.

namespace mirador {

/// The text up to the end of the line, which is taken too.
std::string_view TakeLine(std::string_view *text);

/// The next run of characters that are neither blanks nor tabs; empty at the end.
std::string_view TakeField(std::string_view *text);

/// The number at the front, after blanks and tabs; nothing (and nothing taken) when there is none, or when it
/// does not fit.
std::optional<uint64_t> TakeNumber(std::string_view *text, int base = 10);
std::optional<int64_t> TakeSigned(std::string_view *text);

/// Takes `prefix`, or nothing. Returns whether it was there.
bool TakePrefix(std::string_view *text, std::string_view prefix);

/// The text without the blanks and tabs at its front.
std::string_view SkipBlanks(std::string_view text);

/// Whether a file's name as the kernel shows it ends in its mark for a deleted one.
bool IsDeleted(std::string_view path);

} // namespace mirador
