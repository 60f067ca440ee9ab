#include "files/directory.h"

#include <fcntl.h>
#include <sys/stat.h>

bool EntradaEsDirectorio(int df, const dirent *entrada) {
    if (entrada->d_type != DT_UNKNOWN) return entrada->d_type == DT_DIR;
    struct stat st;
    return fstatat(df, entrada->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(st.st_mode);
}
