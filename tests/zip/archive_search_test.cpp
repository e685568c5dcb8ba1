// Archives without a usable directory: what is restored of them, and what is not.
#include "zip/reader/archive_search.h"

#include <set>

#include "tests/support/matchers.h"
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

class ArchiveSearch : public ReaderTest {
  protected:
    ArchiveSearch() {
        options.search = true;
        options.use_local_headers = true;
        options.threads = 1;
        events.wants_each_file = false;
        archive.entries = {
            {.name = "a.txt", .content = Prose(700), .method = 8},
            {.name = "Sub/b.txt", .content = "beta"},
            {.name = "Sub/streamed",
             .content = Prose(500, 2),
             .method = 8,
             .flags = zip::flag::kDescriptor},
            {.name = "stored", .content = Noise(90, 3), .flags = zip::flag::kDescriptor},
            {.name = "empty", .content = ""},
            {.name = "last", .content = Noise(200, 4)}};
    }
    // Positions of the local headers, then that of the directory.
    std::vector<std::size_t> Starts(const std::string& bytes) const {
        std::vector<std::size_t> starts;
        for (const BuiltEntry& entry : archive.entries) {
            starts.push_back(bytes.find(entry.name) - zip::local_header::kFixedSize);
        }
        starts.push_back(zip::GetNumber<std::uint32_t>(
            bytes, bytes.rfind("PK\5\6") + zip::end_record::kDirectoryOffset));
        return starts;
    }
    RunOutcome RunOn(const std::string& bytes) {
        files.Remove("C:\\Out");
        files.Put(options.archive, bytes);
        events.messages.clear();
        return Run();
    }
    // What was restored is right, and `count` files at least were.
    void ExpectRight(std::size_t count) {
        std::size_t restored = 0;
        for (const std::string& path : Restored()) {
            if (path.back() == '\\') {
                continue;
            }
            ++restored;
            bool known = false;
            for (const BuiltEntry& entry : archive.entries) {
                std::string there = entry.name;
                std::replace(there.begin(), there.end(), '/', '\\');
                known |= there == path && entry.content == Content(path);
            }
            EXPECT_TRUE(known) << path;
        }
        EXPECT_GE(restored, count) << ::testing::PrintToString(events.Texts(MessageKind::kWarning))
                                   << ::testing::PrintToString(events.Texts(MessageKind::kError));
    }
    // Entries that these bytes leave intact.
    std::size_t IntactBesides(const std::string& bytes, std::size_t begin, std::size_t end) const {
        const std::vector<std::size_t> starts = Starts(bytes);
        std::size_t intact = 0;
        for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
            intact += starts[i + 1] <= begin || end <= starts[i];
        }
        return intact;
    }
    // An archive as the data of a stored file of another one.
    void PutInner() {
        BuiltArchive inner;
        for (int i = 0; i < 4; ++i) {
            inner.entries.push_back({.name = "inner" + std::to_string(i), .content = Noise(60)});
        }
        archive.entries.insert(archive.entries.begin() + 2,
                               {.name = "inner.zip", .content = inner.Bytes()});
    }

    BuiltArchive archive;
};

TEST_F(ArchiveSearch, EveryPrefixReturnsTheEntriesThatItHolds) {
    PutInner();
    const std::string bytes = archive.Bytes();
    for (std::size_t length = 60; length < bytes.size(); length += 3) {
        ASSERT_NE(RunOn(bytes.substr(0, length)), RunOutcome::kCancelled);
        ExpectRight(IntactBesides(bytes, length, bytes.size()));
        ASSERT_FALSE(HasFailure()) << length;
    }
}

TEST_F(ArchiveSearch, EverySuffixReturnsTheEntriesThatItHolds) {
    PutInner();
    const std::string bytes = archive.Bytes();
    for (std::size_t start = 1; start < Starts(bytes).back(); start += 3) {
        RunOn(bytes.substr(start));
        ExpectRight(IntactBesides(bytes, 0, start));
        ASSERT_FALSE(HasFailure()) << start;
    }
}

TEST_F(ArchiveSearch, HoleAtAnyPositionCostsWhatLiesInIt) {
    PutInner();
    const std::string bytes = archive.Bytes();
    for (std::size_t at = 0; at + 40 < Starts(bytes).back(); at += 5) {
        for (const bool removed : {false, true}) {
            std::string damaged = bytes;
            damaged.replace(at, 40, removed ? "" : std::string(40, '\0'));
            RunOn(damaged);
            ExpectRight(IntactBesides(bytes, at, at + 40));
            ASSERT_FALSE(HasFailure()) << at << (removed ? " removed" : "");
        }
    }
}

TEST_F(ArchiveSearch, HoleAndALostDirectoryCostWhatLiesInIt) {
    PutInner();
    const std::string undamaged = archive.Bytes();
    const std::string bytes = undamaged.substr(0, Starts(undamaged).back());
    for (std::size_t at = 0; at + 40 < bytes.size(); at += 5) {
        std::string damaged = bytes;
        damaged.replace(at, 40, std::string(40, '\0'));
        RunOn(damaged);
        ExpectRight(IntactBesides(undamaged, at, at + 40));
        ASSERT_FALSE(HasFailure()) << at;
    }
}

TEST_F(ArchiveSearch, FlippedBitOfTheDirectoryCostsNothing) {
    const std::string bytes = archive.Bytes();
    for (std::size_t at = Starts(bytes).back(); at < bytes.size(); ++at) {
        const bool in_name = [&] {
            for (const BuiltEntry& entry : archive.entries) {
                const std::size_t name = bytes.rfind(entry.name);
                if (at >= name && at < name + entry.name.size()) {
                    return true;
                }
            }
            return false;
        }();
        if (in_name) {
            continue;  // nothing shows which of the two names is right
        }
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (at % 8)));
        RunOn(damaged);
        ExpectRight(archive.entries.size() - 1);
        ASSERT_FALSE(HasFailure()) << at - Starts(bytes).back();
    }
}

TEST_F(ArchiveSearch, LostEntriesAreNamedWithTheReason) {
    const std::string bytes = archive.Bytes();
    const std::vector<std::size_t> starts = Starts(bytes);
    std::string damaged = bytes.substr(0, starts.back() - 100);
    damaged[starts[1] - 20] ^= 1;
    EXPECT_EQ(RunOn(damaged), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 2);
    EXPECT_TRUE(result.directory_damaged);
    EXPECT_THAT(
        events.Texts(MessageKind::kWarning),
        ElementsAre("This is no zip archive, or its end is missing. It was searched for its "
                    "files.",
                    StartsWith("a.txt is not restored: "),
                    "last is not restored: the archive ends before its data."));
}

TEST_F(ArchiveSearch, DirectoryGivesAttributesAndTimes) {
    archive.entries[0].external = 0x21;
    std::string bytes = archive.Bytes();
    bytes.resize(bytes.size() - 10);
    RunOn(bytes);
    EXPECT_EQ(files.Info("C:\\Out\\a.txt").attributes & 1u, 1u);
}

TEST_F(ArchiveSearch, SoundDirectoryIsNotSearched) {
    const std::string bytes = archive.Bytes();
    const std::size_t second = bytes.rfind("PK\1\2", bytes.rfind("PK\1\2") - 1);
    // The last two entries are in the archive, and not in its directory.
    std::string fewer = bytes.substr(0, second);
    const std::size_t start = bytes.find("PK\1\2");
    BuiltArchive four = archive;
    four.entries.resize(4);
    std::string tail = four.Bytes();
    tail = tail.substr(tail.rfind("PK\5\6"));
    std::string number;
    zip::Put32(number, static_cast<std::uint32_t>(start));
    fewer += tail.replace(zip::end_record::kDirectoryOffset, 4, number);
    EXPECT_EQ(RunOn(fewer), RunOutcome::kComplete);
    EXPECT_THAT(Restored(), ElementsAre("Sub\\", "Sub\\b.txt", "Sub\\streamed", "a.txt", "stored"));
    EXPECT_THAT(events.Texts(MessageKind::kWarning), IsEmpty());
}

TEST_F(ArchiveSearch, WithoutTheOptionTheRunFailsAsBefore) {
    options.search = false;
    std::string bytes = archive.Bytes();
    bytes[bytes.rfind("PK\1\2")] = '?';
    EXPECT_EQ(RunOn(bytes), RunOutcome::kFailed);
    EXPECT_FALSE(files.Exists("C:\\Out\\last"));
}

TEST_F(ArchiveSearch, KeptBrokenFileHasANameThatSaysSo) {
    options.keep_broken = true;
    const std::string bytes = archive.Bytes();
    const std::vector<std::size_t> starts = Starts(bytes);
    EXPECT_EQ(RunOn(bytes.substr(0, starts.back() - 100)), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 1);
    EXPECT_FALSE(files.Exists("C:\\Out\\last"));
    EXPECT_EQ(Content("last.damaged"), Noise(200, 4).substr(0, 100));
}

// Compressed data is kept up to the damage, also in an archive whose directory is sound.
TEST_F(ArchiveSearch, KeptBrokenFileOfASoundDirectory) {
    options.keep_broken = true;
    archive.entries = {{.name = "prose", .content = Prose(400'000), .method = 8}};
    std::string bytes = archive.Bytes();
    bytes[bytes.size() / 2] ^= 64;
    EXPECT_EQ(RunOn(bytes), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 1);
    const std::string kept = Content("prose.damaged");
    ASSERT_GT(kept.size(), 100'000u);
    EXPECT_EQ(kept.substr(0, 100'000), Prose(400'000).substr(0, 100'000));
    EXPECT_FALSE(files.Exists("C:\\Out\\prose"));
}

TEST_F(ArchiveSearch, VerifyChecksEverythingAndWritesNothing) {
    options.verify_only = true;
    const std::string bytes = archive.Bytes();
    EXPECT_EQ(RunOn(bytes), RunOutcome::kComplete);
    EXPECT_EQ(result.entries, archive.entries.size());
    EXPECT_EQ(result.failed, 0);
    std::string damaged = bytes;
    damaged[Starts(bytes)[1] - 20] ^= 1;
    EXPECT_EQ(RunOn(damaged), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 1);
    EXPECT_THAT(Warning(), StartsWith("a.txt cannot be restored: "));
    EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ArchiveSearch, CancelEndsTheSearch) {
    archive.entries = {{.name = "large", .content = Noise(1 << 20)}};
    std::string bytes = archive.Bytes();
    bytes.resize(bytes.size() - 10);
    files.Put(options.archive, bytes);
    events.cancel_at = 1;
    std::atomic<bool> cancelled = false;
    events.on_overall = [&] { cancelled = true; };
    files.before = [&](const std::string& call, const std::string&) {
        while (call == "Read" && !cancelled) {
            std::this_thread::yield();
        }
    };
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    files.before = nullptr;
    EXPECT_FALSE(files.Exists("C:\\Out\\large"));
}

// Archives that are made to waste time or memory.
class SearchBounds : public ::testing::Test {
  protected:
    zip::Directory Search(const std::string& bytes) {
        StringSource source(bytes);
        zip::Directory directory;
        SearchArchive(
            source, machine.code_page(), machine.clock, [](std::uint64_t) {}, directory, limits);
        bytes_read = source.bytes_read;
        return directory;
    }
    // A local header with this method that states this many bytes.
    static std::string Header(std::uint16_t method, std::uint32_t size, std::uint16_t flags = 0) {
        std::string header;
        zip::Put32(header, zip::kLocalSignature);
        zip::Put16(header, 20);
        zip::Put16(header, flags);
        zip::Put16(header, method);
        zip::Put32(header, 0);
        zip::Put32(header, 12345);
        zip::Put32(header, size);
        zip::Put32(header, size);
        zip::Put16(header, 1);
        zip::Put16(header, 0);
        return header + "x";
    }
    static std::string Repeated(const std::string& bytes, std::size_t size) {
        std::string all;
        while (all.size() < size) {
            all += bytes;
        }
        return all;
    }

    // The local headers and data of ten files, or their central records.
    static std::string TenFiles(bool central) {
        BuiltArchive archive;
        archive.entries =
            EntriesNamed({"a0", "a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "a9"});
        const std::string bytes = archive.Bytes();
        const std::size_t directory = bytes.find("PK\1\2");
        return central ? bytes.substr(directory, bytes.find("PK\5\6") - directory)
                       : bytes.substr(0, directory);
    }

    TestMachine machine;
    zip::SearchLimits limits;
    std::uint64_t bytes_read = 0;
};

TEST_F(SearchBounds, NothingButSignatures) {
    const std::string bytes = Repeated("PK\3\4", 4 << 20);
    EXPECT_THAT(Search(bytes).entries, IsEmpty());
    EXPECT_LE(bytes_read, 2 * bytes.size());
}

TEST_F(SearchBounds, HeadersThatEachStateTheRestOfTheArchive) {
    for (const std::uint16_t flags : {std::uint16_t{0}, zip::flag::kDescriptor}) {
        const std::string bytes = Repeated(Header(0, 1'500'000, flags), 2 << 20);
        const zip::Directory directory = Search(bytes);
        EXPECT_THAT(directory.entries, IsEmpty());
        EXPECT_LE(bytes_read, 16 * bytes.size() + (std::uint64_t{128} << 20));
    }
}

TEST_F(SearchBounds, HeadersAreLimited) {
    limits.headers = 4;
    EXPECT_EQ(Search(TenFiles(false)).entries.size(), 4u);
}

TEST_F(SearchBounds, LostEntriesAreLimited) {
    limits.lost = 3;
    EXPECT_EQ(Search(TenFiles(true)).lost.size(), 3u);
    EXPECT_EQ(Search(TenFiles(true)).lost_unnamed, 7u);
    EXPECT_EQ(Search(Repeated(Header(8, 100), 10 * 31)).lost_unnamed, 7u);
}

// Two local headers of one name, of which a directory at a wrong offset describes one.
TEST_F(SearchBounds, CandidatesOfOneNameAreLimited) {
    BuiltArchive archive;
    archive.entries = {{.name = "a", .content = "first"}, {.name = "a", .content = "second"}};
    const std::string bytes = archive.Bytes();
    const std::size_t second = bytes.rfind("PK\1\2");
    const std::size_t first = bytes.find("PK\1\2");
    const std::size_t length = second - first;
    for (limits.same_name = 1; limits.same_name <= 2; ++limits.same_name) {
        std::size_t lost = 0;
        for (const std::size_t described : {first, second}) {
            const std::string record = bytes.substr(described, length);
            lost += Search(bytes.substr(0, first) +
                           Over(record, zip::central_record::kOffset, Number32(9999)))
                        .lost.size();
        }
        EXPECT_EQ(lost, limits.same_name == 1 ? 1u : 0u);
    }
}

TEST_F(SearchBounds, DirectoriesBeyondTheLimitLoseNoFile) {
    limits.directories = 1;
    std::string bytes;
    for (const char* const name : {"a", "b", "c"}) {
        BuiltArchive archive;
        archive.entries = EntriesNamed({name});
        bytes += archive.Bytes();
    }
    EXPECT_EQ(Search(bytes).entries.size(), 3u);
}

TEST_F(SearchBounds, NamesAreLimited) {
    limits.name_bytes = 6;
    EXPECT_EQ(Search(TenFiles(true)).lost_unnamed, 7u);
    EXPECT_EQ(Search(Repeated(Header(8, 100), 10 * 31)).lost_unnamed, 4u);
}

TEST_F(SearchBounds, NamesOfLostEntriesAreLimited) {
    std::string header = Header(8, 100);
    header.replace(zip::local_header::kNameLength, 2, "\xFF\x7F");
    const std::string bytes = Repeated(header, 1 << 17);
    std::size_t kept = 0;
    const zip::Directory directory = Search(bytes);
    for (const zip::LostEntry& lost : directory.lost) {
        kept += lost.entry.name.size();
    }
    EXPECT_LE(kept, std::size_t{33} << 20);
    EXPECT_GT(directory.lost_unnamed, 0u);
}

}  // namespace
}  // namespace vantrel::test
