#include "ui/text_views.h"

#include <algorithm>
#include <functional>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "forms/desktop.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

// The bytes of a file as text for a control. A NUL, which would end the text, becomes a space.
std::string ToDisplayText(forms::Program& program, std::string bytes) {
    std::replace(bytes.begin(), bytes.end(), '\0', ' ');
    return program.machine.code_page.Decode(bytes);
}

std::string ReadAtOnce(platform::FileSystem& files, const std::string& path) {
    auto file = files.Open(path, platform::OpenMode::kRead);
    std::string bytes(static_cast<std::size_t>(file->Size()), '\0');
    bytes.resize(file->Read(bytes.data(), bytes.size()));
    file->Close();
    return bytes;
}

void AppendLines(forms::Program& program, const std::string& path, forms::TextBox& box) {
    const std::string bytes = platform::ReadWholeFile(program.machine.files, path);
    std::string buffer;
    for (const std::string& line : platform::SplitLines(bytes)) {
        buffer += ToDisplayText(program, line);
        box.Append(buffer);
        buffer = program.globals.CrLf;
    }
}

// Empties the box and, when the file exists, calls `fill`.
void Show(forms::Program& program, const std::string& path, forms::TextBox& box,
          const std::function<void()>& fill) {
    box.SetText("");
    box.Refresh();
    if (clsFiles(program).Exist(path, true)) {
        program.desktop.DoEvents();
        try {
            fill();
        } catch (const Error& error) {
            // A file that vanished while the events ran counts as missing.
            if (error.number() != error_number::kFileNotFound) {
                throw;
            }
        }
    }
    box.Refresh();
}

}  // namespace

void Show_INI(forms::Program& program, const std::string& name, forms::TextBox& box,
              forms::Label& contents) {
    Reported("clsFiles:Show_INI Method", [&] {
        const forms::Hourglass hourglass(program.desktop);
        const std::string path = program.InApplicationFolder(name);
        Show(program, path, box, [&] { AppendLines(program, path, box); });
        if (program.machine.code_page.Upper(name) != "VANTREL.LOG") {
            contents.SetCaption("INI File Contents - " + name);
        }
    });
}

void Show_INIQuick(forms::Program& program, const std::string& name, forms::TextBox& box) {
    Reported("clsFiles:Show_INIQuick Method", [&] {
        const forms::Hourglass hourglass(program.desktop);
        const std::string path = program.InApplicationFolder(name);
        Show(program, path, box,
             [&] { box.SetText(ToDisplayText(program, ReadAtOnce(program.machine.files, path))); });
    });
}

}  // namespace vantrel
