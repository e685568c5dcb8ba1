// The disks of a set as one sequence of bytes, of which some are missing.
#include "tests/support/matchers.h"
#include "tests/zip/spanning_read_fixture.h"
#include "zip/disks/sector_reader.h"

namespace vantrel::test {
namespace {

using zip::DiskIdentity;
using zip::DiskSequence;
using zip::kUnknownSize;

class Sequence : public SpanningRead {
  protected:
    Sequence() {
        contents[0].replace(0, 8, "PK\7\10PK\3\4");  // by which a first disk is recognised
        box.Eject();
        box.disks.clear();
        for (const std::string& content : contents) {
            box.disks.push_back({.files = {{options.archive, content}}});
        }
        box.limits = false;
        box.Insert(0);
        feeder.disks = 3;
    }
    DiskSequence Open(const DiskIdentity& known) {
        const auto ask = [this](const zip::ComponentMessage& question) {
            return feeder.AskForDisk(question.text) == zip::Questions::DiskAnswer::kRetry;
        };
        return {files, options.archive, ask, known};
    }
    static std::string Zeros(std::size_t count) { return std::string(count, '\0'); }

    std::vector<std::string> contents = {Noise(1000, 1), Noise(700, 2), Noise(500, 3)};
    const std::string all = "PK\7\10PK\3\4" + contents[0].substr(8) + contents[1] + contents[2];
};

TEST_F(Sequence, EndsAfterTheKnownNumberOfDisks) {
    DiskSequence disks = Open({.disks = 3});
    EXPECT_EQ(disks.Size(), kUnknownSize);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(disks.Bytes(0, 5000), all);
        EXPECT_EQ(disks.Size(), all.size());
        EXPECT_EQ(disks.Bytes(all.size(), 1), "");
    }
    EXPECT_EQ(feeder.Wants(), (Strings{"2", "3", "1", "2", "3"}));
}

TEST_F(Sequence, LastDiskIsRecognisedByItsListedHead) {
    box.disks.push_back({.files = {{options.archive, Noise(500, 4)}}});
    feeder.at[2] = [this] { return feeder.Insert(3); };
    DiskIdentity known{.disks = 3};
    known.ListLast(500, contents[2]);
    EXPECT_EQ(Open(known).Bytes(0, 5000), all);
    ASSERT_EQ(feeder.Wants(), (Strings{"2", "3", "3"}));
    EXPECT_EQ(Feeder::Note(feeder.asked[2]), "The disk in the drive is another one.");
}

TEST_F(Sequence, WhatADamagedDirectoryStatesOfOtherDisksIsIgnored) {
    DiskIdentity known{.disks = 3};
    known.listed[1] = {12345, 0};
    known.records[1] = {77, "another", 0, false};
    EXPECT_EQ(Open(known).Bytes(0, 5000), all);
    EXPECT_EQ(feeder.Wants(), (Strings{"2", "3"}));
}

TEST_F(Sequence, MissingDiskIsAsLargeAsTheOneBeforeAndNamed) {
    feeder.missing = {1};
    DiskSequence disks = Open({.disks = 3});
    EXPECT_EQ(disks.Bytes(0, 5000), contents[0] + Zeros(1000) + contents[2]);
    EXPECT_EQ(disks.WhyUnreadable(0, 1000), "");
    EXPECT_EQ(disks.WhyUnreadable(999, 1001), "disk 2 is missing");
    EXPECT_EQ(disks.WhyUnreadable(1999, 3000), "disk 2 is missing");
    EXPECT_EQ(disks.WhyUnreadable(2000, 2500), "");
    EXPECT_EQ(disks.Available(1500), 500u);
    EXPECT_EQ(disks.Available(2000), 500u);
    EXPECT_EQ(disks.Available(0), 0u) << "disk 1 is not in the drive";
    EXPECT_EQ(disks.PositionOf(2, 5), 2005u);
}

TEST_F(Sequence, MissingFirstDiskHasNoBytes) {
    feeder.missing = {0};
    box.Insert(1);
    DiskSequence disks = Open({.disks = 3});
    EXPECT_EQ(disks.Bytes(0, 5000), contents[1] + contents[2]);
    EXPECT_EQ(disks.PositionOf(1, 5), 5u);
}

TEST_F(Sequence, UnknownNumberEndsBeforeTwoMissingDisks) {
    DiskSequence disks = Open({.disks = 0});
    // Disk 4 counts until disk 5 is missing as well.
    EXPECT_EQ(disks.Bytes(0, 5000), all + Zeros(500));
    EXPECT_EQ(disks.Size(), all.size());
    EXPECT_EQ(disks.Identity().disks, 3u);
    EXPECT_EQ(disks.Bytes(0, 5000), all);
    EXPECT_EQ(feeder.Wants(), (Strings{"2", "3", "4", "5", "1", "2", "3"}));
}

TEST_F(Sequence, UnknownNumberAndTheFirstTwoAreMissing) {
    feeder.missing = {0, 1};
    box.Eject();
    DiskSequence disks = Open({.disks = 0});
    EXPECT_EQ(disks.Bytes(0, 5000), "");
    EXPECT_EQ(disks.Size(), 0u);
    EXPECT_EQ(feeder.Wants(), (Strings{"1", "2"}));
}

TEST_F(Sequence, DiskThatWasReadCanBeMissingLater) {
    DiskSequence disks = Open({.disks = 3});
    EXPECT_EQ(disks.Bytes(0, 5000), all);
    EXPECT_EQ(disks.WhyUnreadable(0, 5000), "");
    feeder.missing = {0};
    EXPECT_EQ(disks.Bytes(0, 5000), Zeros(1000) + all.substr(1000));
    EXPECT_EQ(disks.WhyUnreadable(0, 5000), "disk 1 is missing");
    EXPECT_EQ(disks.Available(0), 1000u);
}

TEST_F(Sequence, PositionsOutsideOfTheSet) {
    DiskSequence disks = Open({.disks = 3});
    EXPECT_EQ(disks.AddressOf(5), 5u) << "nothing has been read";
    EXPECT_EQ(disks.PositionOf(0, 5), kUnknownSize);
    disks.Bytes(0, 5000);
    EXPECT_EQ(disks.PositionOf(3, 5), kUnknownSize);
    EXPECT_EQ(disks.PositionOf(~0u, 5), kUnknownSize);
    EXPECT_EQ(disks.PositionOf(1, ~std::uint64_t{0}), 1000 + kUnknownSize);
    EXPECT_EQ(disks.AddressOf(1699), zip::OffsetOnDisk(1, 699));
    EXPECT_EQ(disks.AddressOf(1700), zip::OffsetOnDisk(2, 0));
    EXPECT_EQ(disks.AddressOf(2200), zip::OffsetOnDisk(2, 500)) << "the end of the set";
    EXPECT_EQ(disks.AddressOf(kUnknownSize), zip::OffsetOnDisk(2, kUnknownSize - 1700));
    EXPECT_EQ(disks.Bytes(kUnknownSize, 1), "");
    EXPECT_EQ(disks.Available(kUnknownSize), 0u);
}

}  // namespace
}  // namespace vantrel::test
