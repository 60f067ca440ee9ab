#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <string>
#include <vector>

// Drives the real program: a whole script at once, line by line through a pipe, or on a pseudo-terminal.
// Nothing here sleeps; every wait is for text or for an end, and fails the test after kPlazo seconds.

namespace escenario {

constexpr int kPlazo = 20;
constexpr bool kSaneado = SHELL_SANITIZED; ///< the program carries the sanitizers

/// Where the program's input comes from and where its output goes.
struct Opciones {
    std::vector<std::string> argumentos = {}; ///< after the program's name
    std::vector<std::string> entorno = {};    ///< NAME=value, added to or replaced in this process's
    std::string directorio = {};              ///< current directory of the program; empty: this process's
    std::string preload = NO_SYSTEMD_SHIM;
    std::string programa = SHELL_PROGRAM;
    bool entradaFichero = false;     ///< the script is a regular file, not a pipe
    bool salidaFichero = false;      ///< the output goes to a regular file, not a pipe
    bool salidaEstrecha = false;     ///< the output is a pipe of one page, so that long writes have to wait
    bool erroresAparte = false;      ///< standard error is kept apart, not merged in order
    unsigned uid = 0;                ///< run as this user when not 0
    long maxProcesos = -1;           ///< limit on the user's processes (RLIMIT_NPROC) when not -1
    void (*antesDeExec)() = nullptr; ///< runs in the child just before the program starts
};

struct Resultado {
    std::string salida;
    std::string errores; ///< when kept apart
    int estado = -1;     ///< as waitpid gives it
};

/// Runs the program with `guion` as its whole input, to its end.
Resultado Ejecutar(const std::string &guion, const Opciones &opciones = {});

/// A running program that receives a line at a time through a pipe. Its prompt is a mark of the driver's.
class Sesion {
  public:
    explicit Sesion(const Opciones &opciones = {});
    Sesion(const Sesion &) = delete;
    Sesion &operator=(const Sesion &) = delete;
    ~Sesion();

    /// Sends a line; returns what was printed up to the next prompt.
    std::string Linea(const std::string &linea);
    /// Sends bytes as they are.
    void Enviar(const std::string &bytes);
    /// Reads until `texto` has been printed; returns everything up to and including it. The test fails when
    /// the output ends before, unless it may.
    std::string Esperar(const std::string &texto, bool puedeAcabar = false);
    /// Reads up to the next prompt.
    std::string EsperarPrompt();
    /// Waits until the output pipe is full: the program is held up in a write.
    void EsperarTuberiaLlena();
    /// What has arrived on standard error (kept apart) since the last call.
    std::string Errores();
    /// Closes the input and waits for the end; returns the wait status. `resto`: what was still printed.
    int Terminar(std::string *resto = nullptr);
    /// Waits for the end without closing the input.
    int EsperarFin(std::string *resto = nullptr);
    pid_t pid() const { return pid_; }
    const std::string &inicio() const { return inicio_; } ///< printed before the first line

  private:
    pid_t pid_ = -1;
    int entrada_ = -1, salida_ = -1, errores_ = -1;
    std::string leido_, inicio_;
};

/// A running program on a pseudo-terminal.
class Terminal {
  public:
    explicit Terminal(int columnas = 80, const Opciones &opciones = {});
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal();

    void Enviar(const std::string &teclas);
    void Redimensionar(int columnas);
    /// Reads until `texto` has been printed; returns everything up to and including it (without carriage
    /// returns).
    std::string Esperar(const std::string &texto);
    /// Waits for the program's end; returns the wait status. `resto`: what was still printed.
    int EsperarFin(std::string *resto = nullptr);
    pid_t pid() const { return pid_; }

  private:
    pid_t pid_ = -1;
    int maestro_ = -1;
    std::string leido_;
};

/// Whether this machine gives out pseudo-terminals. Tests on terminals skip themselves where it does not.
bool HayTerminales();

/// A directory of the test's own, removed with everything in it.
class DirectorioTemporal {
  public:
    DirectorioTemporal();
    DirectorioTemporal(const DirectorioTemporal &) = delete;
    DirectorioTemporal &operator=(const DirectorioTemporal &) = delete;
    ~DirectorioTemporal();
    const std::string &ruta() const { return ruta_; }
    std::string operator/(const std::string &nombre) const { return ruta_ + "/" + nombre; }

  private:
    std::string ruta_;
};

void EscribirFichero(const std::string &ruta, const std::string &texto);
std::string LeerFichero(const std::string &ruta);

/// The n-th hexadecimal address ("0x...") in a text; empty when there are fewer.
std::string Direccion(const std::string &texto, int n = 0);

/// A System V key that no other test running now uses.
int ClaveUnica();

} // namespace escenario

/// For scenarios with wild addresses: the sanitizers would answer in the program's place.
#define SALTAR_SI_SANEADO()                                                                                  \
    if (escenario::kSaneado) GTEST_SKIP() << "wild addresses: release build only"
#define SALTAR_SIN_TERMINALES()                                                                              \
    if (!escenario::HayTerminales()) GTEST_SKIP() << "no pseudo-terminals here"
