#include "ui/set_facts.h"

#include "common/error.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

using State = LastArchive::State;
using Volumes = SetFacts::Volumes;

class SetFactsTest : public ProgramFixture {
  protected:
    SetFactsTest() { MakeSourceAndDestination(); }

    SetFacts FactsOf(const SetValues& values) {
        PutSet("A.INI", values);
        return ReadSetFacts(program, "A.INI");
    }
    // The last archive of a set that names this one.
    LastArchive ArchiveNamed(const std::string& folder, const std::string& file,
                             const std::string& multi_volume = "OFF") {
        std::string text = SetText({.multi_volume = multi_volume});
        text.replace(text.find("RestoreFromDrive="), 17, "RestoreFromDrive=" + folder);
        text.replace(text.find("RestoreFileName="), 16, "RestoreFileName=" + file);
        machine.PutFile("C:\\Vantrel\\A.INI", text);
        return ReadSetFacts(program, "A.INI").archive;
    }
};

TEST_F(SetFactsTest, SetWhoseFoldersAreThereHasNoProblem) {
    const SetFacts facts = FactsOf({});
    EXPECT_EQ(facts.missing_source, "");
    EXPECT_EQ(facts.missing_destination, "");
    EXPECT_EQ(facts.volumes, Volumes::kSuitable);
    EXPECT_EQ(facts.destination_root, "C:\\");
    EXPECT_EQ(facts.archive.state, State::kNone);
    EXPECT_FALSE(HasProblem(facts));
}

TEST_F(SetFactsTest, MissingSourceIsNamed) {
    const SetFacts facts = FactsOf({.files = "C:\\Gone\\*.*"});
    EXPECT_EQ(facts.missing_source, "C:\\Gone\\");
    EXPECT_TRUE(HasProblem(facts));
}

TEST_F(SetFactsTest, MissingDestinationIsNamedAsTheTabShowsIt) {
    const SetFacts facts = FactsOf({.to_drive = "Q:\\There"});
    EXPECT_EQ(facts.missing_destination, "Q:\\There\\");
    EXPECT_TRUE(HasProblem(facts));
}

TEST_F(SetFactsTest, FoldersOnTheNetworkAreNotAskedFor) {
    FaultyFileSystem counting(machine.files());
    platform::Machine counted = WithFiles(machine.machine(), counting);
    forms::Program its_program{counted, desktop, program.globals};
    PutSet("A.INI", {.files = "\\\\NAS\\A\\*.*", .to_drive = "\\\\NAS\\B\\"});
    counting.plan.before_call = [](const CallRecord& call) {
        EXPECT_FALSE(call.path.starts_with("\\\\")) << call.path;
    };
    const SetFacts facts = ReadSetFacts(its_program, "A.INI");
    counting.plan.before_call = nullptr;
    EXPECT_EQ(facts.missing_source + facts.missing_destination, "");
}

TEST_F(SetFactsTest, MultiVolumeNeedsARemovableDestination) {
    machine.AddDrive('A', platform::drive_type::kRemovable);
    machine.AddDrive('N', platform::drive_type::kRemote);
    EXPECT_EQ(FactsOf({.multi_volume = "ON"}).volumes, Volumes::kOnButFixed);
    EXPECT_EQ(FactsOf({.multi_volume = "ON", .to_drive = "N:\\"}).volumes,
              Volumes::kOnButNotRemovable);
    EXPECT_EQ(FactsOf({.multi_volume = "OFF", .to_drive = "A:\\"}).volumes,
              Volumes::kOffButRemovable);
    EXPECT_EQ(FactsOf({.multi_volume = "ON", .to_drive = "A:\\"}).volumes, Volumes::kSuitable);
    EXPECT_TRUE(HasProblem(FactsOf({.multi_volume = "ON"})));
}

TEST_F(SetFactsTest, LastArchiveHasItsSizeAndTime) {
    machine.PutFile("C:\\Backups\\WEEKLY.zip", std::string(5000, 'x'));
    machine.files().SetTimes("C:\\Backups\\WEEKLY.zip", {.modified = machine.clock.UtcNow()});
    const LastArchive archive = ArchiveNamed("C:\\Backups\\", "WEEKLY.zip");
    EXPECT_EQ(archive.state, State::kThere);
    EXPECT_EQ(archive.path, "C:\\Backups\\WEEKLY.zip");
    EXPECT_EQ(archive.bytes, 5000u);
    EXPECT_EQ(archive.when, "15/11/2026 13:05");
    EXPECT_FALSE(archive.is_spanned);
    EXPECT_TRUE(ArchiveNamed("C:\\Backups\\", "WEEKLY.zip", "ON").is_spanned);
}

TEST_F(SetFactsTest, LastArchiveOnTheApplicationsDriveIsFoundWithoutADrive) {
    machine.PutFile("C:\\Backups\\WEEKLY.zip", "x");
    EXPECT_EQ(ArchiveNamed("\\Backups\\", "WEEKLY.zip").state, State::kThere);
}

TEST_F(SetFactsTest, LastArchiveThatIsGoneIsMissing) {
    EXPECT_EQ(ArchiveNamed("C:\\Backups\\", "WEEKLY.zip").state, State::kMissing);
    machine.MakeFolders("C:\\Backups\\WEEKLY.zip");
    EXPECT_EQ(ArchiveNamed("C:\\Backups\\", "WEEKLY.zip").state, State::kMissing) << "a folder";
}

TEST_F(SetFactsTest, LastArchiveOnTheNetworkIsNamedAndNotAskedFor) {
    const LastArchive archive = ArchiveNamed("\\\\NAS\\B\\", "WEEKLY.zip");
    EXPECT_EQ(archive.state, State::kNotLooked);
    EXPECT_EQ(archive.path, "\\\\NAS\\B\\WEEKLY.zip");
}

TEST_F(SetFactsTest, NoSetAndAMissingSetHaveNoFacts) {
    EXPECT_FALSE(HasProblem(ReadSetFacts(program, "")));
    EXPECT_FALSE(HasProblem(ReadSetFacts(program, "GONE.INI")));
}

TEST_F(SetFactsTest, ArchiveThatMayNotBeAskedForIsNoError) {
    PutSet("A.INI", {});
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program its_program{failing, desktop, program.globals};
    ArchiveNamed("C:\\Backups\\", "WEEKLY.zip");
    faulty.plan.Inject({.kind = Call::kFind,
                        .number = error_number::kPermissionDenied,
                        .path_part = "WEEKLY.zip"});
    EXPECT_NO_THROW(ReadSetFacts(its_program, "A.INI"));
    EXPECT_EQ(faulty.plan.Fired(), 1);
}

}  // namespace
}  // namespace vantrel::test
