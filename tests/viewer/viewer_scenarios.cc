// SPDX-License-Identifier: MIT

#include <poll.h>
#include <signal.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/viewer/screen.h"
#include "viewer/snapshot.h"

// The viewer beside a real shell: each line typed there shows here.

using namespace escenario;

namespace {

Resultado Once(pid_t pid, std::vector<std::string> arguments, unsigned uid = 0) {
    arguments.push_back(std::to_string(pid));
    Opciones options = {.argumentos = arguments, .entorno = {"LC_ALL=C.UTF-8"}};
    options.programa = VIEWER_PROGRAM;
    options.uid = uid;
    return Ejecutar("", options);
}

bool Has(const std::string &text, const std::string &part) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " is not in\n" << text;
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(ViewerScreen, ShowsEachChangeOfTheShell) {
    SALTAR_SIN_TERMINALES();
    const DirectorioTemporal folder;
    Sesion shell({.directorio = folder.ruta()});
    shell.Linea("open notas.txt cr rw");
    shell.Linea("writestr 3 hola");
    Screen screen(shell.pid());
    screen.Await("^    3   /.*/notas.txt +4  O_RDWR$");
    shell.Linea("dup 3");
    screen.Await("^    3─┐ /.*/notas.txt +4  O_RDWR$");
    screen.Await("^\\+   4─┘ /.*/notas.txt +4  O_RDWR$");
    screen.Await("1 Descriptores ● ");
    shell.Linea("lseek 3 2");
    screen.Await("^\\*   3─┐ /.*/notas.txt +2  O_RDWR$");
    screen.Await("^\\*   4─┘ /.*/notas.txt +2  O_RDWR$"); // nobody moved this one
    EXPECT_TRUE(screen.Reversed("2  O_RDWR"));
    EXPECT_FALSE(screen.Reversed("O_RDWR"));
    shell.Linea("sigmask USR1");
    screen.Await("^\\+ 10 USR1 +● +- +- +- +-$");
    kill(shell.pid(), SIGUSR1);
    screen.Await("^\\* 10 USR1 +● +- +- +- +●$");
    shell.Linea("search -path");
    shell.Linea("back sleep 60");
    screen.Await("^\\+└─\\d+ +dormido +\\d+ +\\d+ +\\d+  sleep 60$");
    shell.Linea("pipe sleep 61 % sleep 62 &");
    screen.Await("─┐ dormido .*  sleep 61  \\(1 escribe \\[\\d+\\]\\)$");
    screen.Await("─┘ dormido .*  sleep 62  \\(0 lee \\[\\d+\\]\\)$");
    if (kSaneado) return;          // its allocator keeps maps of its own
    shell.Linea("malloc 1000000"); // the system may join its map to a neighbour
    screen.Await("^[+*]0x[0-9a-f]+ .* ((980|99\\d)K|1,0M) rw-p .*anónima$");
}

TEST(ViewerScreen, FitsEveryTerminal) {
    SALTAR_SIN_TERMINALES();
    Sesion shell;
    Screen screen(shell.pid(), {"LC_ALL=C", "TERM=vt100"}, 40);
    screen.Await("^- 4 Procesos -+");
    screen.Await("^    1-\\\\ pipe:");
    for (const std::string &line : screen.Lines())
        for (const char c : line) EXPECT_TRUE(c >= ' ' && c < 0x7F) << line;
    screen.Resize(250, 50);
    screen.Await("- 1 Descriptores -+ +- 2 Espacio de direcciones -+");
    screen.Await("num .*inodo +modo");
    screen.Resize(40, 3);
    screen.Await("^- 1 Descriptores -+");
    screen.Resize(80, 24);
    screen.Enviar("2");
    screen.Await("^- 2 Espacio de direcciones .* 1-\\d+ de \\d+$");
    screen.Enviar("\x1bOB"); // downwards
    screen.Await("^- 2 Espacio de direcciones .* 2-\\d+ de \\d+$");
    screen.Enviar("?");
    screen.Await("Un corchete une los descriptores");
    screen.Enviar("0 ");
    screen.Await("^ CONGELADO ");
    shell.Linea("open /etc/passwd");
    screen.Enviar(" ");
    screen.Await("^\\+   3   /etc/passwd");
    const std::string file = "mirador-" + std::to_string(shell.pid()) + "-1.txt";
    screen.Enviar("d");
    screen.Await("Estado escrito en " + file);
    Has(LeerFichero(file), "\n+   3   /etc/passwd ");
    EXPECT_EQ(unlink(file.c_str()), 0);
}

TEST(ViewerScreen, LooksInVainAtAShellThatSleeps) {
    Sesion shell;
    shell.Linea("search -path");
    shell.Linea("back sleep 60");
    mirador::Request request;
    request.root = request.pid = shell.pid();
    mirador::ChangeDetector detector;
    const auto processes = [&] { return mirador::TakeSnapshot(request).processes; };
    const auto happened = [&] { return detector.SomethingHappened(request, processes()); };
    const auto settle = [&] { // nothing for ten looks
        for (int i = 0, quiet = 0; i < 5000 && quiet < 10; i++) {
            quiet = happened() ? 0 : quiet + 1;
            poll(nullptr, 0, 1);
        }
    };
    settle();
    EXPECT_FALSE(happened());
    shell.Linea("lseek 0 0"); // fails, and yet the shell has run
    EXPECT_TRUE(happened());
    settle();
    kill(processes()[1].stat.pid, SIGTERM); // the shell does not run for that
    for (int i = 0; i < 5000 && processes()[1].stat.state != 'Z'; i++) poll(nullptr, 0, 1);
    EXPECT_TRUE(happened());
    settle();
    EXPECT_FALSE(happened());
}

TEST(ViewerScreen, KeepsToTheShellThroughForkExecAndEnd) {
    SALTAR_SIN_TERMINALES();
    const DirectorioTemporal folder;
    Sesion shell({.directorio = folder.ruta()});
    Screen screen(shell.pid(), {"PWD=" + folder.ruta()});
    shell.Linea("search -path");
    screen.Await("1 Descriptores");
    shell.Linea("fork");
    screen.Await("fork: se sigue al hijo \\d+");
    shell.Linea("open /etc/passwd");
    screen.Await("^\\+   3   /etc/passwd");
    screen.Enviar("\t");
    screen.Await("Se mira el shell " + std::to_string(shell.pid()));
    screen.Enviar("\t");
    screen.Await("^    3   /etc/passwd");
    shell.Enviar("exit\n");
    screen.Await("ha terminado; se vuelve a " + std::to_string(shell.pid()));
    shell.Enviar("execute sleep 60\n");
    screen.Await("ejecuta ahora otro programa: .*/");
    kill(shell.pid(), SIGKILL);
    screen.Await("^ TERMINADO Proceso " + std::to_string(shell.pid()));
    screen.Await("ha terminado; éste fue su último estado");
    EXPECT_EQ(shell.EsperarFin(), SIGKILL);
}

TEST(ViewerOnce, WritesTextDataAndPicture) {
    const DirectorioTemporal folder;
    const int key = ClaveUnica();
    Sesion shell({.directorio = folder.ruta()});
    EscribirFichero(folder / "a&c.txt", "doce letras.");
    const std::string address = Direccion(shell.Linea("createshared " + std::to_string(key) + " 20000"));
    shell.Linea("memfs-format " + address);
    shell.Linea("memfs-cp a&c.txt " + address + ":x");
    shell.Linea("open . ro");
    shell.Linea("dup 3");
    shell.Linea("open a&c.txt");
    const std::string text = Once(shell.pid(), {"--una-vez", "--ancho", "200"}).salida;
    Has(text, "    4─┘ " + folder.ruta() + " ");
    Has(text, "clave " + std::to_string(key) + " id ");
    Has(text, "unido 1 vez\n    SF encontrado por su marca en " + address + ": 20000 bytes, ");
    Has(Once(shell.pid(), {"--una-vez", "--paneles", "3"}).salida, "SigBlk 0000000000000000");
    const std::string data = Once(shell.pid(), {"--json"}).salida;
    Has(data, "\"modo\": [\"O_RDONLY\"], \"modo_octal\": ");
    Has(data, "\"fichero_abierto\": 3, ");
    Has(data, "\"direccion\": \"" + address + "\", \"tamano\": 20000, \"capacidad\": 6, ");
    EXPECT_EQ(WEXITSTATUS(Once(shell.pid(), {"--svg", folder / "p.svg"}).estado), 0);
    const std::string picture = LeerFichero(folder / "p.svg");
    Has(picture, ">SF en " + address + ", encontrado por su marca</text>");
    Has(picture, "/a&amp;c.txt  inodo ");
    Has(picture, "</svg>");
    EXPECT_EQ(Once(shell.pid(), {"--svg", folder / "no/p.svg"}).estado, 1 << 8);
    shell.Linea("delkey " + std::to_string(key));
}

TEST(ViewerLauncher, ListsTheShellsWhenThereAreSeveral) {
    Sesion one, other;
    one.Linea("fork"); // a shell too, but not one to choose
    const auto run = [](std::vector<std::string> arguments) {
        Opciones options = {.argumentos = std::move(arguments)};
        options.programa = LAUNCHER_SCRIPT;
        return Ejecutar("", options);
    };
    const Resultado list = run({});
    EXPECT_EQ(WEXITSTATUS(list.estado), 1);
    Has(list.salida, "Hay varios shells en marcha: shell-docente --mirar PID\n");
    for (const pid_t pid : {one.pid(), other.pid()}) Has(list.salida, " " + std::to_string(pid) + "  pipe:[");
    const std::string pid = one.Linea("pid"), number = pid.substr(pid.find_first_of("0123456789"));
    EXPECT_EQ(list.salida.find(" " + number.substr(0, number.find_first_not_of("0123456789")) + "  "),
              std::string::npos);
    one.Linea("exit");
    EXPECT_EQ(run({"x1"}).salida, "shell-docente: no es un PID: x1\n");
    EXPECT_EQ(run({"4194303"}).salida, "shell-docente: no hay ningún proceso 4194303\n");
}

TEST(ViewerOnce, SaysWhatItMayNotRead) {
    // Never an empty table: a process without some capabilities may list these and read none.
    const std::string first = Once(1, {"--una-vez", "--paneles", "1"}).salida;
    EXPECT_FALSE(first.empty() || first.ends_with("modo\n")) << first;
    Sesion shell;
    const std::string text = Once(shell.pid(), {"--una-vez"}, 65534).salida;
    Has(text, "El núcleo no deja ver los descriptores: Permission denied\n");
    Has(text, "El núcleo no deja ver las zonas: Permission denied\n");
    Has(text, " SigBlk 0000000000000000\n"); // anybody may
    const Resultado none = Once(0x3FFFFF, {"--json"});
    EXPECT_EQ(none.estado, 1 << 8);
    EXPECT_EQ(none.salida, "mirador: no hay ningún proceso vivo 4194303\n");
}
