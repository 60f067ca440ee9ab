// SPDX-License-Identifier: MIT

#include <regex.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>

#include "tests/driver/session.h"

// Runs the scenarios of the files */*.session. CONTRIBUTING.md says how one is written.

namespace {

using namespace escenario;
using std::string;

struct Transcripcion {
    string nombre;
    std::vector<string> lineas;
};

void PrintTo(const Transcripcion &t, std::ostream *salida) { *salida << t.nombre; }

std::vector<Transcripcion> Transcripciones() {
    std::vector<Transcripcion> todas;
    for (const auto &entrada : std::filesystem::recursive_directory_iterator(EXPECTED_DIR)) {
        if (entrada.path().extension() != ".session") continue;
        std::ifstream fichero(entrada.path());
        for (string linea; std::getline(fichero, linea);)
            if (linea.starts_with("== "))
                todas.push_back({entrada.path().stem().string() + "_" + linea.substr(3), {}});
            else if (!linea.empty() && linea[0] != '#')
                todas.back().lineas.push_back(linea);
    }
    return todas;
}

class Sessions : public testing::TestWithParam<Transcripcion> {
  protected:
    const DirectorioTemporal dir_;
    std::map<string, string> valores_{{"PADRE", std::to_string(getpid())},
                                      {"UID", std::to_string(getuid())},
                                      {"CLAVE", std::to_string(ClaveUnica())},
                                      {"DIR", dir_.ruta()},
                                      {"PROMPT", kMarca}};

    /// A text with the known values in the places of their names.
    string Completar(string texto) {
        static const std::regex nombre(R"(<([A-Z]+\d*)(\+\d+)?>)");
        string completo;
        for (std::smatch m; std::regex_search(texto, m, nombre); texto = m.suffix().str()) {
            const auto valor = valores_.find(m[1]);
            completo += m.prefix().str() + (valor == valores_.end() ? m.str()
                                            : m[2].matched          ? Mas(valor->second, stoul(m[2]))
                                                                    : valor->second);
        }
        return completo + texto;
    }

    /// Compares what `linea` has printed, and gives their values to the names that had none.
    void Comparar(const string &linea, const string &esperado, const string &dado) {
        string patron =
            std::regex_replace(Completar(esperado), std::regex(R"([\\^$.\[\]|()*+?{}])"), R"(\$&)");
        for (const auto &[hueco, forma] : {Paso{R"(<\\\*\\\*>)", ".*"}, {R"(<\\\*>)", "[^\n]*"}, {"<>", ""}})
            patron = std::regex_replace(patron, std::regex(hueco), forma);
        static const std::regex nombre("<([A-Z]+[0-9]*)>");
        std::vector<string> nombres;
        for (std::sregex_iterator m(patron.begin(), patron.end(), nombre), fin; m != fin; m++)
            nombres.push_back((*m)[1]);
        patron = "^" + std::regex_replace(patron, nombre, "(0x[0-9a-f]+|[0-9]+)") + "$";
        regex_t regex; // the standard library's own may need more stack than there is
        ASSERT_EQ(regcomp(&regex, patron.c_str(), REG_EXTENDED), 0) << patron;
        std::vector<regmatch_t> grupos(nombres.size() + 1);
        const bool casa = regexec(&regex, dado.c_str(), grupos.size(), grupos.data(), 0) == 0;
        regfree(&regex);
        ASSERT_TRUE(casa) << linea << "\nprints\n" << dado << "\nnot\n" << Completar(esperado);
        for (size_t i = 0; i < nombres.size(); i++) {
            const string valor = dado.substr(grupos[i + 1].rm_so, grupos[i + 1].rm_eo - grupos[i + 1].rm_so);
            EXPECT_EQ(valores_.try_emplace(nombres[i], valor).first->second, valor) << nombres[i];
        }
    }
};

TEST_P(Sessions, Print) {
    std::vector<string> lineas = GetParam().lineas;
    Opciones o{.directorio = dir_.ruta()};
    size_t i = 0;
    for (; lineas[i][0] == '!' || lineas[i][0] == '@'; i++) {
        const string orden = lineas[i].substr(2), nombre = orden.substr(0, orden.find(' ')),
                     resto = orden.size() > nombre.size() ? orden.substr(nombre.size() + 1) : "";
        SALTAR_SI(nombre == "root" && getuid() != 0, "only root may");
        SALTAR_SI((nombre == "release" || nombre == "refuse") && kSaneado, "release build only");
        if (lineas[i][0] == '@')
            EscribirFichero(dir_ / nombre, std::regex_replace(resto, std::regex(R"(\\n)"), "\n"));
        else if (nombre == "ordinary")
            o.uid = Ordinario();
        else if (nombre == "arg")
            o.argumentos.push_back(Completar(resto));
        else if (nombre == "env")
            o.entorno.push_back(Completar(resto));
        else if (nombre == "refuse") {
            const size_t blanco = resto.find(' ');
            o.entorno.insert(o.entorno.end(), {"FALLAR=" + resto.substr(0, blanco),
                                               "VEZ=" + resto.substr(blanco + 1), "INFORME=/dev/null"});
            o.preload += ":" FAILING_CALLS_SHIM;
        }
    }
    if (o.uid != 0) valores_["UID"] = std::to_string(o.uid);
    Sesion s(o);
    valores_["PID"] = std::to_string(s.pid());
    string esperado;
    while (i < lineas.size()) {
        const string linea = lineas[i++];
        s.Enviar(Completar(linea.substr(2)) + "\n");
        if (linea[0] == '>') continue;
        const string dado = s.EsperarPrompt();
        if (linea[0] == '$') {
            esperado = "";
            for (; i < lineas.size() && lineas[i].find_first_of("$&>") != 0; i++)
                esperado += lineas[i] + "\n";
            if (esperado.ends_with("\\\n")) esperado.erase(esperado.size() - 2);
        }
        Comparar(linea, esperado, dado);
    }
}

INSTANTIATE_TEST_SUITE_P(, Sessions, testing::ValuesIn(Transcripciones()),
                         [](const auto &una) { return una.param.nombre; });

} // namespace
