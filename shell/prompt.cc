// SPDX-License-Identifier: MIT

#include "shell/prompt.h"

#include <libgen.h>
#include <limits.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/bounded_text.h"
#include "base/large_storage.h"
#include "base/output.h"
#include "shell/commands.h"

namespace {

constexpr size_t kTamPrompt = 1024;

alignas(kAparte) char resuelto_[PATH_MAX];   // what realpath may fill
alignas(kAparte) char directorio_[PATH_MAX]; // in which DirectoryLast finds its component, however deep
char especificacion_[kTamPrompt] = "%o@%m{%B}%b%%)%b";

enum class Generacion { Bien, EscapeInvalido, NoCabe };

/// Forms the prompt of `spec` in `lugar` (kTamPrompt bytes), cut where it ends. After an escape that does not
/// exist the text is of no use.
Generacion Generar(const char *spec, char *lugar) {
    TextoAcotado texto(lugar, kTamPrompt);
    for (; *spec; spec++) {
        if (*spec != '%') {
            texto.Poner(*spec);
            continue;
        }
        const char *trozo = CadenaEquivalente(*++spec);
        if (!trozo) return Generacion::EscapeInvalido;
        texto.Poner(trozo);
    }
    return texto.Cabe() ? Generacion::Bien : Generacion::NoCabe;
}

} // namespace

const char *UserName() {
    static char ultimo[LOGIN_NAME_MAX];
    static uid_t uidUltimo;
    const uid_t uid = geteuid();
    errno = 0;
    if (const struct passwd *usuario = getpwuid(uid)) {
        uidUltimo = uid;
        snprintf(ultimo, sizeof ultimo, "%s", usuario->pw_name);
        return usuario->pw_name;
    }
    // Without a descriptor to look it up the user is who it was.
    const bool sinDescriptor = errno == EMFILE || errno == ENFILE;
    return sinDescriptor && *ultimo && uid == uidUltimo ? ultimo : "UnknownUser";
}

const char *MachineName() {
    static struct utsname sistema;
    if (uname(&sistema) == -1) return "UnknownMachine";
    char *nombre = sistema.nodename;
    while (*nombre == '.') nombre++;
    if (char *punto = strchr(nombre, '.')) *punto = '\0';
    // A node name without text gives no piece to append; the prompt shows what it shows when uname fails.
    return *nombre ? nombre : "UnknownMachine";
}

const char *OSName() {
    // The name of the running system cannot change under the shell (the node name can), so it is asked for
    // once.
    static struct utsname sistema;
    if (!*sistema.sysname && uname(&sistema) == -1) return "UnknownO.S.";
    return sistema.sysname;
}

const char *ShellPid() {
    static char pid[32];
    snprintf(pid, sizeof pid, "%llu", static_cast<unsigned long long>(getpid()));
    return pid;
}

namespace {

/// Directory in a buffer that the caller may change.
char *DirectorioResuelto() {
    static char desconocido[sizeof "UnknownDir"];
    char dir[PATH_MAX];
    // A directory that can be named but no longer resolved is as unknown as one that cannot be named.
    if (getcwd(dir, sizeof dir) && realpath(dir, resuelto_)) return resuelto_;
    return strcpy(desconocido, "UnknownDir");
}

} // namespace

const char *Directory() { return DirectorioResuelto(); }

const char *DirectoryLast() {
    if (!getcwd(directorio_, sizeof directorio_)) return "UnknownDir";
    return basename(directorio_);
}

const char *DirectoryContracted() {
    char *dir = DirectorioResuelto();
    const struct passwd *usuario = getpwuid(geteuid());
    if (!usuario) return dir;
    char casa[PATH_MAX];
    // Without a home that can be resolved there is no prefix to contract.
    if (!realpath(usuario->pw_dir, casa)) return dir;
    const size_t n = strlen(casa);
    if (strncmp(dir, casa, n) != 0) return dir;
    dir[n - 1] = '~';
    return dir + n - 1;
}

const char *CadenaEquivalente(char c) {
    switch (c) {
    case 'u': return UserName();
    case 'p': return ShellPid();
    case 'd': return Directory();
    case 'D': return DirectoryContracted();
    case 'B': return DirectoryLast();
    case 'm': return MachineName();
    case 'o': return OSName();
    case 't': return "\t";
    case 'n': return "\n";
    case '%': return "%";
    case 'b': return " ";
    default: return nullptr;
    }
}

const char *SetPrompt(const char *spec) {
    alignas(kAparte) static char prompt[kTamPrompt];
    char texto[kTamPrompt];
    // A specification that its buffer cannot hold is refused, and so is a prompt that could not be shown
    // whole.
    if (strlen(spec) >= kTamPrompt || Generar(spec, texto) != Generacion::Bien) return nullptr;
    return strcpy(prompt, texto);
}

void SetPromptSpec(const char *spec) { snprintf(especificacion_, sizeof especificacion_, "%s", spec); }

void PrintPrompt() {
    // The pieces may have grown since the text was accepted: the prompt is then cut, and the shell goes on.
    char texto[kTamPrompt];
    if (Generar(especificacion_, texto) != Generacion::EscapeInvalido) EscribirTexto(texto);
}

void PrintPromptSpec() { EscribirTexto(especificacion_); }

void Cmd_prompt(char *args[]) {
    if (!args[0]) {
        PrintPromptSpec();
        EscribirTexto("  --->  ");
        PrintPrompt();
        EscribirTexto("\n");
    } else if (SetPrompt(args[0])) {
        SetPromptSpec(args[0]);
    } else {
        EscribirTexto("error al generar el prompt, se mantiene el antiguo\n");
    }
}
