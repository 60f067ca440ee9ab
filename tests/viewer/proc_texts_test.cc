// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <gtest/gtest.h>

#include "viewer/proc_fdinfo.h"
#include "viewer/proc_maps.h"
#include "viewer/proc_status.h"

// The kernel's texts, with the odd things that names and values can bring.

using namespace mirador;

TEST(FdInfoText, TellsOffsetAndFlags) {
    const auto info = ParseFdInfo("pos:\t5000000000\nflags:\t02102002\nmnt_id:\t25\nino:\t7\n");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->offset, 5000000000);
    EXPECT_EQ(info->mount, 25u);
    for (const char *cut : {"", "pos:\t1\n", "flags:\t02\n", "pos:\tx\nflags:\t02\n"})
        EXPECT_FALSE(ParseFdInfo(cut)) << cut;
}

TEST(FdInfoText, FlagsAreDecodedOnce) {
    static const struct {
        uint32_t flags;
        const char *words;
    } rows[] = {{0100000, "O_RDONLY"}, // on this processor the bit of large files, or one without a name
                {O_RDWR | O_APPEND | O_CLOEXEC, "O_RDWR O_APPEND O_CLOEXEC"},
                {O_WRONLY | O_SYNC, "O_WRONLY O_SYNC"},
                {O_WRONLY | O_DSYNC, "O_WRONLY O_DSYNC"},
                {O_RDWR | O_TMPFILE, "O_RDWR O_TMPFILE"},
                {O_PATH | O_DIRECTORY, "O_DIRECTORY O_PATH"},
                {O_ACCMODE, "O_ACCMODE"},
                {O_RDONLY | 010000000000, "O_RDONLY 010000000000"}};
    for (const auto &row : rows) {
#if !defined(__x86_64__)
        if (row.flags == 0100000) continue;
#endif
        EXPECT_EQ(FlagWords(row.flags), row.words);
    }
}

TEST(MapsText, ZonesAreToldApart) {
    const std::string program = "/home/a b/shell (deleted)";
    std::vector<Zone> zones = ParseMaps("55d0-55d1 r--p 00000000 fe:00 17     /home/a b/shell (deleted)\n"
                                        "55d1-55d2 r-xp 00001000 fe:00 17     /home/a b/shell (deleted)\n"
                                        "55d2-55d3 rw-p 00002000 fe:00 17     /home/a b/shell (deleted)\n"
                                        "55d3-55d9 rw-p 00000000 00:00 0 \n"
                                        "66d3-66d9 rw-p 00000000 00:00 0      [heap]\n"
                                        "7000-7100 rw-s 00000000 00:01 32769  /SYSV00001e4b (deleted)\n"
                                        "7100-7200 r--s 00003000 fe:00 99     /tmp/dos\\012l\xc3\xadneas\n"
                                        "7200-7300 r--p 00000000 fe:00 98     /usr/lib/libx.so.6\n"
                                        "7300-7400 r-xp 00000000 fe:00 97     /opt/raro\n"
                                        "7400-7500 r--p 00000000 fe:00 97     /opt/raro\n"
                                        "7600-7700 rw-p 00000000 00:00 0 \n"
                                        "7800-7900 rw-p 00000000 fe:00 5      /tmp/SYSV00000001 (deleted)\n"
                                        "7fff-8fff rw-p 00000000 00:00 0      [stack]\n"
                                        "ffff-fffe r-xp 00000000 00:00 0      [al revés]\n"
                                        "VmFlags: rd\nno es una zona\n\n");
    ClassifyZones(&zones, program);
    NoteSegments(&zones, ParseSegments(" key shmid perms size cpid lpid nattch uid\n"
                                       "      7755      32769   777  20000  1  2      3     0\n"
                                       "-559038737      32770   777  20000  1  2      9     0\n"));
    const ZoneKind kinds[] = {
        ZoneKind::kConstants, ZoneKind::kCode,    ZoneKind::kData,    ZoneKind::kData,    ZoneKind::kHeap,
        ZoneKind::kSegment,   ZoneKind::kMapping, ZoneKind::kLibrary, ZoneKind::kLibrary, ZoneKind::kLibrary,
        ZoneKind::kAnonymous, ZoneKind::kMapping, ZoneKind::kStack};
    ASSERT_EQ(zones.size(), std::size(kinds));
    for (size_t i = 0; i < zones.size(); i++) EXPECT_EQ(zones[i].kind, kinds[i]) << zones[i].start;
    EXPECT_EQ(zones[3].owner, program);
    EXPECT_TRUE(zones[5].listed);
    EXPECT_EQ(zones[5].key, 7755);
    EXPECT_EQ(zones[5].attached, 3u);
    EXPECT_EQ(zones[6].path, "/tmp/dos\nl\xc3\xadneas");
    EXPECT_EQ(zones[6].offset, 0x3000u);
    EXPECT_EQ(Permissions(zones[6]), "r--s");
    EXPECT_FALSE(zones[6].measured);
}

TEST(MapsText, SmapsAddsWhatIsInMemory) {
    const std::vector<Zone> zones = ParseMaps("1000-3000 rw-p 00000000 00:00 0 \n"
                                              "Size:                  8 kB\nRss:                   4 kB\n"
                                              "Shared_Dirty:          4 kB\nPrivate_Dirty:         8 kB\n"
                                              "VmFlags: rd wr\n"
                                              "3000-4000 ---p 00000000 00:00 0 \nRss:      0 kB\n");
    ASSERT_EQ(zones.size(), 2u);
    EXPECT_EQ(zones[0].resident, 4096u);
    EXPECT_EQ(zones[0].dirty, 12288u);
    EXPECT_TRUE(zones[1].measured);
    EXPECT_EQ(zones[1].resident, 0u);
}

TEST(StatusText, TellsMasks) {
    const char whole[] = "Name:\ta\\nSigBlk:\nUid:\t1000\t0\t0\t0\nThreads:\t1\nSigQ:\t1/96\n"
                         "SigPnd:\t0000000000000001\nShdPnd:\t8000000000000200\nSigBlk:\t0000000000000a00\n"
                         "SigIgn:\t0000000000000000\nSigCgt:\t0000000100000000\n";
    const auto status = ParseStatus(whole);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->uid, 0u);
    EXPECT_EQ(MaskNames(status->signals.blocked), "USR1 USR2");
    EXPECT_EQ(MaskNames(status->signals.pending_thread), "HUP");
    EXPECT_EQ(MaskNames(status->signals.pending_process), "USR1 RTMIN+30");
    EXPECT_EQ(MaskNames(status->signals.caught), "33");
    EXPECT_FALSE(ParseStatus("SigPnd:\t0000000000000000\nSigBlk:\t0000000000000000\n"));
    EXPECT_EQ(StatusFingerprint("a\nSigQ:\t1/96\nb"), "a\nb\n"); // it counts for all processes of the user
}

TEST(StatText, CommandsMayHoldAnything) {
    const auto stat =
        ParseStat("77 (a) S 1 (b\n) Z 5 6 7 34816 77 4194304 130 0 1 0 0 0 0 0 39 19 1 0 73206 2990080\n");
    ASSERT_TRUE(stat);
    EXPECT_EQ(stat->command, "a) S 1 (b\n");
    EXPECT_EQ(stat->state, 'Z');
    EXPECT_EQ(stat->parent, 5);
    EXPECT_EQ(stat->group, 6);
    EXPECT_EQ(stat->session, 7);
    EXPECT_EQ(stat->nice, 19);
    EXPECT_EQ(stat->start, 73206u);
    for (const char *cut : {"", "77", "77 (a", "77 )a( S 1", "77 (a) S 5 6 7"})
        EXPECT_FALSE(ParseStat(cut)) << cut;
}

TEST(CommandLineText, WordsAreJoined) {
    using namespace std::string_view_literals;
    EXPECT_EQ(ParseCommandLine("sleep\0 6 0 \0\0"sv), "sleep  6 0 ");
    EXPECT_EQ(ParseCommandLine(""), "");
    EXPECT_EQ(ParseChildren("12 345 "), (std::vector<pid_t>{12, 345}));
}
