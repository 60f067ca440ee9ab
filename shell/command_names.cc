#include "shell/command_names.h"

#include <array>
#include <cstring>

#include "shell/output.h"

// In the order of the command table. "salir" and "carpeta" stand twice, and so they are listed.
constexpr AliasEntry AliasTable[kNumAliases + 1] = {{"version", "numserie"},
                                                    {"exit", "salir"},
                                                    {"exit", "bye"},
                                                    {"exit", "fin"},
                                                    {"exit", "quit"},
                                                    {"exit", "salir"},
                                                    {"date", "fecha"},
                                                    {"day", "dia"},
                                                    {"time", "hora"},
                                                    {"pid", "getpid"},
                                                    {"ppid", "getppid"},
                                                    {"authors", "autores"},
                                                    {"historic", "previous"},
                                                    {"command", "comando"},
                                                    {"prompt", "aviso"},
                                                    {"chdir", "cd"},
                                                    {"chdir", "carpeta"},
                                                    {"chdir", "carpeta"},
                                                    {"chroot", "changeroot"},
                                                    {"infosys", "infosis"},
                                                    {"pwd", "cwd"},
                                                    {"open", "abrir"},
                                                    {"close", "cerrar"},
                                                    {"listopen", "listarabiertos"},
                                                    {"dup", "duplicar"},
                                                    {"dup2", "duplicar2"},
                                                    {"read", "sysread"},
                                                    {"read", "leer"},
                                                    {"write", "syswrite"},
                                                    {"write", "escribir"},
                                                    {"lseek", "posfile"},
                                                    {"readstr", "readstring"},
                                                    {"writestr", "writestring"},
                                                    {"hardlink", "enlacereal"},
                                                    {"symlink", "enlacesym"},
                                                    {"link", "lnk"},
                                                    {"help", "ayuda"},
                                                    {"limits", "limites"},
                                                    {"create", "crear"},
                                                    {"makefile", "crearfich"},
                                                    {"makedir", "creardir"},
                                                    {"delete", "borrar"},
                                                    {"delete", "erase"},
                                                    {"deltree", "borrarrec"},
                                                    {"deltree", "delrec"},
                                                    {"stat", "listfich"},
                                                    {"stat", "listfile"},
                                                    {"list", "listar"},
                                                    {"list", "showdir"},
                                                    {"listdir", "listfolder"},
                                                    {"listrec", "reclist"},
                                                    {"listrev", "revlist"},
                                                    {"recurse", "recursiva"},
                                                    {"i-o", "e-s"},
                                                    {"i-o", "i/o"},
                                                    {"i-o", "e/s"},
                                                    {"readfile", "leerfichero"},
                                                    {"writefile", "escribirfichero"},
                                                    {"memdump", "volcarmem"},
                                                    {"memfill", "fillmem"},
                                                    {"memfill", "llenarmem"},
                                                    {"deallocate", "dealloc"},
                                                    {"deallocate", "desasignar"},
                                                    {"allocate", "alloc"},
                                                    {"allocate", "asignar"},
                                                    {"malloc", "Mmalloc"},
                                                    {"mmap", "Mmmap"},
                                                    {"shared", "Mshared"},
                                                    {"memcreateshared", "createshared"},
                                                    {"memshared", "mshared"},
                                                    {"memdeshared", "dememshared"},
                                                    {"memmalloc", "mmalloc"},
                                                    {"memdemalloc", "dememmalloc"},
                                                    {"memmmap", "mmmap"},
                                                    {"memdemmap", "dememmmap"},
                                                    {"free", "liberar"},
                                                    {"delkey", "borrarclave"},
                                                    {"mem", "memory"},
                                                    {"mem", "memoria"},
                                                    {"showenv", "entorno"},
                                                    {"showenv", "environ"},
                                                    {"showvar", "mostrarvar"},
                                                    {"changevar", "cambiarvar"},
                                                    {"subsvar", "susvar"},
                                                    {"subsvar", "substitutevar"},
                                                    {"subsvar", "sustituirvar"},
                                                    {"changevarWrong", "cambiarvarMal"},
                                                    {"memcopy", "copiarmem"},
                                                    {"stringcopy", "strcopy"},
                                                    {"stringcopy", "copiarstring"},
                                                    {"stringcopy", "memstr"},
                                                    {"abbrev", "abreviaturas"},
                                                    {"where", "donde"},
                                                    {"where", "cual"},
                                                    {"priority", "prioridad"},
                                                    {"redin", "redentrada"},
                                                    {"redout", "redsalida"},
                                                    {"rederr", "rederror"},
                                                    {"initredir", "habilitarredireccion"},
                                                    {"clearredir", "deshabilitarredireccion"},
                                                    {"getuid", "getuseruid"},
                                                    {"setuid", "setuseruid"},
                                                    {"uid", "credenciales"},
                                                    {"search", "path"},
                                                    {"fork", "crearproceso"},
                                                    {"execute", "ejec"},
                                                    {"execute", "exec"},
                                                    {"executepri", "ejecpri"},
                                                    {"executepri", "execpri"},
                                                    {"executeas", "ejecas"},
                                                    {"executeas", "execas"},
                                                    {"fg", "pplano"},
                                                    {"fgpri", "pplanopri"},
                                                    {"back", "splano"},
                                                    {"backpri", "splanopri"},
                                                    {"fgas", "pplanoas"},
                                                    {"backas", "splanoas"},
                                                    {"listjobs", "listarprocs"},
                                                    {"deljobs", "borrarprocs"},
                                                    {"job", "proc"},
                                                    {"pipe", "concat"},
                                                    {"backpipe", "backconcat"},
                                                    {"sigdefault", "defecto"},
                                                    {"sigignore", "ignorar"},
                                                    {"sigmask", "enmascarar"},
                                                    {"sigunmask", "desenmascarar"},
                                                    {"sighandler", "manejador"},
                                                    {"sigaction", "signal"},
                                                    {"sigaction", "senal"},
                                                    {"sigprocmask", "sigprocmask"},
                                                    {"limitresend", "limitereenvios"},
                                                    {"siginfo", "infosenales"},
                                                    {"sigcount", "contadorsenales"},
                                                    {"sigaltstack", "pilasenales"},
                                                    {"loop", "bucle"},
                                                    {"segmentation", "segv"},
                                                    {"fpe", "divby0"},
                                                    {"usesignals", "usarsenales"},
                                                    {"protectsegv", "protegersegmentation"},
                                                    {"protectfpe", "protegerfpe"},
                                                    {"assign", "label"},
                                                    {"memfs", "sfmemoria"},
                                                    {"memfs-list", "mfslist"},
                                                    {"memfs-format", "format"},
                                                    {"memfs-cp", "copy"},
                                                    {"memfs-mv", "move"},
                                                    {"memfs-del", "remove"},
                                                    {"memfs-find", "mfsfind"},
                                                    {"memfs-label", "showlabels"},
                                                    {}};

namespace {

constexpr int FilasConNombre() {
    int n = 0;
    for (const AliasEntry &fila : AliasTable)
        if (fila.comando && fila.alias) n++;
    return n;
}
static_assert(FilasConNombre() == kNumAliases, "a pair of AliasTable is missing");

int abreviaturas_;

/// One byte that stands for a word.
constexpr unsigned char Huella(const char *palabra) {
    unsigned huella = 0;
    for (; *palabra; palabra++) huella = huella * 31 + static_cast<unsigned char>(*palabra);
    return static_cast<unsigned char>(huella ^ huella >> 8);
}

/// Those of the aliases in the order of the table, formed by the compiler: for each line that is typed memchr
/// finds at once the one alias or two, of 149, that its first word is to be compared with.
constexpr auto huellas_ = [] {
    std::array<unsigned char, kNumAliases> huellas = {};
    for (int i = 0; i < kNumAliases; i++) huellas[i] = Huella(AliasTable[i].alias);
    return huellas;
}();

/// strcmp for the table scans: most rows differ in the first character.
bool Iguales(const char *a, const char *b) { return *a == *b && strcmp(a, b) == 0; }

} // namespace

void HabilitarAbreviaturas() { abreviaturas_ = 1; }
void DeshabilitarAbreviaturas() { abreviaturas_ = 0; }
int EstadoAbreviaturas() { return abreviaturas_; }

int IsInternalCommand(const char *nombre) {
    for (const AliasEntry *fila = AliasTable; fila->comando; fila++)
        if (Iguales(fila->comando, nombre)) return 1;
    return 0;
}

const char *RealCommandNoAbrev(const char *palabra) {
    const unsigned char huella = Huella(palabra);
    const unsigned char *fin = huellas_.data() + huellas_.size();
    const unsigned char *pos = huellas_.data();
    while ((pos = static_cast<const unsigned char *>(memchr(pos, huella, static_cast<size_t>(fin - pos))))) {
        const AliasEntry &fila = AliasTable[pos - huellas_.data()];
        if (strcmp(fila.alias, palabra) == 0) return fila.comando;
        pos++;
    }
    return palabra;
}

const char *RealCommandAbrev(const char *palabra) {
    const size_t n = strlen(palabra);
    const AliasEntry *encontrada = nullptr;
    for (const AliasEntry *fila = AliasTable; fila->comando; fila++) {
        if (strncmp(fila->comando, palabra, n) != 0 && strncmp(fila->alias, palabra, n) != 0) continue;
        if (encontrada) return nullptr;
        encontrada = fila;
    }
    return encontrada ? encontrada->comando : palabra;
}

const char *RealCommand(const char *palabra) {
    const char *comando = RealCommandNoAbrev(palabra);
    if (!abreviaturas_ || IsInternalCommand(comando)) return comando;
    return RealCommandAbrev(palabra);
}

int PrintGetAlias(const char *comando, int imprimir) {
    int largo = 0;
    for (const AliasEntry *fila = AliasTable; fila->comando; fila++) {
        if (!Iguales(fila->comando, comando)) continue;
        if (imprimir) Imprimir("%s ", fila->alias);
        largo += static_cast<int>(strlen(fila->alias)) + 1;
    }
    return largo;
}

int GetAliasesLength(const char *comando) { return PrintGetAlias(comando, 0); }
int PrintAlias(const char *comando) { return PrintGetAlias(comando, 1); }
