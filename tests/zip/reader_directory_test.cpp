// Directories as other writers leave them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/test_machine.h"
#include "tests/zip/hostile_tables.h"
#include "tests/zip/zip_builder.h"
#include "zip/base/bytes.h"
#include "zip/deflate/deflate.h"
#include "zip/records/directory_reader.h"
#include "zip/records/record_parser.h"

namespace vantrel::test {
namespace {

class DirectoryReading : public ::testing::Test {
  protected:
    zip::Directory Read(const std::string& bytes) {
        StringSource source(bytes);
        return zip::ReadDirectory(source, machine.code_page(), machine.clock);
    }
    Strings Names(const std::string& bytes) {
        const zip::Directory directory = Read(bytes);
        Strings names;
        for (const auto& entry : directory.entries) {
            names.push_back(entry.name);
        }
        if (!directory.IsComplete()) {
            names.push_back("! " + directory.trouble);
        }
        return names;
    }
    zip::StoredEntry Only(const BuiltEntry& entry) {
        BuiltArchive one;
        one.entries = {entry};
        const zip::Directory directory = Read(one.Bytes());
        EXPECT_TRUE(directory.IsComplete()) << directory.trouble;
        EXPECT_FALSE(directory.entries.empty());
        return directory.entries[0];
    }
    // Where the first entry's local header really is.
    void ExpectOffsetsLeadToHeaders(const std::string& bytes) {
        for (const auto& entry : Read(bytes).entries) {
            EXPECT_EQ(bytes.substr(static_cast<std::size_t>(entry.offset), 4), "PK\3\4");
        }
    }

    TestMachine machine;
    BuiltArchive two{.prefix = "",
                     .entries = {{.name = "a.txt", .content = "alpha"},
                                 {.name = "Sub/b.txt", .content = "beta"}},
                     .comment = "",
                     .junk = ""};
    const Strings both{"a.txt", "Sub/b.txt"};
};

TEST_F(DirectoryReading, PlainArchive) {
    const zip::Directory directory = Read(two.Bytes());
    ASSERT_EQ(directory.entries.size(), 2u);
    EXPECT_EQ(directory.entries[0].name, "a.txt");
    EXPECT_EQ(directory.entries[0].size, 5u);
    EXPECT_TRUE(directory.IsComplete());
}

TEST_F(DirectoryReading, EmptyArchiveHasNoEntriesAndNoTrouble) {
    EXPECT_EQ(Names(BuiltArchive{}.Bytes()), Strings{});
}

// Of an archive that was stored last in one that is cut off, or with zeros for its numbers.
TEST_F(DirectoryReading, EndOfAnEmptyArchiveBehindEntriesIsNotTheirDirectory) {
    const std::string bytes = two.Bytes();
    EXPECT_FALSE(Read(bytes.substr(0, bytes.find("PK\1\2")) + BuiltArchive{}.Bytes()).IsComplete());
}

TEST_F(DirectoryReading, PrefixedData) {
    for (const bool zip64 : {false, true}) {
        two.prefix = "MZ this program extracts itself" + std::string(100000, 'x');
        two.zip64 = zip64;
        EXPECT_EQ(Names(two.Bytes()), both);
        ExpectOffsetsLeadToHeaders(two.Bytes());
    }
}

TEST_F(DirectoryReading, JunkBehindTheEnd) {
    two.junk = std::string(200000, '\0');
    EXPECT_EQ(Names(two.Bytes()), both);
    two.junk = "\r\n";
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, CommentThatHoldsASignature) {
    two.comment = "before PK\5\6 behind, long enough to look like a record";
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, CommentThatIsAnArchive) {
    BuiltArchive other;
    other.entries = {{.name = "not this one", .content = "x"}};
    two.comment = other.Bytes();
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, ArchiveStoredInTheArchiveIsNotTheArchive) {
    BuiltArchive outer;
    outer.entries = {{.name = "inner.zip", .content = two.Bytes()}};
    EXPECT_EQ(Names(outer.Bytes()), Strings{"inner.zip"});
}

TEST_F(DirectoryReading, CutComment) {
    two.comment = "half of";
    two.comment_length = 400;
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, LongestComment) {
    two.comment = std::string(65535, 'c');
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, Zip64EndWithAndWithoutSaturatedFields) {
    two.zip64 = true;
    EXPECT_EQ(Names(two.Bytes()), both);
    two.zip64_marks = false;
    EXPECT_EQ(Names(two.Bytes()), both);
}

TEST_F(DirectoryReading, LocatorIsNotSearchedFor) {
    two.zip64 = true;
    std::string bytes = two.Bytes();
    bytes.insert(bytes.size() - 22, 1, '\0');  // the locator is 21 bytes before the end record
    EXPECT_EQ(Names(bytes).size(), 1u);
    EXPECT_TRUE(Names(bytes)[0].starts_with("! "));
}

TEST_F(DirectoryReading, Zip64FieldBehindOtherFields) {
    std::string numbers;
    zip::Put64(numbers, 5);
    zip::Put64(numbers, 0);
    const auto entry = Only({.name = "a",
                             .content = "alpha",
                             .central_extra = ExtraField(0x5455, std::string("\1\0\0\0\0", 5)) +
                                              ExtraField(0x0001, numbers),
                             .size = 0xFFFFFFFF,
                             .offset = 0xFFFFFFFF});
    EXPECT_EQ(entry.size, 5u);
    EXPECT_EQ(entry.offset, 0u);
    EXPECT_EQ(entry.packed_size, 5u);
}

TEST_F(DirectoryReading, Exactly65535And65536Entries) {
    for (const int count : {65535, 65536}) {
        BuiltArchive many;
        for (int i = 0; i < count; ++i) {
            many.entries.push_back({.name = std::to_string(i)});
        }
        for (const bool zip64 : {true, false}) {
            many.zip64 = zip64;
            const zip::Directory directory = Read(many.Bytes());
            EXPECT_EQ(directory.entries.size(), static_cast<std::size_t>(count));
            EXPECT_TRUE(directory.IsComplete()) << directory.trouble;
        }
    }
}

TEST_F(DirectoryReading, MoreEntriesStatedThanThere) {
    two.entries_stated = 3;
    const Strings names = Names(two.Bytes());
    ASSERT_EQ(names.size(), 3u);
    EXPECT_NE(names[2].find("ends after 2 entries, the last one Sub/b.txt"), std::string::npos);
    two.zip64 = true;
    two.entries_stated = std::int64_t{1} << 62;  // no memory is taken for them
    EXPECT_EQ(Names(two.Bytes()).size(), 3u);
}

TEST_F(DirectoryReading, DamagedRecordEndsTheListAndIsLocated) {
    std::string bytes = two.Bytes();
    bytes[bytes.rfind("PK\1\2")] = 'x';
    const Strings names = Names(bytes);
    ASSERT_EQ(names.size(), 2u);
    EXPECT_EQ(names[0], "a.txt");
    EXPECT_NE(names[1].find("after 1 entry, the last one a.txt"), std::string::npos);
}

TEST_F(DirectoryReading, NoArchiveAtAll) {
    for (const std::string& bytes : {std::string(), std::string("PK"), std::string(70000, 'x')}) {
        EXPECT_EQ(Names(bytes), Strings{"! This is no zip archive, or its end is missing."});
    }
}

TEST_F(DirectoryReading, LastDiskAloneIsReported) {
    std::string bytes = two.Bytes();
    bytes[bytes.size() - 18] = 1;
    bytes[0] = 'x';  // not the only disk, which begins with an entry
    EXPECT_EQ(Names(bytes), Strings{"! This is the last part of an archive on several disks."});
}

TEST_F(DirectoryReading, TimesFromNtfsThenUnixThenDos) {
    std::string ntfs;
    zip::Put32(ntfs, 0);
    zip::Put16(ntfs, 1);
    zip::Put16(ntfs, 24);
    for (const std::uint64_t time :
         {std::uint64_t{133444736001234567}, std::uint64_t{133444736001234568}, std::uint64_t{7}}) {
        zip::Put64(ntfs, time);
    }
    const std::string unix_time("\1\x80\x51\x01\x00", 5);  // 1970-01-02 00:00
    constexpr platform::Ticks kUnix = 116444736000000000u + 864000000000u;
    auto entry = Only({.name = "a",
                       .content = "",
                       .central_extra = ExtraField(0x5455, unix_time) + ExtraField(0x000A, ntfs)});
    EXPECT_EQ(entry.times.modified, 133444736001234567u);
    EXPECT_EQ(entry.times.accessed, 133444736001234568u);
    EXPECT_EQ(entry.times.created, 7u);
    entry =
        Only({.name = "a",
              .content = "",
              .central_extra = ExtraField(0x000A, ntfs.substr(1)) + ExtraField(0x5455, unix_time)});
    EXPECT_EQ(entry.times.modified, kUnix);
    entry = Only({.name = "a", .central_extra = ExtraField(0x5455, unix_time.substr(0, 4))});
    EXPECT_EQ(machine.clock.ToLocal(entry.times.modified).year, 2025);
    EXPECT_EQ(machine.clock.ToLocal(entry.times.modified).minute, 5);
}

TEST_F(DirectoryReading, ExtraFieldThatIsTooLongIsIgnored) {
    std::string extra = ExtraField(0x000A, std::string(32, '\0'));
    extra[2] = 100;
    EXPECT_EQ(
        machine.clock.ToLocal(Only({.name = "a", .central_extra = extra}).times.modified).year,
        2025);
    EXPECT_EQ(Only({.name = "a", .central_extra = "xyz"}).name, "a");
}

TEST_F(DirectoryReading, DatesThatDoNotExistAreBroughtBack) {
    const auto local = [&](std::uint32_t dos) {
        return machine.clock.ToLocal(zip::TicksOfDosTime(dos, machine.clock));
    };
    const auto zero = local(0);  // month 0, day 0
    EXPECT_EQ(zero.year, 1980);
    EXPECT_EQ(zero.month, 1);
    EXPECT_EQ(zero.day, 1);
    const auto february = local((45u << 25) | (2u << 21) | (31u << 16));
    EXPECT_EQ(february.month, 2);
    EXPECT_EQ(february.day, 28);
    const auto last = local(0xFFFFFFFF);
    EXPECT_EQ(last.year, 2107);
    EXPECT_EQ(last.month, 12);
    EXPECT_EQ(last.hour, 23);
    EXPECT_EQ(last.second, 59);
}

TEST_F(DirectoryReading, NamesFlaggedUnicodePathUtf8AndOem) {
    const std::string umlaut = "\xC3\xA4";
    EXPECT_EQ(Only({.name = umlaut, .flags = 0x800}).name, umlaut);
    EXPECT_EQ(Only({.name = umlaut}).name, umlaut);
    EXPECT_EQ(Only({.name = "\x84"}).name, umlaut);  // code page 437
    EXPECT_EQ(Only({.name = "\x84"}).RawName(), "\x84");
    EXPECT_EQ(Only({.name = "\x84", .flags = 0x800}).name, "\xEF\xBF\xBD");
    std::string field(1, '\1');
    zip::Put32(field, zip::Crc32(reinterpret_cast<const std::uint8_t*>("x"), 1));
    field += umlaut;
    EXPECT_EQ(Only({.name = "x", .central_extra = ExtraField(0x7075, field)}).name, umlaut);
    EXPECT_EQ(Only({.name = "y", .central_extra = ExtraField(0x7075, field)}).name,
              "y");  // made for another name
    field[0] = 2;
    EXPECT_EQ(Only({.name = "x", .central_extra = ExtraField(0x7075, field)}).name, "x");
}

TEST_F(DirectoryReading, AttributesOfDosAndUnixHosts) {
    EXPECT_EQ(Only({.name = "a", .external = 0x27}).attributes, 0x27u);
    EXPECT_EQ(Only({.name = "a", .external = 0x81A40021u}).attributes, 0x21u);
    EXPECT_EQ(Only({.name = "a", .host = 3, .external = 0100644u << 16}).attributes, 0x20u);
    EXPECT_EQ(Only({.name = "a", .host = 3, .external = 0100444u << 16}).attributes, 0x21u);
    const auto folder = Only({.name = "d", .host = 3, .external = 040755u << 16});
    EXPECT_TRUE(folder.is_folder);
    EXPECT_TRUE(Only({.name = "d/"}).is_folder);
    EXPECT_TRUE(Only({.name = "d", .external = 0x10}).is_folder);
    EXPECT_FALSE(Only({.name = "d", .content = "x", .external = 0x10}).is_folder);
    EXPECT_TRUE(Only({.name = "l", .content = "t", .host = 3, .external = 0120777u << 16}).is_link);
    EXPECT_TRUE(Only({.name = "l", .content = "t", .external = 0x420}).is_link);
}

}  // namespace
}  // namespace vantrel::test
