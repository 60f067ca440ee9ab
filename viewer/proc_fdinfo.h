// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mirador {

/// What /proc/PID/fdinfo/N tells.
struct FdInfo {
    int64_t offset = 0;
    uint32_t flags = 0; ///< as open(2) and F_GETFL have them, and O_CLOEXEC
    uint64_t mount = 0; ///< the number of the mount on which the file was opened
};

/// Nothing when offset or flags are not there: the descriptor went while it was read.
std::optional<FdInfo> ParseFdInfo(std::string_view text);

/// The words of the flags, joined by one blank: "O_RDWR O_APPEND". What the machine's O_LARGEFILE says, that
/// 64 bits are enough for every offset, holds for all files and is left out; bits without a name come last,
/// in octal.
std::string FlagWords(uint32_t flags);

} // namespace mirador
