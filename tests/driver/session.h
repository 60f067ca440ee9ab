// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

#include <string>
#include <vector>

// Drives the real program: a whole script at once, line by line through a pipe, or on a pseudo-terminal.
// Nothing here sleeps; every wait is for text or for an end, and fails the test after kPlazo seconds.

namespace escenario {

constexpr int kPlazo = 60;
constexpr bool kSaneado = SHELL_SANITIZED; ///< the program carries the sanitizers

/// A directory of the test's own, removed with everything in it.
class DirectorioTemporal {
  public:
    DirectorioTemporal();
    DirectorioTemporal(const DirectorioTemporal &) = delete;
    ~DirectorioTemporal();
    const std::string &ruta() const { return ruta_; }
    std::string operator/(const std::string &nombre) const { return ruta_ + "/" + nombre; }

  private:
    std::string ruta_;
};

/// How the program is started, where its input comes from and where its output goes.
struct Opciones {
    std::vector<std::string> argumentos = {}; ///< after the program's name
    std::vector<std::string> entorno = {};    ///< NAME=value, added to or replaced in this process's
    std::string directorio = {}; ///< current directory; empty: a session's own, or this process's
    std::string preload = NO_SYSTEMD_SHIM;
    std::string programa = SHELL_PROGRAM;
    bool ficheros = false; ///< a script is a regular file, and so is its output; else both are pipes
    unsigned uid = 0;      ///< run as this user when not 0
    void (*antesDeExec)() = nullptr; ///< runs in the child just before the program starts
};

/// For `uid`: an ordinary user, unknown and with no other processes; 0, this one, unless root runs the tests.
unsigned Ordinario();

/// For `antesDeExec`: a pipe of one page for the output, so that long writes wait.
void EstrecharSalida();
/// For `antesDeExec`: the program may have N of a resource.
template<int recurso, rlim_t N> void Limitar() {
    const struct rlimit limite = {N, N};
    setrlimit(static_cast<__rlimit_resource>(recurso), &limite);
}

struct Resultado {
    std::string salida;
    int estado = -1; ///< as waitpid gives it
};

/// Runs the program with `guion` as its whole input, to its end.
Resultado Ejecutar(const std::string &guion, const Opciones &opciones = {});
/// What a script prints behind its first line, "prompt =", from the prompt on.
std::string Salida(const std::string &guion, const Opciones &opciones = {});

/// A program that runs while the test looks at it. It has to end with status 0 when its object goes and with
/// it its input, unless the test has waited for another end.
class Programa {
  public:
    Programa(const Programa &) = delete;
    ~Programa();

    /// Sends bytes as they are.
    void Enviar(const std::string &bytes);
    /// Reads until `texto` has been printed; returns everything up to and including it.
    std::string Esperar(const std::string &texto);
    /// Ends its input and waits for its end; returns the wait status. `resto`: what was still printed.
    int EsperarFin(std::string *resto = nullptr);
    /// Waits until the program sleeps with so many bytes unread that it can only be held up in a write.
    void EsperarEscrituraParada(int bytes);
    pid_t pid() const { return pid_; }

  protected:
    Programa() = default;
    pid_t pid_ = -1;
    int entrada_ = -1, salida_ = -1;

  private:
    std::string leido_;
};

/// A line and what it prints, word for word; or, behind '~', a pattern of fnmatch().
struct Paso {
    std::string linea, salida;
};

/// The prompt of a Sesion, as no program prints it.
inline const std::string kMarca = "\x02%>";

/// A program that receives a line at a time through a pipe.
class Sesion : public Programa {
  public:
    explicit Sesion(Opciones opciones = {});
    /// Sends a line; returns what was printed up to the next prompt.
    std::string Linea(const std::string &linea);
    /// Reads up to the next prompt.
    std::string EsperarPrompt();
    /// Sends every line and compares what it prints.
    void Seguir(const std::vector<Paso> &pasos);
    /// Sends a line; returns the first address that it prints.
    std::string Dir(const std::string &linea);
    /// What the system says of the region of the program that holds an address: permissions and name ("" when
    /// there is none, a blank at the end when it has no name).
    std::string Region(unsigned long dir) const;
    /// What stands in its own directory.
    std::string operator/(const std::string &nombre) const { return dir_ / nombre; }
    const std::string &ruta() const { return dir_.ruta(); }

  private:
    DirectorioTemporal dir_;
};

/// A program on a pseudo-terminal (one that adds no carriage returns), with the prompt "listo%>".
class Terminal : public Programa {
  public:
    explicit Terminal(int columnas = 80);
    ~Terminal(); ///< ends its input: the cursor stands at the start of a line
    void Redimensionar(int columnas);
};

/// Whether this machine gives out pseudo-terminals. Tests on terminals skip themselves where it does not.
bool HayTerminales();

void EscribirFichero(const std::string &ruta, const std::string &texto);
std::string LeerFichero(const std::string &ruta);

bool Contiene(const std::string &texto, const std::string &parte);
/// How often `parte` stands in a text.
int Veces(const std::string &texto, const std::string &parte);
/// Whether a text has the form of a pattern of fnmatch().
bool Casa(const std::string &texto, const std::string &patron);
/// The local time `t` in a form of strftime().
std::string Fecha(time_t t, const char *formato);
/// Whether a text holds such a form of a second from `desde` to now.
bool DeAhora(const std::string &texto, time_t desde, const char *formato);
bool MuertoPor(int estado, int senal);

/// The n-th hexadecimal address ("0x...") in a text; empty when there are fewer.
std::string Direccion(const std::string &texto, int n = 0);
/// An address as a number.
unsigned long Valor(const std::string &direccion);
/// The address `n` bytes behind another.
std::string Mas(const std::string &direccion, unsigned long n);

/// A System V key that no other test running now uses.
int ClaveUnica();

} // namespace escenario

#define SALTAR_SI(condicion, motivo)                                                                         \
    if (condicion) GTEST_SKIP() << motivo
/// For scenarios with wild addresses: the sanitizers would answer in the program's place.
#define SALTAR_SI_SANEADO() SALTAR_SI(escenario::kSaneado, "wild addresses: release build only")
#define SALTAR_SIN_TERMINALES() SALTAR_SI(!escenario::HayTerminales(), "no pseudo-terminals here")
#define SALTAR_SIN_PROC() SALTAR_SI(access("/proc/self/maps", R_OK) == -1, "no /proc here")
#define SALTAR_SIN_SER_ROOT() SALTAR_SI(escenario::Ordinario() == 0, "only root may")
