// SPDX-License-Identifier: MIT

// bare_list DIRECTORY: what a long listing of a tree costs at least: each directory read, each entry's status
// taken, its date put into local time and its line formed; names of users and groups are looked up once.

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <initializer_list>

namespace {

char usuario_[256], grupo_[256];

void Linea(int df, const char *nombre) {
    struct stat st;
    struct tm tm;
    if (fstatat(df, nombre, &st, AT_SYMLINK_NOFOLLOW) == -1 || !localtime_r(&st.st_mtime, &tm)) _exit(1);
    printf("%4d/%02d/%02d-%02d:%02d %3lu (%8lu)%9s%9s %10o %8lu %s\n", tm.tm_year + 1900, tm.tm_mon + 1,
           tm.tm_mday, tm.tm_hour, tm.tm_min, static_cast<unsigned long>(st.st_nlink),
           static_cast<unsigned long>(st.st_ino), usuario_, grupo_, st.st_mode,
           static_cast<unsigned long>(st.st_size), nombre);
}

/// Its lines, then those of its directories.
void Listar(int en, const char *nombre) {
    for (const bool subdirectorios : {false, true}) {
        DIR *dir = fdopendir(openat(en, nombre, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!dir) _exit(1);
        while (const dirent *entrada = readdir(dir)) {
            if (entrada->d_name[0] == '.') continue;
            if (!subdirectorios)
                Linea(dirfd(dir), entrada->d_name);
            else if (entrada->d_type == DT_DIR)
                Listar(dirfd(dir), entrada->d_name);
        }
        closedir(dir);
    }
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc < 2) return 2;
    const struct passwd *usuario = getpwuid(geteuid());
    snprintf(usuario_, sizeof usuario_, "%s", usuario ? usuario->pw_name : "?");
    const struct group *grupo = getgrgid(getegid());
    snprintf(grupo_, sizeof grupo_, "%s", grupo ? grupo->gr_name : "?");
    tzset();
    Listar(AT_FDCWD, argv[1]);
}
