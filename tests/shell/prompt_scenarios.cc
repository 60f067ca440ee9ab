// SPDX-License-Identifier: MIT

#include "tests/driver/session.h"

#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

using namespace escenario;

/// What `prompt spec` makes the prompt, read from the line of `prompt` alone.
std::string Generado(Sesion *s, const std::string &spec) {
    s->Enviar("prompt " + spec + "\nprompt\n");
    s->Esperar(spec + "  --->  ");
    const std::string texto = s->Esperar("\n");
    s->Enviar("prompt \x02%%>\n"); // back to the mark of the driver
    s->EsperarPrompt();
    return texto.substr(0, texto.size() - 1);
}

TEST(Prompt, EveryEscapeGivesItsPiece) {
    DirectorioTemporal d;
    mkdir((d / "real").c_str(), 0777);
    ASSERT_EQ(symlink("real", (d / "enlace").c_str()), 0);
    struct utsname u;
    uname(&u);
    const std::string nodo = u.nodename, maquina = nodo.substr(0, nodo.find('.'));
    Opciones o;
    o.directorio = d / "enlace";
    const std::string texto = "Linux@" + maquina + "{real} %) "; // the one of the start
    EXPECT_TRUE(
        Ejecutar("prompt\n", o).salida.ends_with(texto + "%o@%m{%B}%b%%)%b  --->  " + texto + "\n" + texto));
    Sesion s(o);
    EXPECT_EQ(Generado(&s, "%u%b%p>%t%%"),
              std::string(getpwuid(geteuid())->pw_name) + " " + std::to_string(s.pid()) + ">\t%");
    s.Linea("chdir /");
    EXPECT_EQ(Generado(&s, "%B"), "/");
    if (kSaneado) return; // the sanitizers' own realpath looks at a buffer of another size
    s.Linea("chdir " + o.directorio);
    EXPECT_EQ(Generado(&s, "%d"), d / "real");
    if (s.Linea("chdir " + std::string(getpwuid(geteuid())->pw_dir)).empty()) { // some users have no home
        EXPECT_EQ(Generado(&s, "%D").substr(0, 1), "~");
    }
}

TEST(Prompt, RefusesEscapesThatDoNotExistAndTextsThatDoNotFitAndIsCutWhenItGrows) {
    DirectorioTemporal d;
    const std::string hondo(200, 'h');
    mkdir((d / hondo).c_str(), 0777);
    Opciones o;
    o.directorio = d.ruta();
    Sesion s(o);
    std::string crece;
    for (int i = 0; i < 511; i++) crece += "%o"; // fits as typed, not as generated
    for (const std::string &spec : {std::string("abc%x"), std::string("abc%"), std::string("%U"), crece,
                                    std::string(1024, 'a'), std::string(4000, 'a')})
        EXPECT_EQ(s.Linea("prompt " + spec), "error al generar el prompt, se mantiene el antiguo\n") << spec;
    EXPECT_EQ(Generado(&s, std::string(1023, 'a')), std::string(1023, 'a'));
    s.Enviar("prompt " + std::string(950, 'a') + "%B\nchdir " + hondo + "\n");
    s.Esperar(std::string(950, 'a') + std::string(73, 'h'));
    s.Enviar("prompt \x02%%>\n");
    EXPECT_EQ(s.EsperarPrompt(), "");
}

TEST(Prompt, SurvivesALostDirectoryAndAnUnknownUser) {
    DirectorioTemporal d;
    mkdir((d / "se-va").c_str(), 0777);
    Opciones o;
    o.directorio = d / "se-va";
    Sesion s(o);
    rmdir(o.directorio.c_str());
    EXPECT_EQ(Generado(&s, "%B,%d,%D"), "UnknownDir,UnknownDir,UnknownDir");
    EXPECT_EQ(s.Linea("pwd"), "imposible obtener directorio actual: No such file or directory\n");
    o = {.antesDeExec = [] {
        const struct rlimit cuatro = {4, 4};
        setrlimit(RLIMIT_NOFILE, &cuatro);
    }};
    Sesion lleno(o); // without a descriptor left to read the user database the user stays
    const std::string usuario = Generado(&lleno, "%u");
    lleno.Linea("open /");
    EXPECT_NE(lleno.Linea("open /").find("Too many open files"), std::string::npos);
    EXPECT_EQ(Generado(&lleno, "%u"), usuario);
    if (geteuid() != 0) return; // only root starts programs as a user without an entry
    o.directorio = "/";
    o.uid = 54321;
    Sesion desconocido(o);
    EXPECT_EQ(Generado(&desconocido, "%u"), "UnknownUser");
}

} // namespace
