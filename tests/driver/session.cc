// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <utility>

namespace escenario {

namespace {

namespace fs = std::filesystem;

// Makes kMarca the prompt; the line that does it, and stays in the historic, does not hold it.
const std::string kEspecificacion = "\x02%%>";

/// The time that a wait may take.
struct Plazo {
    std::chrono::steady_clock::time_point fin =
        std::chrono::steady_clock::now() + std::chrono::seconds(kPlazo);
    bool Pasado() const { return std::chrono::steady_clock::now() > fin; }
};

/// The options with a program that every user can reach: the build may stand in a folder of root's.
Opciones AlAlcance(Opciones o) {
    if (o.uid == 0) return o;
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
    for (int senal = 1; senal < 32; senal++) signal(senal, SIG_DFL);
    umask(022);
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
pid_t Lanzar(const Opciones &opciones, int entrada, int salida) {
    const Opciones o = AlAlcance(opciones);
    signal(SIGPIPE, SIG_IGN);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(entrada, 0);
        dup2(salida, 1);
        dup2(salida, 2);
        Arrancar(o);
    }
    close(entrada);
    close(salida);
    return pid;
}

void Tuberia(int extremos[2]) {
    if (pipe(extremos) == -1) abort();
}

/// Reads what there is. Returns whether there may come more.
bool Recoger(int df, std::string *leido, int espera) {
    struct pollfd p = {df, POLLIN, 0};
    char trozo[65536];
    for (ssize_t n; poll(&p, 1, espera) == 1; espera = 0) {
        if ((n = read(df, trozo, sizeof trozo)) <= 0) return false; // (a terminal left alone gives EIO)
        leido->append(trozo, static_cast<size_t>(n));
    }
    return true;
}

void Quejarse(const std::string &de, const std::string &leido) {
    constexpr size_t kMostrado = 4000;
    ADD_FAILURE() << de << "; printed so far:\n"
                  << leido.substr(leido.size() > kMostrado ? leido.size() - kMostrado : 0);
}

/// Reads until the program has ended (others may hold its output open); kills it when the time is over.
int LeerHastaElFin(pid_t pid, int df, std::string *leido) {
    const Plazo plazo;
    int estado = -1;
    for (bool acabado = false; !acabado;) {
        if (plazo.Pasado()) {
            Quejarse("the program did not end", *leido);
            kill(pid, SIGKILL);
        }
        acabado = waitpid(pid, &estado, plazo.Pasado() ? 0 : WNOHANG) == pid;
        if (!Recoger(df, leido, acabado ? 0 : 1)) poll(nullptr, 0, 1);
    }
    return estado;
}

} // namespace

Resultado Ejecutar(const std::string &guion, const Opciones &o) {
    const DirectorioTemporal dir;
    int entrada[2], salida[2];
    if (o.ficheros) {
        EscribirFichero(dir / "guion", guion);
        entrada[0] = open((dir / "guion").c_str(), O_RDWR);
        salida[1] = open((dir / "salida").c_str(), O_CREAT | O_RDWR | O_APPEND, 0600);
        salida[0] = open((dir / "salida").c_str(), O_RDONLY);
    } else {
        Tuberia(entrada);
        Tuberia(salida);
        fcntl(entrada[1], F_SETPIPE_SZ, std::max<int>(65536, static_cast<int>(guion.size())));
        if (write(entrada[1], guion.data(), guion.size()) == -1) abort();
        close(entrada[1]);
    }
    Resultado r;
    r.estado = LeerHastaElFin(Lanzar(o, entrada[0], salida[1]), salida[0], &r.salida);
    close(salida[0]);
    return r;
}

std::string Salida(const std::string &guion, const Opciones &o) {
    const std::string salida = Ejecutar("prompt =\n" + guion, o).salida;
    return salida.substr(salida.find('='));
}

Programa::~Programa() {
    EXPECT_EQ(pid_ > 0 ? EsperarFin() : 0, 0) << "the status of a session whose input ended";
    close(salida_);
}

void Programa::Enviar(const std::string &bytes) {
    if (write(entrada_, bytes.data(), bytes.size()) == -1) return; // what it has printed tells the test
}

std::string Programa::Esperar(const std::string &texto) {
    const Plazo plazo;
    size_t pos, mirado = 0;
    for (bool hay = true; (pos = leido_.find(texto, mirado)) == std::string::npos;) {
        if (!hay || plazo.Pasado()) {
            Quejarse((hay ? "waited in vain for \"" : "the output ended before \"") + texto + '"', leido_);
            return std::exchange(leido_, "");
        }
        mirado = leido_.size() > texto.size() ? leido_.size() - texto.size() : 0;
        hay = Recoger(salida_, &leido_, 100);
    }
    const std::string hasta = leido_.substr(0, pos + texto.size());
    leido_.erase(0, hasta.size());
    return hasta;
}

int Programa::EsperarFin(std::string *resto) {
    close(entrada_);
    const int estado = LeerHastaElFin(std::exchange(pid_, -1), salida_, &leido_);
    if (resto) *resto = leido_;
    return estado;
}

Sesion::Sesion(Opciones o) {
    int entrada[2], salida[2];
    Tuberia(entrada);
    Tuberia(salida);
    entrada_ = entrada[1];
    salida_ = salida[0];
    if (o.directorio.empty()) o.directorio = dir_.ruta();
    pid_ = Lanzar(o, entrada[0], salida[1]);
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

void Sesion::Seguir(const std::vector<Paso> &pasos) {
    for (const auto &[linea, salida] : pasos) {
        const std::string dada = Linea(linea);
        if (salida.starts_with("~"))
            EXPECT_TRUE(Casa(dada, salida.substr(1))) << linea << "\nprints " << dada << "\nnot " << salida;
        else
            EXPECT_EQ(dada, salida) << linea;
    }
}

std::string Sesion::Dir(const std::string &linea) { return Direccion(Linea(linea)); }

std::string Sesion::Region(unsigned long dir) const {
    std::istringstream mapa(LeerFichero("/proc/" + std::to_string(pid_) + "/maps"));
    for (std::string linea; std::getline(mapa, linea);) {
        unsigned long desde, hasta;
        char permisos[8], nombre[512] = "";
        if (sscanf(linea.c_str(), "%lx-%lx %4s %*s %*s %*s %511s", &desde, &hasta, permisos, nombre) >= 3 &&
            desde <= dir && dir < hasta)
            return std::string(permisos) + " " + nombre;
    }
    return "";
}

void Programa::EsperarEscrituraParada(int bytes) {
    const Plazo plazo;
    const std::string estado = "/proc/" + std::to_string(pid_) + "/stat";
    for (int dentro = 0; dentro < bytes || !Contiene(LeerFichero(estado), ") S ");) {
        ASSERT_FALSE(plazo.Pasado()) << "the output did not fill its pipe";
        ioctl(salida_, FIONREAD, &dentro);
    }
}

Terminal::Terminal(int columnas) {
    pid_ = forkpty(&salida_, nullptr, nullptr, nullptr);
    if (pid_ == 0) {
        struct termios t;
        tcgetattr(0, &t);
        t.c_oflag &= ~static_cast<tcflag_t>(ONLCR); // no carriage returns in what is read
        tcsetattr(0, TCSANOW, &t);
        Arrancar({});
    }
    entrada_ = dup(salida_);
    Redimensionar(columnas);
    Enviar("prompt listo%%>\n"); // the echo of the line does not hold the prompt itself
    Esperar("listo%>");
}

Terminal::~Terminal() {
    if (pid_ > 0) Enviar("\x04");
}

void Terminal::Redimensionar(int columnas) {
    const struct winsize ventana = {24, static_cast<unsigned short>(columnas), 0, 0};
    ioctl(entrada_, TIOCSWINSZ, &ventana);
}

bool HayTerminales() {
    const int df = posix_openpt(O_RDWR | O_NOCTTY);
    close(df);
    return df != -1;
}

void EstrecharSalida() { fcntl(1, F_SETPIPE_SZ, 4096); }

unsigned Ordinario() {
    static const unsigned uid = 20000 + std::random_device()() % 40000;
    return getuid() == 0 ? uid : 0;
}

DirectorioTemporal::DirectorioTemporal() {
    char nombre[] = "/tmp/escenarioXXXXXX";
    ruta_ = fs::canonical(mkdtemp(nombre));
    fs::permissions(ruta_, fs::perms(0777)); // for every user that a test plays
}

DirectorioTemporal::~DirectorioTemporal() {
    std::error_code fallo;
    fs::remove_all(ruta_, fallo);
}

void EscribirFichero(const std::string &ruta, const std::string &texto) {
    std::ofstream(ruta, std::ios::binary) << texto;
}

std::string LeerFichero(const std::string &ruta) {
    std::stringstream texto;
    texto << std::ifstream(ruta, std::ios::binary).rdbuf();
    return texto.str();
}

bool Contiene(const std::string &texto, const std::string &parte) {
    return texto.find(parte) != std::string::npos;
}

int Veces(const std::string &texto, const std::string &parte) {
    int n = 0;
    for (size_t pos = 0; (pos = texto.find(parte, pos)) != std::string::npos; pos++) n++;
    return n;
}

bool Casa(const std::string &texto, const std::string &patron) {
    return fnmatch(patron.c_str(), texto.c_str(), 0) == 0;
}

std::string Fecha(time_t t, const char *formato) {
    char texto[128];
    struct tm tm;
    return {texto, strftime(texto, sizeof texto, formato, localtime_r(&t, &tm))};
}

bool DeAhora(const std::string &texto, time_t desde, const char *formato) {
    for (; desde <= time(nullptr); desde++)
        if (Contiene(texto, Fecha(desde, formato))) return true;
    return false;
}

bool MuertoPor(int estado, int senal) { return WIFSIGNALED(estado) && WTERMSIG(estado) == senal; }

std::string Direccion(const std::string &texto, int n) {
    for (size_t pos = 0; (pos = texto.find("0x", pos)) != std::string::npos; pos += 2) {
        if (pos > 0 && isalnum(texto[pos - 1])) continue; // in the middle of a file's name
        const size_t fin = texto.find_first_not_of("0123456789abcdef", pos + 2);
        if (n-- == 0) return texto.substr(pos, fin == std::string::npos ? fin : fin - pos);
    }
    return "";
}

unsigned long Valor(const std::string &direccion) { return strtoul(direccion.c_str(), nullptr, 16); }

std::string Mas(const std::string &direccion, unsigned long n) {
    std::stringstream texto;
    texto << "0x" << std::hex << Valor(direccion) + n;
    return texto.str();
}

int ClaveUnica() {
    static int siguiente;
    return 0x5e000000 + (getpid() % 0x10000) * 64 + siguiente++ % 64;
}

} // namespace escenario
