// Preloaded: hides /run/systemd/system from the program, and itself from the environment.

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

__attribute__((constructor)) static void QuitarDelEntorno() { unsetenv("LD_PRELOAD"); }

extern "C" int lstat(const char *ruta, struct stat *st) noexcept {
    if (strcmp(ruta, "/run/systemd/system") == 0) {
        errno = ENOENT;
        return -1;
    }
    static const auto real =
        reinterpret_cast<int (*)(const char *, struct stat *)>(dlsym(RTLD_NEXT, "lstat"));
    return real(ruta, st);
}
