// SPDX-License-Identifier: MIT

#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>

#include "tests/driver/session.h"

namespace {

using namespace escenario;

/// What `prompt spec` makes the prompt, read from the line of `prompt` alone.
std::string Generado(Sesion *s, const std::string &spec) {
    s->Enviar("prompt " + spec + "\nprompt\nprompt \x02%%>\n"); // and back to the mark of the driver
    s->Esperar(spec + "  --->  ");
    const std::string texto = s->EsperarPrompt();
    return texto.substr(0, texto.size() / 2); // it, a newline, and it again
}

TEST(Prompt, EveryEscapeGivesItsPiece) {
    DirectorioTemporal d;
    mkdir((d / "real").c_str(), 0777);
    ASSERT_EQ(symlink("real", (d / "enlace").c_str()), 0);
    struct utsname u;
    uname(&u);
    const std::string nodo = u.nodename, texto = "Linux@" + nodo.substr(0, nodo.find('.')) + "{real} %) ";
    const Opciones o{.directorio = d / "enlace"};
    EXPECT_TRUE(
        Ejecutar("prompt\n", o).salida.ends_with(texto + "%o@%m{%B}%b%%)%b  --->  " + texto + "\n" + texto));
    Sesion s(o);
    EXPECT_EQ(Generado(&s, "%u%b%p>%t%%%n%b"),
              std::string(getpwuid(geteuid())->pw_name) + " " + std::to_string(s.pid()) + ">\t%\n ");
    SALTAR_SI(kSaneado, "the sanitizers' own realpath looks at a buffer of another size");
    EXPECT_EQ(Generado(&s, "%d"), d / "real");
    s.Linea("chdir /");
    EXPECT_EQ(Generado(&s, "%B"), "/");
    const std::string casa = getpwuid(geteuid())->pw_dir;
    SALTAR_SI(!s.Linea("chdir " + casa).empty(), "some users have no home");
    EXPECT_EQ(Generado(&s, "%D"), "~");
    SALTAR_SI(casa != "/root", "where to look for a directory of that beginning");
    s.Linea("chdir /");
    EXPECT_EQ(Generado(&s, "%D"), "/");
}

TEST(Prompt, RefusesEscapesThatDoNotExistAndTextsThatDoNotFitAndIsCutWhenItGrows) {
    const std::string hondo(200, 'h');
    Sesion s;
    mkdir((s / hondo).c_str(), 0777);
    std::string crece, mengua;
    for (int i = 0; i < 511; i++) crece += "%o";  // fits as typed, not as generated
    for (int i = 0; i < 512; i++) mengua += "%%"; // the other way round
    for (const std::string &spec : {crece, mengua, std::string(1024, 'a'), std::string(4000, 'a')})
        EXPECT_EQ(s.Linea("prompt " + spec), "error al generar el prompt, se mantiene el antiguo\n") << spec;
    EXPECT_EQ(Generado(&s, std::string(1023, 'a')), std::string(1023, 'a'));
    s.Enviar("prompt " + std::string(950, 'a') + "%B\nchdir " + hondo + "\n");
    s.Esperar(std::string(950, 'a') + std::string(73, 'h'));
    s.Enviar("prompt \x02%%>\n");
    EXPECT_EQ(s.EsperarPrompt(), "");
}

TEST(Prompt, SurvivesALostDirectory) {
    DirectorioTemporal d;
    const std::string perdido = d / "se-va";
    mkdir(perdido.c_str(), 0777);
    Sesion s({.directorio = perdido});
    rmdir(perdido.c_str());
    EXPECT_EQ(Generado(&s, "%B,%d,%D"), "UnknownDir,UnknownDir,UnknownDir");
    EXPECT_EQ(s.Linea("pwd"), "imposible obtener directorio actual: No such file or directory\n");
}

TEST(Prompt, NamesNoUnknownUser) {
    SALTAR_SIN_SER_ROOT();
    Sesion desconocido({.uid = Ordinario()});
    EXPECT_EQ(Generado(&desconocido, "%u"), "UnknownUser");
    EXPECT_TRUE(kSaneado || Generado(&desconocido, "%D") == desconocido.ruta()) << "and no home to shorten";
    Sesion s({.directorio = "/tmp"});
    s.Linea("setuid -l nobody"); // whose home does not exist
    EXPECT_EQ(Generado(&s, "%u%D"), "nobody/tmp");
    s.Linea("setuid -l root");
}

} // namespace
