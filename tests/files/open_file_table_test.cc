#include "files/open_file_table.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

namespace {

TEST(OpenFileTable, AnEntryIsReplacedWholeAndFreedWithoutItsMark) {
    EXPECT_EQ(AddOpenFile(4095, "uno", O_RDWR, 1), 4095);
    EXPECT_EQ(AddOpenFile(4095, NombreFicheroDescriptor(4095), O_WRONLY, 1), 4095); // its own name
    EXPECT_STREQ(NombreFicheroDescriptor(4095), "uno");
    EXPECT_EQ(OpenFilesList[4095].modo, O_WRONLY);
    EXPECT_EQ(RemoveOpenFile(4095), 4095);
    EXPECT_EQ(NombreFicheroDescriptor(4095), nullptr);
    EXPECT_EQ(OpenFilesList[4095].modo, 0);
    EXPECT_EQ(DescriptorRedireccion(4095), 1);
    errno = 0;
    EXPECT_TRUE(RemoveOpenFile(4095) == -1 && errno == ENOENT);
    LiberarDeRedireccion(4095);
}

TEST(OpenFileTable, NumbersOutsideItHaveNoEntry) {
    for (int df : {-1, kMaxDescriptores, 2147483647, -2147483647 - 1}) {
        errno = 0;
        EXPECT_TRUE(AddOpenFile(df, "x", 0, 0) == -1 && errno == ENOENT) << df;
        UsarEnRedireccion(df);
        EXPECT_TRUE(DescriptorRedireccion(df) == 0 && !NombreFicheroDescriptor(df)) << df;
    }
}

TEST(OpenFileTable, OffsetsOfAnySizeAreShownWhole) {
    const int df = open("/tmp", O_TMPFILE | O_RDWR, 0600);
    if (df == -1) GTEST_SKIP() << "no files without a name here";
    ASSERT_NE(lseek(df, 1LL << 40, SEEK_SET), -1);
    EXPECT_STREQ(CadOffset(df), "1099511627776");
    close(df);
    EXPECT_STREQ(CadOffset(df), "  ");
}

} // namespace
