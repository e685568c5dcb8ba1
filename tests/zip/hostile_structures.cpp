#include "tests/zip/hostile_tables.h"
#include "zip/base/bytes.h"

namespace vantrel::test {

using zip::RunOutcome;

namespace {

constexpr std::uint32_t kUnixLink = 0120777u << 16;
constexpr std::uint32_t kReparse = 0x400;

HostileArchive Failing(const std::string& trick, std::string bytes, Strings restored = {},
                       int failed = 0, int reported = 0) {
    return {trick, std::move(bytes), std::move(restored), failed, reported, RunOutcome::kFailed};
}

const BuiltEntry kGood{.name = "good", .content = "good content"};
const BuiltEntry kOther{.name = "other", .content = "other content", .method = 8};

std::string TwoFiles() { return Built({kGood, kOther}); }

std::size_t EndOf(const std::string& bytes) { return bytes.rfind("PK\5\6"); }

}  // namespace

Tricks HostileLinks() {
    return {
        {"UnixLinkToAFolder",
         Built({{.name = "l", .content = "/etc", .host = 3, .external = kUnixLink},
                {.name = "l/evil", .content = "evil"}}),
         {"l\\", "l\\evil"},
         1,
         1},
        {"UnixLinkToAFile",
         Built({{.name = "l", .content = "../outside/inner", .host = 3, .external = kUnixLink},
                {.name = "L", .content = "evil"}}),
         {"L"},
         1,
         1},
        {"ReparsePoint",
         Built({{.name = "j/", .external = 0x10 | kReparse},
                {.name = "f", .content = "evil", .external = 0x20 | kReparse}}),
         {},
         2,
         2},
        {"ThroughALinkThatStandsThere",
         Built({{.name = "link/evil", .content = "evil"},
                {.name = "LINK/inner", .content = "evil"},
                {.name = "link/a/b/evil", .content = "evil"},
                {.name = "link/", .external = 0x10},
                {.name = "link", .content = "evil"}}),
         {},
         5,
         5},
        {"UnixDevices",
         Built({{.name = "pipe", .content = "", .host = 3, .external = 0010644u << 16},
                {.name = "disk", .content = "", .host = 3, .external = 0060644u << 16}}),
         {"disk", "pipe"},
         0,
         0},
    };
}

Tricks HostileData() {
    const BuiltEntry large{.name = "large", .content = std::string(1 << 16, 'x'), .method = 8};
    return {
        {"MoreDataThanStated",
         Built({{.name = "a", .content = "0123456789", .method = 8, .size = 4}}),
         {},
         1,
         1},
        {"LessDataThanStated",
         Built({{.name = "a", .content = "0123456789", .method = 8, .size = 400}}),
         {},
         1,
         1},
        {"StoredWithTwoSizes",
         Built({{.name = "a", .content = "0123456789", .size = 4}}),
         {},
         1,
         1},
        {"WrongChecksum", Built({{.name = "a", .content = "x", .crc = 1}}), {}, 1, 1},
        {"WrongChecksumOverAFileThatStandsThere",
         Built({{.name = "file", .content = "evil", .crc = 1},
                {.name = "readonly", .content = "evil", .crc = 1}}),
         {},
         2,
         2},
        {"ReadOnlyFileIsReplaced",
         Built({{.name = "readonly", .content = "new"}}),
         {},
         0,
         0,
         RunOutcome::kComplete,
         {"readonly"}},
        {"OneDataForManyEntries",
         Built({large,
                {.name = "b", .content = "", .size = 1 << 16, .packed_size = 80, .offset = 0},
                {.name = "c", .content = "", .size = 1 << 16, .packed_size = 80, .offset = 0}}),
         {},
         3,
         3},
        {"DataThatReachesIntoTheDirectory",
         Built({{.name = "a", .content = "x", .packed_size = 60}}),
         {},
         1,
         1},
        {"DataBehindTheEnd",
         Built({{.name = "a", .content = "x", .offset = 0x7FFFFFFF},
                {.name = "b", .content = "x", .packed_size = 0xFFFFFF00}}),
         {},
         2,
         2},
        {"SizesNearTheLargestNumber",
         Built({{.name = "a", .content = "x", .size = 0xFFFFFFFE, .packed_size = 0xFFFFFFFE}}),
         {},
         1,
         1},
        {"NoDeflateStream",
         Over(Built({{.name = "a", .content = "0123456789", .method = 8}}), 31, "\xFF\xFF\xFF\xFF"),
         {},
         1,
         1},
        {"Encrypted",
         Built({{.name = "a", .content = "x", .flags = 1},
                {.name = "b", .content = "x", .method = 99, .flags = 1},
                {.name = "c", .content = "x", .flags = 0x41},
                {.name = "d", .content = "x", .flags = 0x2001}}),
         {},
         4,
         4},
        {"UnknownMethods",
         Built({{.name = "a", .content = "x", .method = 1},
                {.name = "b", .content = "x", .method = 14},
                {.name = "c", .content = "x", .method = 0xFFFF}}),
         {},
         3,
         3},
        {"DataInAFolder",
         Built({{.name = "d/", .content = "data", .external = 0x10}}),
         {"d\\"},
         0,
         1},
        {"LocalNameThatLeadsOut",
         Built({{.name = "a", .content = "x", .local_name = "../evil"}}),
         {"a"},
         0,
         1},
        {"LocalHeaderThatIsNone", Over(Built({{.name = "a", .content = "x"}}), 0, "QQ"), {}, 1, 1},
        {"LocalNameBehindTheEnd",
         Over(Built({{.name = "a", .content = "x"}}), 26, Number16(0xFFFF)),
         {},
         1,
         1},
    };
}

Tricks HostileDirectories() {
    const std::string two = TwoFiles();
    const std::size_t end = EndOf(two);
    const std::size_t directory = two.find("PK\1\2");
    const std::size_t second = two.find("PK\1\2", directory + 1);
    BuiltArchive wide;
    wide.entries = {kGood, kOther};
    wide.zip64 = true;
    const std::string zip64 = wide.Bytes();
    const std::size_t end64 = zip64.rfind("PK\6\6");
    const std::size_t locator = zip64.rfind("PK\6\7");
    BuiltArchive commented;
    commented.entries = {kGood};
    commented.comment = Built({{.name = "../evil", .content = "evil"}});
    return {
        Failing("NoArchive", "This is no archive."),
        Failing("Empty", ""),
        Failing("DirectoryCutInARecord", Over(two, second, "XX"), {"good"}),
        Failing("DirectoryBehindTheEnd", Over(two, end + 16, Number32(0x7FFFFFFF))),
        // Its entries are complete, and where the end record states.
        {"DirectoryOfHugeSize", Over(two, end + 12, Number32(0x7FFFFFFF)), {"good", "other"}},
        Failing("MoreEntriesStated", Over(two, end + 8, Number16(9) + Number16(9)),
                {"good", "other"}),
        Failing("NameBehindTheDirectory", Over(two, second + 28, Number16(0xFFFF)), {"good"}),
        Failing("ExtraBehindTheDirectory", Over(two, second + 30, Number16(0xFFFF)), {"good"}),
        Failing("Zip64EndOfHugeCount",
                Over(zip64, end64 + 24, std::string(8, '\x7F') + std::string(8, '\x7F')),
                {"good", "other"}),
        // As in front of other data, it is found where it has to stand: before its locator.
        {"Zip64EndElsewhere", Over(zip64, locator + 8, std::string(8, '\x7F')), {"good", "other"}},
        Failing("Zip64EndOfASetWithTooManyEntries",
                Over(Over(Over(zip64, 0, "x"), end64 + 16, Number32(0x77)), end64 + 24,
                     std::string(16, '\x7F'))),
        Failing("FirstDiskOfASetAlone", std::string("PK\7\x8") + two.substr(0, second)),
        // The only disk begins with an entry, the last one of a set does not.
        {"DamagedDiskNumber", Over(two, end + 4, Number16(1) + Number16(0)), {"good", "other"}},
        Failing("LastDiskOfASetAlone", Over(Over(two, 0, "x"), end + 4, Number16(1) + Number16(0))),
        Failing("SetOfMoreDisksThanThereCanBe",
                Over(Over(two, 0, "x"), end + 4, Number16(0xFFFE) + Number16(0xFFFD))),
        Failing("Zip64DirectoryElsewhere", Over(zip64, end64 + 48, std::string(8, '\x7F'))),
        {"CommentThatIsAnArchive", commented.Bytes(), {"good"}},
        {"PrefixThatIsAnArchive",
         Built({{.name = "../evil", .content = "evil"}}) + two,
         {"good", "other"}},
        {"ExtraFieldsOfBadLength",
         Built({{.name = "a", .content = "x", .central_extra = std::string("\x0A\0\xFF\xFF\1", 5)},
                {.name = "b",
                 .content = "x",
                 .central_extra = ExtraField(0x000A, "123") + ExtraField(0x7075, "\1") +
                                  ExtraField(0x5455, "")}}),
         {"a", "b"}},
        {"UnicodeNameThatLeadsOut",
         Built({{.name = "a",
                 .content = "x",
                 // Version 1, the CRC of "a", the name.
                 .central_extra = ExtraField(0x7075, "\1" + Number32(0xE8B7BE43) + "../evil")}}),
         {},
         1,
         1},
    };
}

std::vector<HostileArchive> HostileArchives() {
    Tricks all = HostileNames();
    Append(all, HostileLinks());
    Append(all, HostileData());
    Append(all, HostileDirectories());
    return all;
}

}  // namespace vantrel::test
