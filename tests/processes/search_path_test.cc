#include "processes/search_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "shell/element_list.h"

namespace {

TEST(SearchPath, ImportsTheDirectoriesOfPath) {
    const std::string muchas(3000, 'd');
    const struct {
        const char *path;
        int campos;
        const char *primera;
    } filas[] = {
        {"/bin::/usr/bin:", 2, "/bin"}, {":::", 0, nullptr}, {"", 0, nullptr}, {muchas.c_str(), 1, nullptr}};
    const std::string previo = getenv("PATH");
    for (const auto &fila : filas) {
        PathClear();
        setenv("PATH", fila.path, 1);
        EXPECT_EQ(PathAddPath(), fila.campos) << fila.path;
        if (fila.primera) {
            EXPECT_STREQ(PathFirst(), fila.primera);
        }
    }
    EXPECT_EQ(std::string(PathFirst()).size(), 2047u); // the rest is not looked at
    unsetenv("PATH");
    EXPECT_EQ(PathAddPath(), 0);
    setenv("PATH", previo.c_str(), 1);
    PathClear();
}

TEST(SearchPath, FindsTheFirstThatExistsAndSkipsCandidatesThatDoNotFit) {
    EXPECT_STREQ(Ejecutable("sh"), "sh");
    EXPECT_EQ(Ejecutable(nullptr), nullptr);
    std::string justo = "/", larga = "/";
    while (justo.size() < 1023 - 6) justo += "./"; // 1017 characters, so that .../bin/sh has 1023
    larga += justo;
    PathAdd((larga + "bin").c_str());
    PathAdd("/nohay");
    PathAdd((justo + "bin").c_str());
    PathAdd("/bin");
    EXPECT_EQ(Ejecutable("sh"), justo + "bin/sh");
    for (const char *nombre : {"/sh", "./sh", "../sh", "nohaytal"}) EXPECT_STREQ(Ejecutable(nombre), nombre);
    PathDel((justo + "bin").c_str());
    EXPECT_STREQ(Ejecutable("sh"), "/bin/sh");
    PathClear();
}

} // namespace
