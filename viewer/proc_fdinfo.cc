// SPDX-License-Identifier: MIT

#include "viewer/proc_fdinfo.h"

#include <fcntl.h>

#include <cstdio>

#include "viewer/proc_text.h"

namespace mirador {

namespace {

struct FlagName {
    uint32_t bits;
    const char *name;
};

// Flags made of several bits stand before those that are one of them.
constexpr FlagName kFlags[] = {
    {O_CREAT, "O_CREAT"},       {O_EXCL, "O_EXCL"},       {O_NOCTTY, "O_NOCTTY"},
    {O_TRUNC, "O_TRUNC"},       {O_APPEND, "O_APPEND"},   {O_NONBLOCK, "O_NONBLOCK"},
    {O_SYNC, "O_SYNC"},         {O_DSYNC, "O_DSYNC"},     {O_ASYNC, "O_ASYNC"},
    {O_DIRECT, "O_DIRECT"},     {O_TMPFILE, "O_TMPFILE"}, {O_DIRECTORY, "O_DIRECTORY"},
    {O_NOFOLLOW, "O_NOFOLLOW"}, {O_NOATIME, "O_NOATIME"}, {O_PATH, "O_PATH"},
    {O_CLOEXEC, "O_CLOEXEC"},
};

// The library's own name is 0 where offsets have 64 bits anyway; the kernel's bit depends on the processor.
#if defined(__x86_64__) || defined(__i386__) || defined(__riscv)
constexpr uint32_t kLargeFile = 0100000;
#elif defined(__arm__) || defined(__aarch64__)
constexpr uint32_t kLargeFile = 0400000;
#else
constexpr uint32_t kLargeFile = O_LARGEFILE;
#endif

const char *AccessMode(uint32_t flags) {
    if (flags & O_PATH) return ""; // neither reads nor writes, whatever the mode's bits are
    constexpr const char *kModes[] = {"O_RDONLY", "O_WRONLY", "O_RDWR", "O_ACCMODE"};
    return kModes[flags & O_ACCMODE];
}

} // namespace

std::optional<FdInfo> ParseFdInfo(std::string_view text) {
    FdInfo info;
    bool offset = false, flags = false;
    while (!text.empty()) {
        std::string_view line = TakeLine(&text);
        if (TakePrefix(&line, "pos:")) {
            const auto number = TakeSigned(&line);
            offset = number.has_value();
            info.offset = number.value_or(0);
        } else if (TakePrefix(&line, "flags:")) {
            const auto number = TakeNumber(&line, 8);
            flags = number.has_value();
            info.flags = static_cast<uint32_t>(number.value_or(0));
        } else if (TakePrefix(&line, "mnt_id:")) {
            info.mount = TakeNumber(&line).value_or(0);
        }
    }
    if (!offset || !flags) return std::nullopt;
    return info;
}

std::string FlagWords(uint32_t flags) {
    std::string words = AccessMode(flags);
    uint32_t left = flags & ~static_cast<uint32_t>(O_ACCMODE) & ~kLargeFile;
    const auto add = [&words](const char *word) {
        if (!words.empty()) words += ' ';
        words += word;
    };
    for (const FlagName &flag : kFlags) {
        if ((left & flag.bits) != flag.bits) continue;
        add(flag.name);
        left &= ~flag.bits;
    }
    if (left != 0) {
        char octal[16];
        snprintf(octal, sizeof octal, "0%o", left);
        add(octal);
    }
    return words;
}

} // namespace mirador
