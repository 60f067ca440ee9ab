#include "tests/driver/session.h"

#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

using namespace escenario;

std::string Maquina() {
    struct utsname u;
    uname(&u);
    const std::string nombre = u.nodename;
    return nombre.substr(0, nombre.find('.'));
}

TEST(Prompt, TheDefaultShowsSystemMachineAndDirectory) {
    DirectorioTemporal d;
    const std::string base = d.ruta().substr(d.ruta().rfind('/') + 1);
    Opciones o;
    o.directorio = d.ruta();
    const std::string texto = "Linux@" + Maquina() + "{" + base + "} %) ";
    const Resultado r = Ejecutar("prompt\n", o);
    EXPECT_NE(r.salida.find(texto + "%o@%m{%B}%b%%)%b  --->  " + texto + "\n" + texto), std::string::npos);
}

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
    Sesion s;
    s.Linea("chdir " + d.ruta() + "/enlace");
    EXPECT_EQ(Generado(&s, "%u%b%p>"),
              std::string(getpwuid(geteuid())->pw_name) + " " + std::to_string(s.pid()) + ">");
    EXPECT_EQ(Generado(&s, "%o%t%m%%"), "Linux\t" + Maquina() + "%");
    EXPECT_EQ(Generado(&s, "%B"), "real");
    s.Linea("chdir /");
    EXPECT_EQ(Generado(&s, "%B"), "/");
    if (kSaneado) return; // the sanitizers' own realpath looks at a buffer of another size
    s.Linea("chdir " + d.ruta() + "/enlace");
    EXPECT_EQ(Generado(&s, "%d"), d.ruta() + "/real");
    s.Linea("chdir " + std::string(getpwuid(geteuid())->pw_dir));
    EXPECT_EQ(Generado(&s, "%D").substr(0, 1), "~");
}

TEST(Prompt, RefusesEscapesThatDoNotExistAndTextsThatDoNotFit) {
    Sesion s;
    const std::string rechazo = "error al generar el prompt, se mantiene el antiguo\n";
    for (const std::string &spec : {std::string("abc%x"), std::string("abc%"), std::string("%U"),
                                    std::string(1024, 'a'), std::string(4000, 'a')})
        EXPECT_EQ(s.Linea("prompt " + spec), rechazo) << spec;
    std::string crece;
    for (int i = 0; i < 511; i++) crece += "%o"; // fits as typed, not as generated
    EXPECT_EQ(s.Linea("prompt " + crece), rechazo);
    EXPECT_EQ(Generado(&s, std::string(1023, 'a')), std::string(1023, 'a'));
}

TEST(Prompt, APromptThatOutgrowsItsBufferIsCut) {
    DirectorioTemporal d;
    const std::string hondo(200, 'h');
    mkdir((d / hondo).c_str(), 0777);
    Sesion s;
    s.Linea("chdir " + d.ruta());
    s.Enviar("prompt " + std::string(950, 'a') + "%B\nchdir " + hondo + "\n");
    s.Esperar(std::string(950, 'a') + std::string(73, 'h'));
    s.Enviar("prompt \x02%%>\n");
    EXPECT_EQ(s.EsperarPrompt(), "");
    EXPECT_EQ(s.Linea("authors -l"), "login del autor1\nlogin del autor2\n");
}

TEST(Prompt, SurvivesALostDirectoryAndAnUnknownUser) {
    DirectorioTemporal d;
    mkdir((d / "se-va").c_str(), 0777);
    Sesion s;
    s.Linea("chdir " + (d / "se-va"));
    rmdir((d / "se-va").c_str());
    EXPECT_EQ(Generado(&s, "%B,%d,%D"), "UnknownDir,UnknownDir,UnknownDir");
    EXPECT_NE(s.Linea("pwd").find("imposible obtener directorio actual: "), std::string::npos);
    EXPECT_EQ(s.Linea("chdir"), "");
    if (geteuid() != 0) GTEST_SKIP() << "only root starts programs as a user without an entry";
    Opciones o;
    o.uid = 987654;
    Sesion desconocido(o);
    EXPECT_EQ(Generado(&desconocido, "%u"), "UnknownUser");
}

} // namespace
