#include "tests/driver/session.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

extern char **environ;

namespace escenario {

namespace {

// The prompt of a Sesion; the line that sets it (and stays in the historic) does not hold it.
constexpr char kMarca[] = "\x02%>";
constexpr char kEspecificacion[] = "\x02%%>";

using Reloj = std::chrono::steady_clock;

int MilisegundosHasta(Reloj::time_point fin) {
    const auto queda = std::chrono::duration_cast<std::chrono::milliseconds>(fin - Reloj::now()).count();
    return queda > 0 ? static_cast<int>(queda) : 0;
}

std::vector<std::string> Entorno(const Opciones &o) {
    std::vector<std::string> entorno;
    std::vector<std::string> propias = o.entorno;
    if (!o.preload.empty()) propias.push_back("LD_PRELOAD=" + o.preload);
    if (kSaneado)
        propias.push_back(
            "ASAN_OPTIONS=handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:"
            "handle_abort=0:use_sigaltstack=0:allocator_may_return_null=1:verify_asan_link_order=0");
    for (char **e = environ; *e; e++) {
        const std::string nombre = std::string(*e).substr(0, strcspn(*e, "=") + 1);
        bool sustituida = false;
        for (const std::string &p : propias) sustituida |= p.compare(0, nombre.size(), nombre) == 0;
        if (!sustituida) entorno.push_back(*e);
    }
    entorno.insert(entorno.end(), propias.begin(), propias.end());
    return entorno;
}

/// The options with a program that every user can reach: the build may stand in a folder of root's.
Opciones AlAlcance(Opciones o) {
    if (o.uid == 0) return o;
    namespace fs = std::filesystem;
    static const DirectorioTemporal copias;
    fs::permissions(copias.ruta(), fs::perms(0755));
    for (std::string *fichero : {&o.programa, &o.preload}) {
        if (fichero->empty()) continue;
        const std::string copia = copias / fs::path(*fichero).filename();
        fs::copy_file(*fichero, copia, fs::copy_options::skip_existing);
        *fichero = copia;
    }
    return o;
}

/// In the child: becomes the program.
[[noreturn]] void Arrancar(const Opciones &o) {
    std::vector<std::string> entorno = Entorno(o);
    std::vector<char *> argv{const_cast<char *>(o.programa.c_str())}, envp;
    for (const std::string &a : o.argumentos) argv.push_back(const_cast<char *>(a.c_str()));
    argv.push_back(nullptr);
    for (const std::string &e : entorno) envp.push_back(const_cast<char *>(e.c_str()));
    envp.push_back(nullptr);
    if (!o.directorio.empty() && chdir(o.directorio.c_str()) == -1) _exit(126);
    for (int df = 3; df < 256; df++) close(df);
    if (o.maxProcesos != -1) {
        const struct rlimit limite = {static_cast<rlim_t>(o.maxProcesos), static_cast<rlim_t>(o.maxProcesos)};
        setrlimit(RLIMIT_NPROC, &limite);
    }
    if (o.uid != 0 && setuid(o.uid) == -1) _exit(126);
    if (o.antesDeExec) o.antesDeExec();
    execve(o.programa.c_str(), argv.data(), envp.data());
    _exit(127);
}

void Tuberia(int extremos[2]) {
    if (pipe2(extremos, O_CLOEXEC) == -1) abort();
}

int FicheroAnonimo() {
    char nombre[] = "/tmp/escenarioXXXXXX";
    const int df = mkostemp(nombre, O_CLOEXEC);
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

/// Waits for the end of the program; kills it when the time is over.
int EsperarA(pid_t pid, Reloj::time_point plazo) {
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

/// Reads from df into `leido` (less the carriage returns that a terminal adds) until it holds `texto` from
/// `desde` on (empty: until the end of the output). Returns where the text ends, or npos.
size_t LeerHasta(int df, std::string *leido, const std::string &texto, bool terminal = false,
                 bool puedeAcabar = false) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    size_t mirado = 0;
    for (;;) {
        if (!texto.empty()) {
            const size_t pos = leido->find(texto, mirado);
            if (pos != std::string::npos) return pos + texto.size();
            mirado = leido->size() > texto.size() ? leido->size() - texto.size() : 0;
        }
        struct pollfd p = {df, POLLIN, 0};
        if (poll(&p, 1, MilisegundosHasta(plazo)) == 0) {
            ADD_FAILURE() << "waited in vain for \"" << texto << "\"; printed so far:\n" << *leido;
            return std::string::npos;
        }
        char trozo[65536];
        const ssize_t n = read(df, trozo, sizeof trozo);
        if (n <= 0) { // end (a terminal whose program has gone gives EIO)
            if (!texto.empty() && !puedeAcabar)
                ADD_FAILURE() << "the output ended before \"" << texto << "\"; printed so far:\n" << *leido;
            return std::string::npos;
        }
        leido->append(trozo, static_cast<size_t>(n));
        if (terminal) std::erase(*leido, '\r');
    }
}

struct IgnorarSigpipe {
    IgnorarSigpipe() { signal(SIGPIPE, SIG_IGN); }
} ignorarSigpipe;

} // namespace

Resultado Ejecutar(const std::string &guion, const Opciones &opciones) {
    const Opciones o = AlAlcance(opciones);
    int entrada[2] = {-1, -1}, salida[2], errores[2] = {-1, -1};
    int ficheroSalida = -1;
    if (o.entradaFichero) {
        entrada[0] = FicheroAnonimo();
        EscribirEn(entrada[0], guion);
        lseek(entrada[0], 0, SEEK_SET);
    } else {
        Tuberia(entrada);
    }
    if (o.salidaFichero) {
        ficheroSalida = FicheroAnonimo();
        salida[0] = -1;
        salida[1] = ficheroSalida;
        fcntl(ficheroSalida, F_SETFL, O_APPEND);
    } else {
        Tuberia(salida);
    }
    if (o.erroresAparte) Tuberia(errores);
    const pid_t pid = fork();
    if (pid == 0) {
        signal(SIGPIPE, SIG_DFL);
        dup2(entrada[0], 0);
        dup2(salida[1], 1);
        dup2(o.erroresAparte ? errores[1] : salida[1], 2);
        Arrancar(o);
    }
    close(entrada[0]);
    if (!o.salidaFichero) close(salida[1]);
    if (o.erroresAparte) close(errores[1]);
    Resultado r;
    // The three ends are served together: a script may be longer than what a pipe holds.
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    size_t enviado = 0;
    if (entrada[1] != -1) fcntl(entrada[1], F_SETFL, O_NONBLOCK);
    while (entrada[1] != -1 || salida[0] != -1 || errores[0] != -1) {
        if (entrada[1] != -1 && enviado == guion.size()) {
            close(entrada[1]);
            entrada[1] = -1;
            continue;
        }
        struct pollfd p[3] = {{entrada[1], POLLOUT, 0}, {salida[0], POLLIN, 0}, {errores[0], POLLIN, 0}};
        if (poll(p, 3, MilisegundosHasta(plazo)) == 0) {
            ADD_FAILURE() << "the program did not end; printed so far:\n" << r.salida;
            kill(pid, SIGKILL);
            break;
        }
        if (p[0].revents != 0) {
            const ssize_t n = write(entrada[1], guion.data() + enviado, guion.size() - enviado);
            if (n > 0)
                enviado += static_cast<size_t>(n);
            else if (errno != EAGAIN)
                enviado = guion.size();
        }
        const auto recoger = [](const struct pollfd &de, int *df, std::string *en) {
            if (de.revents == 0) return;
            char trozo[65536];
            const ssize_t n = read(*df, trozo, sizeof trozo);
            if (n > 0) {
                en->append(trozo, static_cast<size_t>(n));
            } else {
                close(*df);
                *df = -1;
            }
        };
        recoger(p[1], &salida[0], &r.salida);
        recoger(p[2], &errores[0], &r.errores);
    }
    if (entrada[1] != -1) close(entrada[1]);
    for (int df : {salida[0], errores[0]})
        if (df != -1) close(df);
    r.estado = EsperarA(pid, plazo);
    if (o.salidaFichero) {
        lseek(ficheroSalida, 0, SEEK_SET);
        char trozo[65536];
        ssize_t n;
        while ((n = read(ficheroSalida, trozo, sizeof trozo)) > 0)
            r.salida.append(trozo, static_cast<size_t>(n));
        close(ficheroSalida);
    }
    return r;
}

Sesion::Sesion(const Opciones &opciones) {
    const Opciones o = AlAlcance(opciones);
    int entrada[2], salida[2], errores[2] = {-1, -1};
    Tuberia(entrada);
    Tuberia(salida);
    if (o.erroresAparte) Tuberia(errores);
    pid_ = fork();
    if (pid_ == 0) {
        signal(SIGPIPE, SIG_DFL);
        dup2(entrada[0], 0);
        dup2(salida[1], 1);
        dup2(o.erroresAparte ? errores[1] : salida[1], 2);
        Arrancar(o);
    }
    close(entrada[0]);
    close(salida[1]);
    if (errores[1] != -1) close(errores[1]);
    entrada_ = entrada[1];
    salida_ = salida[0];
    errores_ = errores[0];
    inicio_ = Linea(std::string("prompt ") + kEspecificacion);
}

Sesion::~Sesion() {
    if (entrada_ != -1) close(entrada_);
    if (pid_ != -1) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    for (int df : {salida_, errores_})
        if (df != -1) close(df);
}

void Sesion::Enviar(const std::string &bytes) { EscribirEn(entrada_, bytes); }

std::string Sesion::Linea(const std::string &linea) {
    Enviar(linea + "\n");
    return EsperarPrompt();
}

std::string Sesion::EsperarPrompt() {
    std::string texto = Esperar(kMarca);
    const size_t marca = sizeof kMarca - 1;
    if (texto.size() >= marca && texto.compare(texto.size() - marca, marca, kMarca) == 0)
        texto.resize(texto.size() - marca);
    return texto;
}

std::string Sesion::Esperar(const std::string &texto, bool puedeAcabar) {
    const size_t fin = LeerHasta(salida_, &leido_, texto, false, puedeAcabar);
    std::string hasta = leido_.substr(0, fin);
    leido_.erase(0, fin == std::string::npos ? leido_.size() : fin);
    return hasta;
}

std::string Sesion::Errores() {
    std::string texto;
    struct pollfd p = {errores_, POLLIN, 0};
    while (poll(&p, 1, 0) == 1) {
        char trozo[65536];
        const ssize_t n = read(errores_, trozo, sizeof trozo);
        if (n <= 0) break;
        texto.append(trozo, static_cast<size_t>(n));
    }
    return texto;
}

int Sesion::Terminar(std::string *resto) {
    close(entrada_);
    entrada_ = -1;
    return EsperarFin(resto);
}

int Sesion::EsperarFin(std::string *resto) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    LeerHasta(salida_, &leido_, "");
    const int estado = EsperarA(pid_, plazo);
    pid_ = -1;
    if (resto) *resto = leido_;
    leido_.clear();
    return estado;
}

Terminal::Terminal(int columnas, const Opciones &opciones) {
    const Opciones o = AlAlcance(opciones);
    struct winsize ventana = {24, static_cast<unsigned short>(columnas), 0, 0};
    pid_ = forkpty(&maestro_, nullptr, nullptr, &ventana);
    if (pid_ == 0) {
        signal(SIGPIPE, SIG_DFL);
        Arrancar(o);
    }
}

Terminal::~Terminal() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    if (maestro_ != -1) close(maestro_);
}

void Terminal::Enviar(const std::string &teclas) { EscribirEn(maestro_, teclas); }

void Terminal::Redimensionar(int columnas) {
    struct winsize ventana = {24, static_cast<unsigned short>(columnas), 0, 0};
    ioctl(maestro_, TIOCSWINSZ, &ventana);
}

std::string Terminal::Esperar(const std::string &texto) {
    const size_t fin = LeerHasta(maestro_, &leido_, texto, true);
    std::string hasta = leido_.substr(0, fin);
    leido_.erase(0, fin == std::string::npos ? leido_.size() : fin);
    return hasta;
}

int Terminal::EsperarFin(std::string *resto) {
    const auto plazo = Reloj::now() + std::chrono::seconds(kPlazo);
    LeerHasta(maestro_, &leido_, "", true);
    const int estado = EsperarA(pid_, plazo);
    pid_ = -1;
    if (resto) *resto = leido_;
    leido_.clear();
    return estado;
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
    size_t pos = 0;
    for (;;) {
        pos = texto.find("0x", pos);
        if (pos == std::string::npos) return "";
        const size_t fin = texto.find_first_not_of("0123456789abcdef", pos + 2);
        if (n-- == 0) return texto.substr(pos, fin == std::string::npos ? fin : fin - pos);
        pos += 2;
    }
}

int ClaveUnica() {
    static int siguiente;
    return 0x5e000000 + (getpid() % 0x10000) * 64 + siguiente++ % 64;
}

} // namespace escenario
