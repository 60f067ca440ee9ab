// SPDX-License-Identifier: MIT

#include "shell/command_table.h"

#include <array>
#include <cstring>

#include "environment/commands.h"
#include "files/commands.h"
#include "memfs/commands.h"
#include "memory/commands.h"
#include "processes/commands.h"
#include "shell/alias_fingerprints.h"
#include "shell/commands.h"
#include "shell/help_topics.h"
#include "signals/commands.h"

namespace {

constexpr int kMaxAliases = 5;

/// All that is said of one command, in one place. The compiler forms from these rows the tables that the
/// program reads; the rows themselves do not reach it.
struct Fila {
    const char *nombre;
    void (&manejador)(char *args[]); ///< a reference: no row does without, nor need that be proven
    const char
        *aliases[kMaxAliases]; ///< in the order in which they are listed; what stands twice is listed twice
    const char *ayuda;
    int topics;
};

// clang-format off
constexpr Fila kFilas[] = {
    {"version", Cmd_version, {"numserie"},
     "\tIndica la version del shell",
     kInfo},
    {"exit", Cmd_exit, {"salir", "bye", "fin", "quit", "salir"},
     "\tTermina la ejecucion del shell",
     kOtros},
    {"date", Cmd_fecha, {"fecha"},
     "[-d|-t]\tMuestra la fecha y/o la hora actual",
     kInfo},
    {"day", Cmd_date, {"dia"},
     "\tMuestra la fecha acual",
     kInfo},
    {"time", Cmd_time, {"hora"},
     "\tMuestra la hora actual",
     kInfo},
    {"pid", Cmd_pid, {"getpid"},
     "[-p]\tMuestra el pid del shell o de su proceso padre",
     kInfo},
    {"ppid", Cmd_ppid, {"getppid"},
     "\tMuestra el pid del proceso padre del shell",
     kProcesos},
    {"authors", Cmd_authors, {"autores"},
     "[-n|-l]\tMuestra los nombres y/o logins de los autores",
     kInfo},
    {"historic", Cmd_hist, {"previous"},
     "[-c|-N|N]\tMuestra (o borra)el historico de comandos\n"
     "\t-N: muestra los N primeros\n"
     "\t-c: borra el historico\n"
     "\tN: repite el comando N",
     kOtros},
    {"command", Cmd_command, {"comando"},
     "[-N]\tRepite el comando N (del historico)",
     kOtros},
    {"prompt", Cmd_prompt, {"aviso"},
     "[cad]\t cambia el prompt (simbolo de aviso) del shell a la cadena cad: \n"
     "\t\t %u: nombre usuario   \t %p: pid del shell\n"
     "\t\t %d: directorio actual\t %D: directorio actual (contraido)\n"
     "\t\t %B: Ultimo componente del directorio actual\n"
     "\t\t %m: nombre maquina   \t %o: nombre del S.O.\n"
     "\t\t %t el tabulador \t %n: fin de linea\n"
     "\t\t %%: el caracter %, %b: espacio en blanco",
     kOtros},
    {"chdir", Cmd_chdir, {"cd", "carpeta", "carpeta"},
     "[dir]\tCambia (o muestra) el directorio actual del shell",
     kFicheros},
    {"chroot", Cmd_chroot, {"changeroot"},
     "[dir]\tCambia el directorio raiz del sh ell",
     kFicheros},
    {"infosys", Cmd_infosys, {"infosis"},
     "\tMuestra informacion de la maquina donde corre el shell",
     kInfo},
    {"pwd", Cmd_pwd, {"cwd"},
     "\tMuestra el directorio actual del shell",
     kFicheros},
    {"open", Cmd_open, {"abrir"},
     "fich m1 m2...\tAbre el fichero fich\n"
     "\ty lo anade a la lista de ficheros abiertos del shell\n"
     "\tm1, m2..es el modo de apertura (or bit a bit de los siguientes)\n"
     "\tcr: O_CREAT\tap: O_APPEND\n"
     "\tex: O_EXCL \tro: O_RDONLY\n"
     "\trw: O_RDWR \two: O_WRONLY\n"
     "\ttr: O_TRUNC",
     kFicheros},
    {"close", Cmd_close, {"cerrar"},
     "df\tCierra el descriptor df y elimina el correspondiente fichero de la lista de ficheros abiertos",
     kFicheros},
    {"listopen", Cmd_listopen, {"listarabiertos"},
     "[n]\tLista los ficheros abiertos (al menos n) del shell",
     kFicheros},
    {"dup", Cmd_dup, {"duplicar"},
     "df\tDuplica el descriptor de fichero df y anade una nueva entrada a la lista ficheros abiertos",
     kFicheros},
    {"dup2", Cmd_dup2, {"duplicar2"},
     "df df2\tDuplica el descriptor de fichero df  en df2 y anade una nueva entrada a la lista ficheros abiertos",
     kFicheros},
    {"read", Cmd_read, {"sysread", "leer"},
     "df addr cont\tTransfiere cont bytes del fichero descrito por df a la dirección addr",
     kFicheros},
    {"write", Cmd_write, {"syswrite", "escribir"},
     "df addr cont\tTransfiere cont bytes desde la dirección addr al fichero descrito por df",
     kFicheros},
    {"lseek", Cmd_lseek, {"posfile"},
     "df off ref\tPosiciona el offset en df en off. ref es la referencia:\n"
     "\t\tSEEK_SET pricipio ficheroSEEK_CUR posicion actual\n"
     "\t\tSEEK_END final del fichero",
     kFicheros},
    {"readstr", Cmd_readstr, {"readstring"},
     "df cont\t\tLee cont bytes del fichero con descriptor df\n"
     "\t\ty los muestra en pantalla",
     kFicheros},
    {"writestr", Cmd_writestr, {"writestring"},
     "df string\t Escribe el string string en el fichero descrito por df",
     kFicheros},
    {"hardlink", Cmd_hardlink, {"enlacereal"},
     "f1 f2\tCrea un enlace real a f1 de nombre f2",
     kFicheros},
    {"symlink", Cmd_symlink, {"enlacesym"},
     "f1 f2\t Crea un enlace symbolico a f1 de nombre f2",
     kFicheros},
    {"link", Cmd_link, {"lnk"},
     "[-s] f1 f2\t Crea un enlace real o symbolico (-s) a f1 de nombre f2",
     kFicheros},
    {"help", Cmd_help, {"ayuda"},
     "[cmd|-lt|-T|-all]\tMuestra ayuda sobre los comandos\n"
     "\t-lt: lista topics de ayuda\n"
     "\t-T topic: lista comandos sobre ese topic\n"
     "\tcmd: info sobre el comando cmd\n"
     "\t-all: lista todos los topics con sus comandos",
     kInfo},
    {"limits", Cmd_limits, {"limites"},
     "Muestra los limites de recursos del shell",
     kInfo},
    {"create", Cmd_create, {"crear"},
     "[-f] [name]\tCrea un directorio o un fichero (-f)",
     kFicheros},
    {"makefile", Cmd_makefile, {"crearfich"},
     "[name]\tCrea un fichero de nombre name",
     kFicheros},
    {"makedir", Cmd_makedir, {"creardir"},
     "[name]\tCrea un directorio de nombre name",
     kFicheros},
    {"delete", Cmd_delete, {"borrar", "erase"},
     "[name1 name2 ..]\tBorra ficheros o directorios vacios",
     kFicheros},
    {"deltree", Cmd_deltree, {"borrarrec", "delrec"},
     "[name1 name2 ..]\tBorra ficheros o directorios no vacios recursivamente",
     kFicheros},
    {"stat", Cmd_stat, {"listfich", "listfile"},
     "[-long][-link][-acc] name1 name2 ..\tlista ficheros;\n"
     "\t-long: listado largo\n"
     "\t-acc: acesstime\n"
     "\t-link: si es enlace simbolico, el path contenido",
     kFicheros},
    {"list", Cmd_list, {"listar", "showdir"},
     "[-reca] [-recb] [-hid][-long][-link][-acc] n1 n2 ..\tlista contenidos de directorios\n"
     "\t-long: listado largo\n"
     "\t-hid: incluye los ficheros ocultos\n"
     "\t-recb: recursivo (antes)\n"
     "\t-reca: recursivo (despues)\n"
     "\t-acc: acesstime\n"
     "\t-link: si es enlace simbolico, el path contenido",
     kFicheros},
    {"listdir", Cmd_listdir, {"listfolder"},
     "[-hid][-long][-link][-acc] n1 n2 ..\tlista contenidos de directorios\n"
     "\t-long: listado largo\n"
     "\t-hid: incluye los ficheros ocultos\n"
     "\t-acc: acesstime\n"
     "\t-link: si es enlace simbolico, el path contenido",
     kFicheros},
    {"listrec", Cmd_listrec, {"reclist"},
     "[-hid][-long][-link][-acc] n1 n2 ..\tlista recursivamente contenidos de directorios (subdirs despues)\n"
     "\t-hid: incluye los ficheros ocultos\n"
     "\t-long: listado largo\n"
     "\t-acc: acesstime\n"
     "\t-link: si es enlace simbolico, el path contenido",
     kFicheros},
    {"listrev", Cmd_listrev, {"revlist"},
     "[-hid][-long][-link][-acc] n1 n2 ..\tlista recursivamente contenidos de directorios (subdirs antes)\n"
     "\t-hid: incluye los ficheros ocultos\n"
     "\t-long: listado largo\n"
     "\t-acc: acesstime\n"
     "\t-link: si es enlace simbolico, el path contenido",
     kFicheros},
    {"recurse", Cmd_recurse, {"recursiva"},
     "[n]\tInvoca a la funcion recursiva n veces",
     kMemoria},
    {"i-o", Cmd_i_o, {"e-s", "i/o", "e/s"},
     "[read|write] [-o] fiche addr cont \n"
     "\tread fich addr cont: Lee cont bytes desde fich a addr\n"
     "\twrite [-o] fich addr cont: Escribe cont bytes desde addr a fich. -o para sobreescribir\n"
     "\t\taddr es una direccion de memoria",
     kMemoria},
    {"readfile", Cmd_readfile, {"leerfichero"},
     "fiche addr cont \tLee cont bytes desde fich a la direccion addr",
     kMemoria},
    {"writefile", Cmd_writefile, {"escribirfichero"},
     "[-o] fiche addr cont \tEscribe cont bytes desde la direccion addr a fich (-o sobreescribe)",
     kMemoria},
    {"memdump", Cmd_memdump, {"volcarmem"},
     "addr cont \tVuelca en pantallas los contenidos (cont bytes) de la posicion de memoria addr",
     kMemoria},
    {"memfill", Cmd_memfill, {"fillmem", "llenarmem"},
     "addr cont byte \tLlena la memoria a partir de addr con byte",
     kMemoria},
    {"deallocate", Cmd_deallocate, {"dealloc", "desasignar"},
     "[-malloc|-shared|-delkey|-mmap|addr]..\tDesasigna un bloque de memoria\n"
     "\t-malloc tam: desasigna el bloque malloc de tamano tam\n"
     "\t-shared cl: desasigna (desmapea) el bloque de memoria compartida de clave cl\n"
     "\t-delkey cl: elimina del sistema (sin desmapear) la clave de memoria cl\n"
     "\t-mmap fich: desmapea el fichero mapeado fich\n"
     "\taddr: desasigna el bloque de memoria en la direccion addr",
     kListaMemoria},
    {"allocate", Cmd_allocate, {"alloc", "asignar"},
     "[-malloc|-shared|-createshared|-mmap]... Asigna un bloque de memoria\n"
     "\t-malloc tam: asigna un bloque malloc de tamano tam\n"
     "\t-createshared cl tam: asigna (creando) el bloque de memoria compartida de clave cl y tamano tam\n"
     "\t-shared cl: asigna el bloque de memoria compartida (ya existente) de clave cl\n"
     "\t-mmap fich perm: mapea el fichero fich, perm son los permisos",
     kListaMemoria},
    {"malloc", Cmd_malloc, {"Mmalloc"},
     "[-free] [tam]\tasigna un bloque memoria de tamano tam con malloc\n"
     "\t-free: desasigna un bloque de memoria de tamano tam asignado con malloc",
     kListaMemoria},
    {"mmap", Cmd_mmap, {"Mmmap"},
     "[-free] fich prm\tmapea el fichero fich con permisos prm\n"
     "\t-free fich: desmapea el ficherofich",
     kListaMemoria},
    {"shared", Cmd_shared, {"Mshared"},
     "[-free|-create|-delkey] cl [tam]\tasigna memoria compartida con clave cl en el programa\n"
     "\t-create cl tam: asigna (creando) el bloque de memoria compartida de clave cl y tamano tam\n"
     "\t-free cl: desmapea el bloque de memoria compartida de clave cl\n"
     "\t-delkey clelimina del sistema (sin desmapear) la clave de memoria cl",
     kListaMemoria},
    {"memcreateshared", Cmd_createshared, {"createshared"},
     "cl tam\tasigna(creandola nueva) memoria compartida (clave cl) en el programa\n"
     "\t tam es el tamano del bloque",
     kListaMemoria},
    {"memshared", Cmd_memshared, {"mshared"},
     "cl\tasigna (sin crear) memoria compartida (clave cl) en el programa",
     kListaMemoria},
    {"memdeshared", Cmd_memdeshared, {"dememshared"},
     "cl\tdesasigna bloque de memoria cmpartida de clave cl",
     kListaMemoria},
    {"memmalloc", Cmd_memmalloc, {"mmalloc"},
     "tam\tasigna un bloque memoria de tamano tam con malloc",
     kListaMemoria},
    {"memdemalloc", Cmd_memdemalloc, {"dememmalloc"},
     "tam\tdesasigna bloque de memoria malloc de tamano tam",
     kListaMemoria},
    {"memmmap", Cmd_memmmap, {"mmmap"},
     "fich prms\tmapea el fichero fich con permisos prm",
     kListaMemoria},
    {"memdemmap", Cmd_memdemmap, {"dememmmap"},
     "fich\tdesmapea el fichero fich",
     kListaMemoria},
    {"free", Cmd_free, {"liberar"},
     "addr\tdesasigna el bloque de memoria en la direccion addr",
     kListaMemoria},
    {"delkey", Cmd_delkey, {"borrarclave"},
     "cl\telimina del sistema (sin desmapear) la clave de memoria cl",
     kListaMemoria},
    {"mem", Cmd_memory, {"memory", "memoria"},
     "[-blocks|-funcs|-vars|-all|-pmap] ..\tMuestra muestra detalles de la memoria del proceso\n"
     "\t\t-blocks: los bloques de memoria asignados\n"
     "\t\t-funcs: las direcciones de las funciones\n"
     "\t\t-vars: las direcciones de las variables\n"
     "\t\t:-all: todo\n"
     "\t\t-pmap: muestra la salida del comando pmap(o similar)",
     kListaMemoria},
    {"showenv", Cmd_showenv, {"entorno", "environ"},
     "[-environ|-addr] \t Muestra el entorno del proceso\n"
     "\t-environ: accede usando environ (en lugar del tercer arg de main)\n"
     "\t-addr: muestra el valor y donde se almacenan environ y el 3er arg main ",
     kEntorno},
    {"showvar", Cmd_showvar, {"mostrarvar"},
     "var\tMuestra el valor y las direcciones de la variable de entorno var",
     kEntorno},
    {"changevar", Cmd_changevar, {"cambiarvar"},
     "[-a|-e|-p] var valor\tCambia el valor de una variable de entorno\n"
     "\t-a: accede por el tercer arg de main\n"
     "\t-e: accede mediante environ\n"
     "\t-p: accede mediante putenv",
     kEntorno},
    {"subsvar", Cmd_subsvar, {"susvar", "substitutevar", "sustituirvar"},
     "[-a|-e] var1 var2 valor\tSustituye la variable de entorno var1\n"
     "\tcon var2=valor\n"
     "\t-a: accede por el tercer arg de main\n"
     "\t-e: accede mediante environ",
     kEntorno},
    {"changevarWrong", Cmd_changevarWrong, {"cambiarvarMal"},
     "-a|-e|-p  -mo|-ma|-ms var valor\tCambia de manera incorrecta el valor de una variable de entorno\n"
     "\t-mo sobreescribe la variable original\n"
     "\t-ma usa una variable automatica para crear la nueva variable\n"
     "\t-ms usa una variable estatica para crear la nueva variable",
     kEntorno},
    {"memcopy", Cmd_memcopy, {"copiarmem"},
     "addr1 addr2 [siz] copia siz bytes de addr1 a addr2\n"
     "\tsi no se especifica size copia 100bytes",
     kListaMemoria},
    {"stringcopy", Cmd_stringcopy, {"strcopy", "copiarstring", "memstr"},
     "addr s1 s2 ...\t copia el strring \"s1 s2 s3 ...\" a la direccion de memoria addr",
     kListaMemoria},
    {"abbrev", Cmd_abbrev, {"abreviaturas"},
     "[on|off] \thabilita o deshabilita el uso de abreviaturas de comandos",
     kProcesos},
    {"where", Cmd_where, {"donde", "cual"},
     "ejec \t indica donde esta el ejecutable ejec",
     kProcesos},
    {"priority", Cmd_priority, {"prioridad"},
     "[pid] [valor] \tMuestra o cambia la prioridad del proceso pid a valor",
     kProcesos},
    {"redin", Cmd_redin, {"redentrada"},
     "[-reset] fich \tRedirecciona la entrada estándar del shell a fich\n"
     "\t-reset: restaura al valor original",
     kProcesos},
    {"redout", Cmd_redout, {"redsalida"},
     "[-reset] fich \tRedirecciona la salida estándar del shell a fich\n"
     "\t-reset: restaura al valor original",
     kProcesos},
    {"rederr", Cmd_rederr, {"rederror"},
     "[-reset] fich \tRedirecciona el error estándar del shell a fich\n"
     "\t-reset: restaura al valor original",
     kProcesos},
    {"initredir", Cmd_initredir, {"habilitarredireccion"},
     "Inicializa estructuras para permitir redireccion",
     kProcesos},
    {"clearredir", Cmd_clearredir, {"deshabilitarredireccion"},
     "Desabilita la redireccion",
     kProcesos},
    {"getuid", Cmd_getuid, {"getuseruid"},
     "\tMuestra las credenciales del proceso que ejecuta el shell",
     kProcesos},
    {"setuid", Cmd_setuid, {"setuseruid"},
     "[-l] id\tCambia las credenciales del proceso que ejecuta el shell\n"
     "\tid: establece la credencial al valor numerico id\n"
     "\t-l id: establece la credencial a login id",
     kProcesos},
    {"uid", Cmd_uid, {"credenciales"},
     "[-get|-set] [-l] [id] \t Accede a las credenciales del proceso que ejecuta el shell\n"
     "\t-get: muestra las credenciales\n"
     "\t-set id: establece la credencial al valor numerico id\n"
     "\t-set -l id: establece la credencial a login id",
     kProcesos},
    {"search", Cmd_search, {"path"},
     "[-add|-del|-clear|-path]..\tManipula o muestra la ruta de busqueda del shell (path)\n"
     "\t-add dir: aniade dir a la ruta de busqueda(equiv +dir)\n"
     "\t-del dir: elimina dir de la ruta de busqueda (equiv -dir)\n"
     "\t-clear: vacia la ruta de busqueda\n"
     "\t-path: importa el PATH en la ruta de busqueda",
     kProcesos},
    {"fork", Cmd_fork, {"crearproceso"},
     "\tEl shell hace fork y queda en espera a que su hijo termine",
     kProcesos},
    {"execute", Cmd_exec, {"ejec", "exec"},
     "VAR1 VAR2 ..prog args....[@pri]\tEjecuta, sin crear proceso,prog con argumentos\n"
     "\t en un entorno que contiene solo las variables VAR1, VAR2...",
     kProcesos},
    {"executepri", Cmd_execpri, {"ejecpri", "execpri"},
     "prio prog args....\tEjecuta, sin crear proceso, prog con argumentos con la prioridad cambiada a prio",
     kProcesos},
    {"executeas", Cmd_execute_as, {"ejecas", "execas"},
     "prio prog args....\tEjecuta, sin crear proceso, prog con argumentos con la prioridad cambiada a prio",
     kProcesos},
    {"fg", Cmd_pplano, {"pplano"},
     "prog args...\tCrea un proceso que ejecuta en primer plano prog con argumentos",
     kProcesos},
    {"fgpri", Cmd_pplanopri, {"pplanopri"},
     "prio prog args...\tCrea un proceso que ejecuta en primer plano prog con argumentos  con la prioridad cambiada a prio",
     kProcesos},
    {"back", Cmd_splano, {"splano"},
     "prog args...\tCrea un proceso que ejecuta en segundo plano prog con argumentos",
     kProcesos},
    {"backpri", Cmd_splanopri, {"splanopri"},
     "prio prog args...\tCrea un proceso que ejecuta en segundo plano prog con argumentos con la prioridad cambiada a prio",
     kProcesos},
    {"fgas", Cmd_pplanoas, {"pplanoas"},
     "us prog args...\tCrea un proceso que ejecuta en primer plano, y como el usuario us, prog con argumentos",
     kProcesos},
    {"backas", Cmd_splanoas, {"splanoas"},
     "us prog args...\tCrea un proceso que ejecuta en segundo plano, y como el usuario us, prog con argumentos",
     kProcesos},
    {"listjobs", Cmd_listjobs, {"listarprocs"},
     "\tLista los procesos en segundo plano",
     kProcesos},
    {"deljobs", Cmd_deljobs, {"borrarprocs"},
     "[-term][-sig]\tElimina los procesos de la lista procesos en sp\n"
     "\t-term: los terminados\n"
     "\t-sig: los terminados por senal",
     kProcesos},
    {"job", Cmd_job, {"proc"},
     "[-fg] pid\tMuestra informacion del proceso pid.\n"
     "\t\t-fg: lo pasa a primer plano",
     kProcesos},
    {"pipe", Cmd_pipe, {"concat"},
     "prog1 args .. % prog2 args..: ejecuta prog1 redireccionando su salida\n"
     "\t a la entrada del proceso que ejecuta prog2",
     kProcesos},
    {"backpipe", Cmd_backpipe, {"backconcat"},
     "prog1 args .. % prog2 args ..: ejecuta prog1 redireccionando su salida\n"
     "\t a la entrada del proceso que ejecuta prog2. En segundo plano",
     kProcesos},
    {"sigdefault", Cmd_sigdefault, {"defecto"},
     "S1 S2..\t Pone a la accion por defecto senales S1, S2 ...",
     kSenales},
    {"sigignore", Cmd_sigignore, {"ignorar"},
     "S1 S2..\t Ignora senales S1, S2 ...",
     kSenales},
    {"sigmask", Cmd_sigmask, {"enmascarar"},
     "S1 S2..\tEnmascara senales S1, S2 ...",
     kSenales},
    {"sigunmask", Cmd_sigunmask, {"desenmascarar"},
     "S1 S2..\tDesenmascara senales S1, S2 ...",
     kSenales},
    {"sighandler", Cmd_sighandler, {"manejador"},
     "[-show][-resend][-resethand] [-Fonstack] [-Frestart] [-Fnodefer] [-sleepNN] [-maskSEN1] [-maskSEN2] ...S1 S2\n"
     "\t\t\t Instala manejador para las senales S1 S2.. \n"
     "\t\t-show: el manejador muestra cuando se ejecuta\n"
     "\t\t-resend: el manejador reenvia la senal al propio proceso\n"
     "\t\t-sleepNN: el manejador se queda en espera NN segundos\n"
     "\t\t-Fxxxx: el manejador se instala con el flag xxxxx\n"
     "\t\t-maskSEN: mascara asociada al manejador",
     kSenales},
    {"sigaction", Cmd_sigaction, {"signal", "senal"},
     "-dfl|-ign|-hand ....\n"
     "\t\t-dfl: equivalente a sigdefault\t\n"
     "\n"
     "-ign: equivalente a sigignore\n"
     "\t\t-hand: equivalente a sighandler",
     kSenales},
    {"sigprocmask", Cmd_sigprocmask, {"sigprocmask"},
     "[-block|-unblock|-setmask] S1 S2  Senales enmascaradas\n"
     "\t\t-block S1 S2..:enmascara S1 S2 ..\n"
     "\t\t-unblock S1 S2 ..: desenmascara S1 S2 ..\n"
     "\t\t-setmask S1 S2 ..: establece senales enmascaradas a S1 S2 ..",
     kSenales},
    {"limitresend", Cmd_limitresend, {"limitereenvios"},
     " [off|N]: numero maximo de veces que se reenvia una senal con el manejador\n"
     "\t\toff:lo desactiva\t\n"
     "\n"
     "N: lo establece a N\n"
     "\t\t ---: informa del valor",
     kSenales},
    {"siginfo", Cmd_siginfo, {"infosenales"},
     "[S1] [S2].. informa del estado de las senales",
     kSenales},
    {"sigcount", Cmd_sigcount, {"contadorsenales"},
     "[-zero] [S1] [S2]..  informa del estado de (o pone a cero) los contadores senales recibidas",
     kSenales},
    {"sigaltstack", Cmd_sigaltstack, {"pilasenales"},
     "[tam] [dir]..  establece una pila alternativa para los manejadores",
     kSenales},
    {"loop", Cmd_bucle, {"bucle"},
     "[-user|-sys|-mix|-dly] entra en un bucle infinito(ctrl-C para salir)\n"
     "-user:\t\tel bucle es codigo de usuario\n"
     "-sys:\t\tes un bucle de llamadas al sistema\n"
     "-mix:\t\tel bucle es mixto\n"
     "-dly:\t\thay un sleep(1) cada cierto tiempo",
     kSenales},
    {"segmentation", Cmd_segmentation, {"segv"},
     ": produce un fallo de segmentacion",
     kSenales},
    {"fpe", Cmd_fpe, {"divby0"},
     ": produce un error de division por 0",
     kSenales},
    {"usesignals", Cmd_usesignals, {"usarsenales"},
     "[on|off]\tIndica (o establece) si se estan usado o no senales\n"
     "\t\tAfecta a si el shell termina si la funcion de leer entrada da error",
     kSenales},
    {"protectsegv", Cmd_protectsegv, {"protegersegmentation"},
     "protege de un fallo de segmentacion UNA VEZ, restaurando al principio de main\n"
     "\t\t Si el fallo es por desbordamiento de pila, deberia haberse establecido\n"
     "\t\t una pila alternativa para las senales para que sea efectivo",
     kSenales},
    {"protectfpe", Cmd_protectfpe, {"protegerfpe"},
     "protege la execpcion de division por 0 UNA VEZ, restaurando al principio de main\n",
     kSenales},
    {"assign", Cmd_assign, {"label"},
     "[-add|-del|-clear]..  asigna nombres (labels) a direcciones de memoria para usar con el sistema de ficherosn en memoria\n"
     "\t\t-add label addr asigna el label nom a la direcciona addr\n"
     "\t\t-del nom elimina la asignación de nom\n"
     "\t\t-clear\telimina las asignaciones",
     kSFMemoria},
    {"memfs", Cmd_memfs, {"sfmemoria"},
     "[-copy|-move|-delete|-format|-list] opera sobre sistemas de ficheros en memoria\n"
     "\t\t-copy idfic1 idfic2\tcopia idfic1 a idfic2\n"
     "\t\t-move idfic1 idfic2\tmueve idfic1 a idfic2\n"
     "\t\t-delete idfic1\telimina idfic1\n"
     "\t\t-format idsf\tformatea el sistema de ficheros en memoria idsf\n"
     "\t\t-list idsf\tlista el sf en memroia idsf\n"
     "\t\t-search\tlista los idsf validos\n"
     "\t\t-label idsf\tlista los labels en el sistema\n"
     "\tidfic son de la forma idsf:nom (nom pata ficheros de disco)\n"
     "\tidsf es una direcciond e memoria o un nombre puesto co assign",
     kSFMemoria},
    {"memfs-list", MemFSListar, {"mfslist"},
     "idSF\tlista el sistema de ficheros idSF\n",
     kSFMemoria},
    {"memfs-format", MemFSFormat, {"format"},
     "idSF\tlista el sistema de ficheros idSF\n",
     kSFMemoria},
    {"memfs-cp", MemFSCopiar, {"copy"},
     "idfic1 idfic2\tcopia idfic1 a idfic2\n",
     kSFMemoria},
    {"memfs-mv", MemFSMover, {"move"},
     "idfic1 idfic2\tmueve idfic1 a idfic2\n",
     kSFMemoria},
    {"memfs-del", MemFSBorrar, {"remove"},
     "idfic1 idfic2\tmueve idfic1 a idfic2\n",
     kSFMemoria},
    {"memfs-find", MemFSBuscar, {"mfsfind"},
     "\tbusca direcciones de memoria donde hay SF\n",
     kSFMemoria},
    {"memfs-label", Cmd_printAssign, {"showlabels"},
     "\tmuestra los albels direcciones de memoria asociadas\n",
     kSFMemoria},
    {"checkalias", Cmd_checkalias, {},
     "[-q] Lista los comandos con sus alias\n"
     "\t\tLista los comandos que no tienen alias",
     kSinTopic},
};
// clang-format on
static_assert(sizeof kFilas / sizeof *kFilas == kNumComandos, "a command has come or gone: is that meant?");

constexpr bool FilasCompletas() {
    for (const Fila &fila : kFilas)
        if (!fila.nombre || !fila.ayuda) return false;
    return true;
}
static_assert(FilasCompletas(), "a row lacks its name or its help");

constexpr int ContarAliases() {
    int n = 0;
    for (const Fila &fila : kFilas)
        for (const char *alias : fila.aliases) n += alias != nullptr;
    return n;
}
static_assert(ContarAliases() == kNumAliases, "an alias has come or gone: is that meant?");

constexpr auto FormarComandos() {
    std::array<CommandEntry, kNumComandos + 1> tabla = {};
    int n = 0;
    for (const Fila &fila : kFilas) tabla[n++] = {fila.nombre, fila.manejador, fila.ayuda, fila.topics};
    return tabla;
}

constexpr auto FormarAliases() {
    std::array<AliasEntry, kNumAliases + 1> tabla = {};
    int n = 0;
    for (const Fila &fila : kFilas)
        for (const char *alias : fila.aliases)
            if (alias) tabla[n++] = {fila.nombre, alias};
    return tabla;
}

} // namespace

constexpr std::array<CommandEntry, kNumComandos + 1> CommandTable = FormarComandos();
constexpr std::array<AliasEntry, kNumAliases + 1> AliasTable = FormarAliases();
constexpr std::array<unsigned char, kNumAliases> kHuellasAliases = FormarHuellas(AliasTable);

const CommandEntry *BuscarComando(const char *nombre) {
    for (const CommandEntry *fila = CommandTable.data(); fila->nombre; fila++)
        if (*fila->nombre == *nombre && strcmp(fila->nombre, nombre) == 0) return fila;
    return nullptr;
}
