#include "files/directory.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "base/descriptor.h"

DIR *AbrirDirectorioEn(int df, const char *nombre) {
    Descriptor nuevo(openat(df, nombre, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (nuevo.df() == -1) return nullptr;
    DIR *dir = fdopendir(nuevo.df());
    if (dir) nuevo.Soltar();
    return dir;
}

bool EntradaEsDirectorio(int df, const dirent *entrada) {
    if (entrada->d_type != DT_UNKNOWN) return entrada->d_type == DT_DIR;
    struct stat st;
    return fstatat(df, entrada->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
}
