// SPDX-License-Identifier: MIT

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

/// How the program is started, where its input comes from and where its output goes.
struct Opciones {
    std::vector<std::string> argumentos = {}; ///< after the program's name
    std::vector<std::string> entorno = {};    ///< NAME=value, added to or replaced in this process's
    std::string directorio = {};              ///< current directory of the program; empty: this process's
    std::string preload = NO_SYSTEMD_SHIM;
    std::string programa = SHELL_PROGRAM;
    bool entradaFichero = false;     ///< the script is a regular file, not a pipe
    bool salidaFichero = false;      ///< the output goes to a regular file, not a pipe
    bool salidaEstrecha = false;     ///< a session's output is a pipe of one page, so that long writes wait
    bool erroresAparte = false;      ///< a script's standard error is kept apart, not merged in order
    unsigned uid = 0;                ///< run as this user when not 0
    void (*antesDeExec)() = nullptr; ///< runs in the child just before the program starts
};

struct Resultado {
    std::string salida;
    std::string errores; ///< when kept apart
    int estado = -1;     ///< as waitpid gives it
};

/// Runs the program with `guion` as its whole input, to its end.
Resultado Ejecutar(const std::string &guion, const Opciones &opciones = {});

/// A program that runs while the test looks at it; it is killed with its object.
class Programa {
  public:
    Programa(const Programa &) = delete;
    Programa &operator=(const Programa &) = delete;
    ~Programa();

    /// Sends bytes as they are.
    void Enviar(const std::string &bytes);
    /// Reads until `texto` has been printed; returns everything up to and including it. The test fails when
    /// the output ends before, unless it may.
    std::string Esperar(const std::string &texto, bool puedeAcabar = false);
    /// Waits for the program's end; returns the wait status. `resto`: what was still printed.
    int EsperarFin(std::string *resto = nullptr);
    pid_t pid() const { return pid_; }

  protected:
    Programa() = default;
    pid_t pid_ = -1;
    int entrada_ = -1, salida_ = -1;

  private:
    std::string leido_;
};

/// A program that receives a line at a time through a pipe. Its prompt is a mark of the driver's.
class Sesion : public Programa {
  public:
    explicit Sesion(const Opciones &opciones = {});
    /// Sends a line; returns what was printed up to the next prompt.
    std::string Linea(const std::string &linea);
    /// Reads up to the next prompt.
    std::string EsperarPrompt();
    /// Waits until the program sleeps with so many bytes in its narrow output pipe that it can only be held
    /// up in a write.
    void EsperarEscrituraParada(int bytes);
};

/// A program on a pseudo-terminal (one that adds no carriage returns).
class Terminal : public Programa {
  public:
    explicit Terminal(int columnas = 80);
    void Redimensionar(int columnas);
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
