// Names that the short, friendly forms of the system's calls would change or refuse.
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

class Win32Names : public Win32Test {
  protected:
    // Every deed that takes a name, on a file called `name`.
    void WorksThroughout(const std::string& name) {
        SCOPED_TRACE(name);
        const std::string path = Put(name, "first");
        EXPECT_EQ(Names(folder()), std::vector<std::string>{name});
        EXPECT_EQ(files().Find(path)->name, name);
        EXPECT_EQ(Content(path), "first");
        files().Replace(Put("scratch", "second"), path);
        EXPECT_EQ(Content(path), "second");
        files().SetAttributes(path, platform::attribute::kHidden);
        EXPECT_TRUE(files().Find(path)->IsHiddenOrSystem());
        EXPECT_TRUE(files().SameFile(path, path));
        files().Rename(path, In("renamed"));
        files().Rename(In("renamed"), path);
        files().RemoveFile(path);
        EXPECT_EQ(Names(folder()), std::vector<std::string>{});
        files().MakeFolder(path);
        EXPECT_TRUE(files().Find(path)->IsFolder());
        EXPECT_EQ(Names(path), std::vector<std::string>{});
        files().RemoveFolder(path);
    }
};

TEST_F(Win32Names, TrailingDotsAndBlanksReachTheDisk) {
    for (const char* name : {"a.", "a...", "a ", "a . ", " a"}) {
        WorksThroughout(name);
    }
}

TEST_F(Win32Names, TrailingDotMakesAnotherFile) {
    Put("a", "plain");
    Put("a.", "dotted");
    EXPECT_EQ(Content(In("a")), "plain");
    EXPECT_EQ(Content(In("a.")), "dotted");
    EXPECT_FALSE(files().SameFile(In("a"), In("a.")));
}

TEST_F(Win32Names, DeviceNamesAreFileNames) {
    for (const char* name : {"CON", "nul", "aux.txt", "COM1", "lpt1.ini"}) {
        WorksThroughout(name);
    }
}

TEST_F(Win32Names, NamesBeyondTheCodePageAreWhole) {
    WorksThroughout("T\xC3\xA4glich.ini");
    WorksThroughout("\xE4\xB8\xAD\xE6\x96\x87 \xD0\x96 \xF0\x9F\x98\x80.txt");
}

TEST_F(Win32Names, LetterCaseOfANameIsKeptAndIgnored) {
    Put("MixedCase.TXT");
    EXPECT_EQ(files().Find(In("mixedcase.txt"))->name, "MixedCase.TXT");
    EXPECT_EQ(Content(In("MIXEDCASE.txt")), "text");
}

// Wine finds the old spelling under the new one, and calls that done.
TEST_F(Win32Names, RenameMayChangeLetterCaseOnlyExceptUnderWine) {
    Put("MixedCase.TXT");
    files().Rename(In("MixedCase.TXT"), In("mixedCASE.txt"));
    const std::string name = UnderWine() ? "MixedCase.TXT" : "mixedCASE.txt";
    EXPECT_EQ(Names(folder()), std::vector<std::string>{name});
}

TEST_F(Win32Names, PathOf300CharactersWorks) {
    std::string deep = folder();
    while (deep.size() < 300) {
        deep += "\\" + std::string(40, 'd');
        files().MakeFolder(deep);
    }
    const std::string path = deep + "\\file.txt";
    platform::WriteWholeFile(files(), path, "deep");
    EXPECT_EQ(Content(path), "deep");
    EXPECT_EQ(Names(deep), std::vector<std::string>{"file.txt"});
    EXPECT_EQ(files().Find(path)->size, 4u);
    platform::ReplaceWholeFile(files(), path, "deeper");
    files().Rename(path, deep + "\\other.txt");
    EXPECT_EQ(Content(deep + "\\other.txt"), "deeper");
    EXPECT_GT(machine().drives.FreeBytes(deep), 0u);
    EXPECT_TRUE(files().SameFile(deep + "\\other.txt", deep + "\\.\\OTHER.txt"));
}

TEST_F(Win32Names, NameOf256CharactersIsRefused) {
    Put(std::string(255, 'n'));
    EXPECT_EQ(ErrorOf([&] { Put(std::string(256, 'n')); }), error_number::kBadFileName);
    EXPECT_FALSE(files().Find(In(std::string(256, 'n'))));
}

TEST_F(Win32Names, ColonNeverMeansAStreamOfAFile) {
    const std::string host = Put("host", "text");
    EXPECT_EQ(ErrorOf([&] { Put("host:stream", "hidden"); }), error_number::kBadFileName);
    EXPECT_FALSE(files().Find(host + ":stream"));
    EXPECT_EQ(Content(host), "text");
}

TEST_F(Win32Names, WildcardsFindNothing) {
    Put("a.txt");
    EXPECT_FALSE(files().Find(In("*.txt")));
    EXPECT_FALSE(files().Find(In("?.txt")));
}

// Windows keeps names as they come; Wine turns them into UTF-8 of the host, which has no such form.
TEST_F(Win32Names, LoneSurrogateNameRoundTripsButIsRefusedUnderWine) {
    const std::string name = platform::Narrow(L"a\xD800z");
    if (!UnderWine()) {
        return WorksThroughout(name);
    }
    EXPECT_EQ(ErrorOf([&] { Put(name); }), error_number::kFileNotFound);
    EXPECT_EQ(Names(folder()), std::vector<std::string>{});
}

}  // namespace
}  // namespace vantrel::test
