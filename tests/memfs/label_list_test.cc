// SPDX-License-Identifier: MIT

#include "memfs/label_list.h"

#include <gtest/gtest.h>

namespace {

TEST(LabelList, GoesFromLabelsToAddressesAndBack) {
    char a[3];
    for (const char *label : {"uno", "otro", "dos"}) LabelAdd(label, a);
    LabelAdd("otro", a + 1);
    LabelAdd("dos", a + 2);
    EXPECT_STREQ(LabelLabel(a + 1), "otro");
    EXPECT_EQ(LabelLabel(a + 3), nullptr);
    EXPECT_EQ(LabelFirstAddr(), a);
    EXPECT_EQ(LabelNextAddr(a), a + 1);
    EXPECT_EQ(LabelNextAddr(a + 2), nullptr);
    EXPECT_EQ(LabelNextAddr(a + 3), nullptr);
    EXPECT_EQ(LabelDel("uno"), 0);
    EXPECT_EQ(LabelAddr("dos"), a + 2);
    InitLabel();
    EXPECT_EQ(LabelFirstAddr(), nullptr);
    EXPECT_EQ(LabelDel("dos"), 1); // the text of a free entry
}

} // namespace
