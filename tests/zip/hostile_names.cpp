#include "tests/zip/hostile_tables.h"

namespace vantrel::test {

namespace {

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

BuiltEntry Named(const std::string& name) { return {.name = name, .content = "evil"}; }

HostileArchive OfNames(const std::string& trick, const Strings& names, const Strings& restored,
                       int failed, int reported) {
    std::vector<BuiltEntry> entries;
    for (const std::string& name : names) {
        entries.push_back(Named(name));
    }
    return {trick, Built(std::move(entries)), restored, failed, reported};
}

// Every one of them leads out of the destination, on one system or another.
Tricks NamesThatLeadOut() {
    return {
        OfNames("DotDotAtTheStart", {"../evil", "..\\evil", "../../evil"}, {}, 3, 3),
        OfNames("DotDotInside", {"a/../../evil", "a\\..\\..\\evil", "a/..\\../evil"}, {}, 3, 3),
        OfNames("DotDotAtTheEnd", {"..", "../", "a/..", "a\\..\\"}, {}, 4, 4),
        OfNames("DotDotWithDotsAndBlanks", {".. /evil", "... /evil", "../ evil", ".. . /evil"}, {},
                4, 4),
        OfNames("DotsOnly", {"./../evil", "a/./evil", ".../evil", "a/. /evil"}, {}, 4, 4),
        OfNames("EmptyComponents", {"a//evil", "a\\\\evil", "a/\\evil"}, {}, 3, 3),
        OfNames("NoName", {"", "/", "\\", "./"}, {}, 3, 3),
        OfNames("DrivePaths", {"C:evil", "C:\\evil", "c:/evil", "/C:/evil", "./C:evil"}, {}, 5, 5),
        OfNames("NetworkPaths", {"\\\\server\\share\\evil", "//server/share/evil", "\\/x/evil"}, {},
                3, 3),
        OfNames("DevicePaths",
                {"\\\\?\\C:\\evil", "\\\\.\\C:\\evil", "\\??\\C:\\evil", "//?/C:/evil"}, {}, 4, 4),
        OfNames("NulInside", {std::string("good\0/../evil", 13), std::string("\0", 1)}, {}, 2, 2),
        OfNames("LeadingSlashes", {"/one", "\\two"}, {"one", "two"}, 0, 2),
    };
}

// Names that Windows takes for something else than a file of that name.
Tricks NamesThatMeanSomethingElse() {
    return {
        OfNames("Streams", {"name:stream", "name::$DATA", "dir:x/evil"},
                {"dir_x\\", "dir_x\\evil", "name__$DATA", "name_stream"}, 0, 3),
        OfNames(
            "Devices", {"NUL", "con.txt", "aux /x", "Com1.tar.gz", "lpt\xC2\xB2", "CONIN$"},
            {"_CONIN$", "_Com1.tar.gz", "_NUL", "_con.txt", "_lpt\xC2\xB2", "aux_\\", "aux_\\x"}, 0,
            6),
        OfNames("TrailingDotsAndBlanks", {"name.", "name2 ", "dir. ./x", "name3. . ."},
                {"dir___\\", "dir___\\x", "name2_", "name3_____", "name_"}, 0, 4),
        OfNames("ForbiddenCharacters", {"a<b>c", "d|e", "f?g*", "h\"", "i\x01\x1F"},
                {"a_b_c", "d_e", "f_g_", "h_", "i__"}, 0, 5),
        OfNames("LongComponents", {Repeated("x", 255), Repeated("y", 256)}, {Repeated("x", 255)}, 1,
                1),
        OfNames("LongPaths", {"deep" + Repeated("/0123456789012345678901234567890", 1100)}, {}, 1,
                1),
        OfNames("NamesThatAreNoUtf", {"a\xFF", "\xC0\xAE\xC0\xAE/evil", "\xED\xA0\x80"},
                // Of the old code page, an overlong ".." among them; a lone surrogate stays one.
                {"a\xC2\xA0", "\xE2\x94\x94\xC2\xAB\xE2\x94\x94\xC2\xAB\\",
                 "\xE2\x94\x94\xC2\xAB\xE2\x94\x94\xC2\xAB\\evil", "\xED\xA0\x80"},
                0, 0),
    };
}

// Two entries, or an entry and what stands there, that are one path to Windows.
Tricks Collisions() {
    return {
        OfNames("SameNameTwice", {"n", "n", "n"}, {"n", "n (2)", "n (3)"}, 0, 2),
        OfNames("SameNameInOtherCase", {"Name", "nAME"}, {"Name", "nAME (2)"}, 0, 1),
        OfNames("SameNameAfterMapping", {"na?me", "na_me", "na*me"},
                {"na_me", "na_me (2)", "na_me (3)"}, 0, 3),
        OfNames("SameFolderInOtherCase", {"Dir/a", "dIR/b"}, {"Dir\\", "Dir\\a", "Dir\\b"}, 0, 0),
        OfNames("FileThenFolder", {"n", "n/evil", "n/", "N/x/y"}, {"n"}, 3, 3),
        OfNames("FolderThenFile", {"n/x", "n", "N"}, {"n\\", "n\\x"}, 2, 2),
        OfNames("FolderWhereAFileStands", {"file/evil", "FILE/x/evil", "file/"}, {}, 3, 4),
        OfNames("FileWhereAFolderStands", {"folder", "Folder"}, {"Folder (2)"}, 1, 2),
        {"TemporaryNamesOfOurs",
         Built({Named("~vantrel-1.tmp"), Named("file")}),
         {"~vantrel-1.tmp"},
         0,
         0,
         zip::RunOutcome::kComplete,
         {"file"}},
    };
}

}  // namespace

Tricks HostileNames() {
    Tricks all = NamesThatLeadOut();
    Append(all, NamesThatMeanSomethingElse());
    Append(all, Collisions());
    return all;
}

}  // namespace vantrel::test
