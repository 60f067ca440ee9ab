#include "processes/search_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "shell/element_list.h"

namespace {

TEST(SearchPath, ImportsFieldsThatAreNotEmptyFromTheFirst2047Characters) {
    const std::string larga(3000, 'd'), previo = getenv("PATH");
    for (const auto &[path, campos] : {std::pair{"/bin::/usr/bin:", 2}, {":::", 0}, {larga.c_str(), 1}}) {
        setenv("PATH", path, 1);
        EXPECT_EQ(PathAddPath(), campos) << path;
    }
    PathDel("/bin");
    EXPECT_STREQ(PathFirst(), "/usr/bin");
    EXPECT_EQ(std::string(PathNext()).size(), 2047u);
    unsetenv("PATH");
    EXPECT_EQ(PathAddPath(), 0);
    setenv("PATH", previo.c_str(), 1);
    PathClear();
}

TEST(SearchPath, FindsTheFirstThatExistsAndSkipsCandidatesThatDoNotFit) {
    EXPECT_STREQ(Ejecutable("sh"), "sh");
    std::string justa = "/";
    while (justa.size() < 1017) justa += "./";
    justa += "bin"; // with "/sh" 1023 characters
    for (const std::string &dir : {"/" + justa, std::string("/nohay"), justa, std::string("/bin")})
        PathAdd(dir.c_str());
    EXPECT_EQ(Ejecutable("sh"), justa + "/sh");
    for (const char *nombre : {"/sh", "./sh", "../sh", "nohaytal"}) EXPECT_STREQ(Ejecutable(nombre), nombre);
    PathClear();
}

} // namespace
