#include "protect/clsCfg.h"

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/product.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr const char* kLineEnd = "\r\n";
// The label names the file class; callers know it in this form.
constexpr const char* kCreateLabel = "clsFiles:Create_CFG Method";
constexpr std::size_t kHeaderLines = 7;  // skipped unread by every reader

std::string WithoutBackslash(std::string line) {
    if (!line.empty() && line.back() == '\\') {
        line.pop_back();
    }
    return line;
}

// Other editors may leave the last line without its end. An entry appended there would become part
// of that line.
bool EndsItsLastLine(const std::string& text) {
    return text.empty() || text.back() == '\n' || text.back() == '\r';
}

}  // namespace

std::string clsCfg::Upper(const std::string& text) const {
    return program_.machine.code_page.Upper(text);
}

std::string clsCfg::EmptyList() {
    std::string text;
    for (const std::string& line : product::FileHeader()) {
        text += line + kLineEnd;
    }
    text += std::string(";  Secure Data Directories  ") + kLineEnd + ";" + kLineEnd;
    return text + kLineEnd;
}

void clsCfg::Create_CFG(const std::string& path) {
    Reported(kCreateLabel,
             [&] { platform::ReplaceWholeFile(program_.machine.files, path, EmptyList()); });
}

bool clsCfg::CreateMissing() {
    return Reported(kCreateLabel, [&] {
        try {
            platform::MakeWholeFile(program_.machine.files, ListPath(), EmptyList());
            return true;
        } catch (const Error& error) {
            if (error.number() != error_number::kFileExists) {
                throw;
            }
            return false;
        }
    });
}

// A list with fewer lines than the header is damaged, not empty: a restore with an empty list would
// overwrite every protected folder.
std::string clsCfg::ReadList() {
    std::string list = platform::ReadWholeFile(program_.machine.files, ListPath());
    if (platform::SplitLines(list).size() >= kHeaderLines) {
        return list;
    }
    throw Error(error_number::kPastEnd, product::kName,
                ErrorText(error_number::kPastEnd) + ": " + ListPath());
}

std::vector<std::string> clsCfg::Lines() {
    auto lines = platform::SplitLines(ReadList());
    lines.erase(lines.begin(), lines.begin() + kHeaderLines);
    for (std::string& line : lines) {
        line = WithoutBackslash(program_.machine.code_page.Decode(line));
    }
    return lines;
}

// The last "\" is removed after the test for an empty line: a line "\" is an empty entry.
std::vector<std::string> clsCfg::ReturnProtected() {
    const auto lines = platform::SplitLines(ReadList());
    std::vector<std::string> entries;
    for (std::size_t i = kHeaderLines; i < lines.size(); ++i) {
        if (lines[i].empty()) {
            continue;
        }
        entries.push_back(WithoutBackslash(program_.machine.code_page.Decode(lines[i])));
    }
    return entries;
}

std::unordered_set<std::string> clsCfg::UpperEntries() {
    std::unordered_set<std::string> entries;
    for (const std::string& line : Lines()) {
        entries.insert(Upper(line));
    }
    return entries;
}

bool clsCfg::IsProtected(const std::string& path) { return UpperEntries().contains(Upper(path)); }

// Writes the scratch file, which then replaces the list in one step: the list exists at every
// moment.
void clsCfg::Protected_Delete(forms::Tree& tree) {
    auto& files = program_.machine.files;
    const auto lines = platform::SplitLines(ReadList());
    const std::string scratch = program_.InApplicationFolder("Vantrel.Cft");
    if (clsFiles(program_).Exist(scratch, true)) {
        files.RemoveFile(scratch);
    }

    const std::string dropped = Upper(tree.At(tree.Selected()).tag);
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string line = i < kHeaderLines ? lines[i] : WithoutBackslash(lines[i]);
        const bool drop =
            i >= kHeaderLines && Upper(program_.machine.code_page.Decode(line)) == dropped;
        if (!drop) {
            text += line + kLineEnd;
        }
    }
    platform::WriteFlushed(files, scratch, text);
    files.Replace(scratch, ListPath());
    tree.SetImages(tree.Selected(), kClosedFolder, kOpenFolder);
}

void clsCfg::Protected_Add(forms::Tree& tree) {
    auto& code_page = program_.machine.code_page;
    const auto entry = code_page.Encode(Upper(tree.At(tree.Selected()).tag));
    if (!entry) {
        RaiseError(error_number::kBadFileName);
    }
    // In one step: a truncated entry would protect nothing and spoil the next one.
    auto& files = program_.machine.files;
    std::string list = ReadList();
    if (!EndsItsLastLine(list)) {
        list += kLineEnd;
    }
    platform::ReplaceWholeFile(files, ListPath(), list + *entry + kLineEnd);
    tree.SetImages(tree.Selected(), kProtectedFolder, kProtectedFolder);
}

}  // namespace vantrel
