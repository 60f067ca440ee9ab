// Preloaded: shows /run/systemd/system to the program and makes sleep() instant; each second asked for is
// written to descriptor 1 as "[1]", so that a test sees where the pauses stand.

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

__attribute__((constructor)) static void QuitarDelEntorno() { unsetenv("LD_PRELOAD"); }

extern "C" int lstat(const char *ruta, struct stat *st) noexcept {
    if (strcmp(ruta, "/run/systemd/system") == 0) return 0;
    static const auto real =
        reinterpret_cast<int (*)(const char *, struct stat *)>(dlsym(RTLD_NEXT, "lstat"));
    return real(ruta, st);
}

extern "C" unsigned sleep(unsigned segundos) {
    dprintf(STDOUT_FILENO, "[%u]", segundos);
    return 0;
}
