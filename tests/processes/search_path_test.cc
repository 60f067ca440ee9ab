#include "processes/search_path.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "shell/element_list.h"

namespace {

TEST(SearchPath, TakesOnlyWhatFits) {
    const std::string larga = "/bin::/usr/bin:" + std::string(3000, 'd'), previo = getenv("PATH");
    setenv("PATH", larga.c_str(), 1);
    EXPECT_EQ(PathAddPath(), 3);
    setenv("PATH", previo.c_str(), 1);
    PathDel("/bin");
    EXPECT_STREQ(PathFirst(), "/usr/bin");
    EXPECT_EQ(PathNext(), larga.substr(15, 2047 - 15));
    PathClear();
    std::string justa = "/";
    while (justa.size() < 1017) justa += "./";
    justa += "bin"; // with "/sh" 1023 characters
    for (const std::string &dir : {"/" + justa, std::string("/nohay"), justa, std::string("/bin")})
        PathAdd(dir.c_str());
    EXPECT_EQ(Ejecutable("sh"), justa + "/sh");
    for (const char *nombre : {"/sh", "../sh", "nohaytal"}) EXPECT_STREQ(Ejecutable(nombre), nombre);
    PathClear();
}

} // namespace
