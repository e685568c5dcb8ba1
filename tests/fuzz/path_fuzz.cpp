// Any text as a path, cut and joined by every helper that does so. A second path is put together
// from the same bytes, one component for each of its lines, and must come apart as it was made.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "backupset/clsINI.h"
#include "common/path.h"
#include "common/utf.h"
#include "platform/machine_support.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/silent_desktop.h"
#include "tests/support/test_machine.h"
#include "zip/writer/source_scan.h"

namespace {

using vantrel::clsINI;
using vantrel::test::Demand;
namespace forms = vantrel::forms;
namespace utf = vantrel::utf;
namespace zip = vantrel::zip;

bool IsProperPrefix(const std::string& part, const std::string& whole) {
    return part.size() < whole.size() && whole.starts_with(part);
}

// What holds for every text, however little of a path it is.
void CheckEngineHelpers(const std::string& text) {
    Demand(text.starts_with(vantrel::path::Root(text)));
    Demand(vantrel::path::Name(text).find('\\') == std::string::npos);
    for (std::string path = text; !path.empty();) {
        const std::string parent = vantrel::path::Parent(path);
        Demand(parent.empty() || IsProperPrefix(parent, path));
        path = parent;
    }
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    const zip::SourceSpec spec = zip::ParseFileSpec(text);
    Demand(spec.mask.find('\\') == std::string::npos && !spec.mask.empty());
    if (quoted) {
        return;
    }
    const zip::SourceSpec in_quotes = zip::ParseFileSpec('"' + text + '"');
    Demand(in_quotes.folder == spec.folder && in_quotes.mask == spec.mask);
}

void CheckListHelpers(const std::string& text) {
    const std::string path = vantrel::path::Normalize(text);
    if (path.empty()) {
        return;
    }
    Demand(vantrel::path::Normalize(path) == path);
    const std::vector<std::string> chain = vantrel::path::Ancestors(path);
    Demand(chain.back() == path);
    for (std::size_t i = 1; i < chain.size(); ++i) {
        Demand(IsProperPrefix(chain[i - 1], chain[i]));
    }
}

void CheckSetParts(vantrel::forms::Program& program, const std::string& text) {
    clsINI ini(program);
    const std::string folder = ini.Backup_Parts(text, clsINI::kFolder);
    const std::string file = ini.Backup_Parts(text, clsINI::kFile);
    Demand(text.rfind('\\') == 0 ? (folder + file).empty() : folder + file == text);
    Demand(folder.empty() || folder.back() == '\\');
    Demand(file.find('\\') == std::string::npos);
    const std::string drive = ini.Backup_Parts(text, clsINI::kDrive);
    Demand(utf::Length(drive) <= 3);
    Demand(text.starts_with(drive) || drive == "C:\\");
}

void CheckCharacters(const std::string& text) {
    std::string joined;
    const std::size_t length = utf::Length(text);
    for (std::size_t i = 0; i < length; ++i) {
        Demand(utf::Left(text, i) == joined);
        joined += utf::At(text, i);
    }
    Demand(joined == text && utf::Left(text, length) == text && utf::At(text, length).empty());
}

void CheckCommandLine(const std::string& text) {
    const std::string parameter = vantrel::platform::ParameterText(text);
    Demand(text.ends_with(parameter));
    const std::size_t first = parameter.find_first_not_of(' ');
    Demand(first == 0 || first == std::string::npos);
    // A name in quotes, a blank and the text are the text.
    const std::string whole = "\"C:\\Program Files\\Vantrel.exe\" " + parameter;
    if (first == 0) {
        Demand(vantrel::platform::ParameterText(whole) == parameter);
    }
}

std::vector<std::string> Components(std::string_view input) {
    std::vector<std::string> components;
    while (!input.empty()) {
        std::string component;
        for (const char c : vantrel::test::TakeLine(input)) {
            if (c != '\\' && c != '/') {
                component += c;
            }
        }
        if (!component.empty()) {
            components.push_back(component);
        }
    }
    return components;
}

void CheckBuilt(const std::string& root, const std::vector<std::string>& components) {
    std::string path = root;
    std::vector<std::string> chain{vantrel::path::Normalize(root)};
    for (const std::string& component : components) {
        const std::string folder = path;
        path = vantrel::path::Join(folder, component);
        Demand(vantrel::path::Parent(path) == folder);
        Demand(vantrel::path::Name(path) == component);
        Demand(vantrel::path::Root(path) == root);
        const zip::SourceSpec spec = zip::ParseFileSpec(path);
        Demand(spec.folder == folder && spec.mask == component);
        Demand(vantrel::path::Normalize(path) == path &&
               vantrel::path::Normalize(path + "\\") == path);
        chain.push_back(path);
    }
    Demand(vantrel::path::Ancestors(vantrel::path::Normalize(path)) == chain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vantrel::test::TestMachine machine;
    static vantrel::test::SilentDesktop desktop;
    static vantrel::forms::Program program{machine.machine(), desktop};
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> components = Components(input);

    const std::string text(vantrel::test::TakeLine(input));
    CheckEngineHelpers(text);
    CheckListHelpers(text);
    CheckSetParts(program, text);
    CheckCharacters(text);
    CheckCommandLine(text);
    CheckBuilt("C:\\", components);
    CheckBuilt("\\\\server\\share\\", components);
    return 0;
}
