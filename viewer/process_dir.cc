// SPDX-License-Identifier: MIT

#include "viewer/process_dir.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string_view>

#include "viewer/proc_text.h"

namespace mirador {

ProcessDir::ProcessDir(pid_t pid)
    : fd_(::open(("/proc/" + std::to_string(pid)).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

ProcessDir::~ProcessDir() {
    if (fd_ != -1) close(fd_);
}

int ProcessDir::Read(const char *name, std::string *text) const { return ReadFileAt(fd_, name, text); }

std::string ProcessDir::Link(const char *name) const {
    char target[PATH_MAX];
    const ssize_t n = readlinkat(fd_, name, target, sizeof target);
    return n == -1 ? std::string() : std::string(target, static_cast<size_t>(n));
}

int ProcessDir::Numbers(const char *folder, std::vector<int> *numbers) const {
    numbers->clear();
    const int fd = openat(fd_, folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd == -1) return -1;
    DIR *dir = fdopendir(fd);
    if (!dir) {
        const int reason = errno;
        close(fd);
        errno = reason;
        return -1;
    }
    while (const dirent *entry = readdir(dir)) {
        std::string_view name = entry->d_name;
        const auto number = TakeNumber(&name);
        if (number && name.empty()) numbers->push_back(static_cast<int>(*number));
    }
    closedir(dir);
    std::sort(numbers->begin(), numbers->end());
    return 0;
}

int ReadFileAt(int folder, const char *name, std::string *text) {
    const int fd = openat(folder, name, O_RDONLY | O_CLOEXEC);
    if (fd == -1) return -1;
    size_t size = 0;
    ssize_t n = 0;
    do {
        size += static_cast<size_t>(n);
        if (text->size() < size + 2048) text->resize(size + 16384);
        n = read(fd, text->data() + size, text->size() - size);
    } while (n > 0 || (n == -1 && errno == EINTR && (n = 0, true)));
    const int reason = errno;
    close(fd);
    text->resize(size);
    errno = reason;
    return n == -1 ? -1 : 0;
}

} // namespace mirador
