// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace mirador {

/// Owns a descriptor of /proc/PID: what is read through it is of that process, never of another one that was
/// given its number later (ESRCH once it has gone).
class ProcessDir {
  public:
    explicit ProcessDir(pid_t pid);
    ProcessDir(ProcessDir &&other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    ProcessDir(const ProcessDir &) = delete;
    ProcessDir &operator=(const ProcessDir &) = delete;
    ProcessDir &operator=(ProcessDir &&) = delete;
    ~ProcessDir();

    bool open() const { return fd_ != -1; }

    /// Replaces `text` by the whole file. Returns 0, or -1: the errno of open or read.
    int Read(const char *name, std::string *text) const;

    /// Where a link leads; empty with errno when it cannot be read.
    std::string Link(const char *name) const;

    /// The numbers that name the entries of a folder, in order. Returns 0, or -1: the errno of opening it.
    int Numbers(const char *folder, std::vector<int> *numbers) const;

    /// For the *at calls.
    int fd() const { return fd_; }

  private:
    int fd_;
};

/// Replaces `text` by the whole of a file. Returns 0, or -1: the errno of open or read.
int ReadFileAt(int folder, const char *name, std::string *text);

} // namespace mirador
