// SPDX-License-Identifier: MIT

// Preloaded: hides /run/systemd/system from the program, or (CON_SYSTEMD) shows it and makes sleep() instant,
// each second asked for written to descriptor 1 as "[1]", so that a test sees where the pauses stand.

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// What starts the program, the launcher's script and rlwrap, hands the shim on; the program does not.
__attribute__((constructor)) static void QuitarDelEntorno() {
    const char *nombre = program_invocation_short_name;
    if (strcmp(nombre, "sh") != 0 && strcmp(nombre, "rlwrap") != 0) unsetenv("LD_PRELOAD");
}

extern "C" int lstat(const char *ruta, struct stat *st) noexcept {
    if (strcmp(ruta, "/run/systemd/system") == 0) {
        errno = ENOENT;
        return CON_SYSTEMD ? 0 : -1;
    }
    static const auto real =
        reinterpret_cast<int (*)(const char *, struct stat *)>(dlsym(RTLD_NEXT, "lstat"));
    return real(ruta, st);
}

#if CON_SYSTEMD
extern "C" unsigned sleep(unsigned segundos) {
    dprintf(STDOUT_FILENO, "[%u]", segundos);
    return 0;
}
#endif
