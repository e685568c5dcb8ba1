// How files are called and found on every machine.

#include "tests/platform/seam_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;

class SeamNames : public Seam {
  protected:
    // Writes under the name and finds it in every way.
    void RoundTrip(const std::string& name) {
        const std::string path = Put(name, name);
        EXPECT_EQ(Content(path), name);
        EXPECT_THAT(Names(folder()), ElementsAre(name));
        const auto info = files().Find(path);
        ASSERT_TRUE(info.has_value());
        EXPECT_EQ(info->name, name);
        files().RemoveFile(path);
        EXPECT_TRUE(Names(folder()).empty());
    }
};

TEST_F(SeamNames, FileOpensInAnyLetterCase) {
    Put("MixedCase.Txt", "bytes");
    EXPECT_EQ(Content(In("mixedcase.tXT")), "bytes");
    EXPECT_EQ(Content(In("MIXEDCASE.TXT")), "bytes");
}

TEST_F(SeamNames, FoldersOnTheWayAreFoundInAnyLetterCase) {
    MakeFolder("Outer");
    MakeFolder("Outer\\Inner");
    Put("Outer\\Inner\\File.txt", "bytes");
    EXPECT_EQ(Content(In("OUTER\\inner\\FILE.TXT")), "bytes");
    EXPECT_THAT(Names(In("outer\\INNER")), ElementsAre("File.txt"));
}

TEST_F(SeamNames, WritingInAnotherLetterCaseWritesTheSameFile) {
    Put("Name.txt", "old");
    Put("NAME.TXT", "new");
    EXPECT_THAT(Names(folder()), ElementsAre("Name.txt"));
    EXPECT_EQ(Content(In("Name.txt")), "new");
    platform::AppendToFile(files(), In("name.TXT"), "er");
    EXPECT_EQ(Content(In("Name.txt")), "newer");
}

TEST_F(SeamNames, NonAsciiLettersIgnoreCaseToo) {
    Put("\xC3\x84rger \xD0\x96.txt", "bytes");                     // Ärger Ж
    EXPECT_EQ(Content(In("\xC3\xA4RGER \xD0\xB6.TXT")), "bytes");  // äRGER ж
    EXPECT_EQ(OpenError(In("ARGER \xD0\x96.txt"), OpenMode::kRead), kFileNotFound);
}

TEST_F(SeamNames, FindAnswersTheNameAsOnDisk) {
    MakeFolder("SubFolder");
    Put("SubFolder\\ReadMe.TXT");
    EXPECT_EQ(files().Find(In("subfolder\\readme.txt"))->name, "ReadMe.TXT");
    EXPECT_EQ(files().Find(In("SUBFOLDER"))->name, "SubFolder");
    EXPECT_EQ(files().Find(In("SUBFOLDER\\"))->name, "SubFolder");
}

TEST_F(SeamNames, NamesInTheCodePageRoundTrip) { RoundTrip("caf\xC3\xA9 \xE2\x82\xAC.txt"); }

TEST_F(SeamNames, NamesBeyondTheCodePageRoundTrip) {
    RoundTrip("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E.txt");  // Japanese
    RoundTrip("\xD0\x94\xD0\xB0\xD0\xBD\xD0\xBD\xD1\x8B\xD0\xB5");
}

TEST_F(SeamNames, AstralNamesRoundTrip) { RoundTrip("\xF0\x9F\x92\xBE disk \xF0\x9D\x84\x9E"); }

TEST_F(SeamNames, TrailingDotsAndBlanksAreKept) {
    RoundTrip("dots...");
    RoundTrip("blank ");
    RoundTrip(" .hidden");
}

TEST_F(SeamNames, DeviceNamesAreFileNames) {
    RoundTrip("NUL");
    RoundTrip("con.txt");
}

TEST_F(SeamNames, SlashesAndRepeatedSeparatorsCountAsOne) {
    MakeFolder("sub");
    Put("sub\\a", "bytes");
    EXPECT_EQ(Content(folder() + "/sub//a"), "bytes");
    EXPECT_EQ(Content(folder() + "\\\\sub\\\\a"), "bytes");
}

TEST_F(SeamNames, DotNamesAreResolved) {
    MakeFolder("sub");
    Put("a", "bytes");
    EXPECT_EQ(Content(In("sub\\..\\.\\a")), "bytes");
}

TEST_F(SeamNames, PathOf300CharactersAndDeeperWorks) {
    std::string path;
    const std::string level(50, 'd');
    while (In(path).size() < 1000) {
        path += (path.empty() ? "" : "\\") + level;
        MakeFolder(path);
    }
    const std::string file = path + "\\File.txt";
    Put(file, "deep");
    EXPECT_EQ(Content(In(file)), "deep");
    EXPECT_THAT(Names(In(path)), ElementsAre("File.txt"));
    files().Rename(In(file), In(path + "\\b"));
    EXPECT_EQ(files().Find(In(path + "\\B"))->name, "b");
    EXPECT_TRUE(files().SameFile(In(path + "\\B"), In(path + "\\b")));
}

TEST_F(SeamNames, NameOf255CharactersIsTheLongest) { RoundTrip(std::string(255, 'n')); }

TEST_F(SeamNames, WildcardsFindNothing) {
    Put("abc");
    EXPECT_FALSE(Exists(In("a*")));
    EXPECT_FALSE(Exists(In("ab?")));
}

}  // namespace
}  // namespace vantrel::test
