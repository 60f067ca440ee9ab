// SPDX-License-Identifier: MIT

#include "files/directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/output.h"

Directorio AbrirDirectorioEn(int df, const char *nombre) {
    Descriptor nuevo(openat(df, nombre, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (nuevo.df() == -1) return Directorio();
    DIR *dir = fdopendir(nuevo.df());
    if (dir) nuevo.Soltar();
    return Directorio(dir);
}

int EsDirectorio(const char *ruta) {
    struct stat st;
    return lstat(ruta, &st) == 0 && S_ISDIR(st.st_mode);
}

bool EntradaEsDirectorio(int df, const dirent *entrada) {
    if (entrada->d_type != DT_UNKNOWN) return entrada->d_type == DT_DIR;
    struct stat st;
    return fstatat(df, entrada->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
}

void PrintDirActual() {
    char dir[1024] = {};
    if (getcwd(dir, sizeof dir)) Imprimir("%s\n", dir);
}
