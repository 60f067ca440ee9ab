// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace escenario {

namespace {

// The prompt of a Sesion; the line that sets it (and stays in the historic) does not hold it.
const std::string kMarca = "\x02%>";
const std::string kEspecificacion = "\x02%%>";

using Reloj = std::chrono::steady_clock;

/// The options with a program that every user can reach: the build may stand in a folder of root's.
Opciones AlAlcance(Opciones o) {
    if (o.uid == 0) return o;
    namespace fs = std::filesystem;
    static const DirectorioTemporal copias;
    fs::permissions(copias.ruta(), fs::perms(0755));
    for (std::string *fichero : {&o.programa, &o.preload}) {
        const std::string copia = copias / fs::path(*fichero).filename();
        fs::copy_file(*fichero, copia, fs::copy_options::skip_existing);
        *fichero = copia;
    }
    return o;
}

/// In the child: becomes the program.
[[noreturn]] void Arrancar(const Opciones &o) {
    signal(SIGPIPE, SIG_DFL);
    for (const std::string &variable : o.entorno) putenv(const_cast<char *>(variable.c_str()));
    setenv("LD_PRELOAD", o.preload.c_str(), 1);
    if (kSaneado)
        setenv("ASAN_OPTIONS",
               "handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:handle_abort=0:"
               "use_sigaltstack=0:allocator_may_return_null=1:verify_asan_link_order=0",
               1);
    std::vector<char *> argv{const_cast<char *>(o.programa.c_str())};
    for (const std::string &a : o.argumentos) argv.push_back(const_cast<char *>(a.c_str()));
    argv.push_back(nullptr);
    if (!o.directorio.empty() && chdir(o.directorio.c_str()) == -1) _exit(126);
    for (int df = 3; df < 256; df++) close(df);
    if (o.uid != 0 && setuid(o.uid) == -1) _exit(126);
    if (o.antesDeExec) o.antesDeExec();
    execv(o.programa.c_str(), argv.data());
    _exit(127);
}

/// Starts the program on these descriptors and closes them here.
pid_t Lanzar(const Opciones &opciones, int entrada, int salida, int errores) {
    const Opciones o = AlAlcance(opciones);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(entrada, 0);
        dup2(salida, 1);
        dup2(errores, 2);
        Arrancar(o);
    }
    for (int df : {entrada, salida, errores}) close(df);
    return pid;
}

void Tuberia(int extremos[2]) {
    if (pipe(extremos) == -1) abort();
}

int FicheroAnonimo() {
    char nombre[] = "/tmp/escenarioXXXXXX";
    const int df = mkstemp(nombre);
    unlink(nombre);
    return df;
}

void EscribirEn(int df, const std::string &bytes) {
    size_t hecho = 0;
    while (hecho < bytes.size()) {
        const ssize_t n = write(df, bytes.data() + hecho, bytes.size() - hecho);
        if (n <= 0) return; // the program has closed its input: what it printed tells the test
        hecho += static_cast<size_t>(n);
    }
}

/// A descriptor from which `guion` is read, to its end.
int Entrada(const std::string &guion, bool fichero) {
    if (fichero) {
        const int df = FicheroAnonimo();
        EscribirEn(df, guion);
        lseek(df, 0, SEEK_SET);
        return df;
    }
    int extremos[2];
    Tuberia(extremos);
    const int tam = static_cast<int>(guion.size());
    if (fcntl(extremos[1], F_GETPIPE_SZ) < tam && fcntl(extremos[1], F_SETPIPE_SZ, tam) == -1) abort();
    EscribirEn(extremos[1], guion);
    close(extremos[1]);
    return extremos[0];
}

/// Waits for the end of the program; kills it when the time is over.
int EsperarA(pid_t pid) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    int estado = -1;
    while (waitpid(pid, &estado, WNOHANG) == 0) {
        if (Reloj::now() > plazo) {
            ADD_FAILURE() << "the program did not end";
            kill(pid, SIGKILL);
            waitpid(pid, &estado, 0);
            break;
        }
        poll(nullptr, 0, 1);
    }
    return estado;
}

/// Reads from df into `leido` until it holds `texto` (empty: until the end of the output). Returns where the
/// text ends, or npos.
size_t LeerHasta(int df, std::string *leido, const std::string &texto, bool puedeAcabar = false) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    const char *fallo = "waited in vain for";
    size_t mirado = 0;
    while (Reloj::now() < plazo) {
        if (!texto.empty()) {
            const size_t pos = leido->find(texto, mirado);
            if (pos != std::string::npos) return pos + texto.size();
            mirado = leido->size() > texto.size() ? leido->size() - texto.size() : 0;
        }
        struct pollfd p = {df, POLLIN, 0};
        if (poll(&p, 1, 100) == 0) continue; // until the time is over
        char trozo[65536];
        const ssize_t n = read(df, trozo, sizeof trozo);
        if (n <= 0 && (texto.empty() || puedeAcabar)) return std::string::npos;
        if (n <= 0) { // (a terminal whose program has gone gives EIO)
            fallo = "the output ended before";
            break;
        }
        leido->append(trozo, static_cast<size_t>(n));
    }
    constexpr size_t kMostrado = 4000;
    const size_t desde = leido->size() > kMostrado ? leido->size() - kMostrado : 0;
    ADD_FAILURE() << fallo << " \"" << texto << "\"; printed so far:\n" << leido->substr(desde);
    return std::string::npos;
}

/// Reads what is left of df, a file from its start, and closes it.
std::string LeerTodo(int df) {
    std::string texto;
    lseek(df, 0, SEEK_SET);
    LeerHasta(df, &texto, "");
    close(df);
    return texto;
}

struct IgnorarSigpipe {
    IgnorarSigpipe() { signal(SIGPIPE, SIG_IGN); }
} ignorarSigpipe;

} // namespace

Resultado Ejecutar(const std::string &guion, const Opciones &o) {
    int salida[2];
    if (o.salidaFichero) {
        salida[0] = FicheroAnonimo();
        fcntl(salida[0], F_SETFL, O_APPEND);
        salida[1] = dup(salida[0]);
    } else {
        Tuberia(salida);
    }
    const int errores = o.erroresAparte ? FicheroAnonimo() : -1;
    const pid_t pid =
        Lanzar(o, Entrada(guion, o.entradaFichero), salida[1], dup(o.erroresAparte ? errores : salida[1]));
    Resultado r;
    if (!o.salidaFichero) r.salida = LeerTodo(salida[0]);
    r.estado = EsperarA(pid);
    if (o.salidaFichero) r.salida = LeerTodo(salida[0]);
    if (o.erroresAparte) r.errores = LeerTodo(errores);
    return r;
}

Programa::~Programa() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(entrada_);
    close(salida_);
}

void Programa::Enviar(const std::string &bytes) { EscribirEn(entrada_, bytes); }

std::string Programa::Esperar(const std::string &texto, bool puedeAcabar) {
    const size_t fin = LeerHasta(salida_, &leido_, texto, puedeAcabar);
    const std::string hasta = leido_.substr(0, fin);
    leido_.erase(0, fin);
    return hasta;
}

int Programa::EsperarFin(std::string *resto) {
    LeerHasta(salida_, &leido_, "");
    if (resto) *resto = leido_;
    const int estado = EsperarA(pid_);
    pid_ = -1;
    return estado;
}

Sesion::Sesion(const Opciones &o) {
    int entrada[2], salida[2];
    Tuberia(entrada);
    Tuberia(salida);
    if (o.salidaEstrecha) fcntl(salida[1], F_SETPIPE_SZ, 4096);
    entrada_ = entrada[1];
    salida_ = salida[0];
    pid_ = Lanzar(o, entrada[0], salida[1], dup(salida[1]));
    Linea("prompt " + kEspecificacion);
}

std::string Sesion::Linea(const std::string &linea) {
    Enviar(linea + "\n");
    return EsperarPrompt();
}

std::string Sesion::EsperarPrompt() {
    const std::string texto = Esperar(kMarca);
    return texto.substr(0, texto.ends_with(kMarca) ? texto.size() - kMarca.size() : texto.size());
}

void Sesion::EsperarEscrituraParada(int bytes) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    const std::string estado = "/proc/" + std::to_string(pid_) + "/stat";
    int dentro = 0;
    while (dentro < bytes || LeerFichero(estado).find(") S ") == std::string::npos) {
        ASSERT_LT(Reloj::now(), plazo) << "the output did not fill its pipe";
        ioctl(salida_, FIONREAD, &dentro);
    }
}

Terminal::Terminal(int columnas) {
    const struct winsize ventana = {24, static_cast<unsigned short>(columnas), 0, 0};
    pid_ = forkpty(&salida_, nullptr, nullptr, &ventana);
    if (pid_ == 0) {
        struct termios t;
        tcgetattr(0, &t);
        t.c_oflag &= ~static_cast<tcflag_t>(ONLCR); // no carriage returns in what is read
        tcsetattr(0, TCSANOW, &t);
        Arrancar({});
    }
    entrada_ = dup(salida_);
}

void Terminal::Redimensionar(int columnas) {
    const struct winsize ventana = {24, static_cast<unsigned short>(columnas), 0, 0};
    ioctl(entrada_, TIOCSWINSZ, &ventana);
}

bool HayTerminales() {
    const int df = posix_openpt(O_RDWR | O_NOCTTY);
    if (df == -1) return false;
    close(df);
    return true;
}

DirectorioTemporal::DirectorioTemporal() {
    char nombre[] = "/tmp/escenarioXXXXXX";
    if (!mkdtemp(nombre)) abort();
    ruta_ = std::filesystem::canonical(nombre);
}

DirectorioTemporal::~DirectorioTemporal() {
    std::error_code fallo;
    std::filesystem::remove_all(ruta_, fallo);
}

void EscribirFichero(const std::string &ruta, const std::string &texto) {
    std::ofstream(ruta, std::ios::binary) << texto;
}

std::string LeerFichero(const std::string &ruta) {
    std::stringstream texto;
    texto << std::ifstream(ruta, std::ios::binary).rdbuf();
    return texto.str();
}

std::string Direccion(const std::string &texto, int n) {
    for (size_t pos = 0; (pos = texto.find("0x", pos)) != std::string::npos; pos += 2) {
        if (pos > 0 && isalnum(texto[pos - 1])) continue; // in the middle of a file's name
        const size_t fin = texto.find_first_not_of("0123456789abcdef", pos + 2);
        if (n-- == 0) return texto.substr(pos, fin == std::string::npos ? fin : fin - pos);
    }
    return "";
}

int ClaveUnica() {
    static int siguiente;
    return 0x5e000000 + (getpid() % 0x10000) * 64 + siguiente++ % 64;
}

} // namespace escenario
