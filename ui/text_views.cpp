#include "ui/text_views.h"

#include <algorithm>
#include <functional>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "forms/desktop.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

// Bytes of a file as a text that a window can show: a NUL would end it.
std::string Shown(forms::Program& program, std::string bytes) {
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
        buffer += Shown(program, line);
        box.Append(buffer);
        buffer = program.globals.CrLf;
    }
}

// Empties the box and lets `fill` fill it, when the file is there.
void Show(forms::Program& program, const std::string& path, forms::TextBox& box,
          const std::function<void()>& fill) {
    box.SetText("");
    box.Refresh();
    if (clsFiles(program).Exist(path, true)) {
        program.desktop.DoEvents();
        try {
            fill();
        } catch (const Error& error) {
            // Gone while the events ran: as if it had not been there.
            if (error.number() != error_number::kFileNotFound) throw;
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
             [&] { box.SetText(Shown(program, ReadAtOnce(program.machine.files, path))); });
    });
}

}  // namespace vantrel
