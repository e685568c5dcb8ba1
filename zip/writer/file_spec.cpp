#include "zip/writer/file_spec.h"

#include "zip/base/paths.h"

namespace vantrel::zip {

SourceSpec ParseFileSpec(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    const std::size_t slash = text.rfind('\\');
    const std::size_t folder_size = slash == std::string_view::npos ? 0 : slash + 1;
    SourceSpec spec;
    // The parent of "C:\Data\x" is "C:\Data", of "C:\x" it is "C:\".
    spec.folder = ParentOf(std::string(text.substr(0, folder_size)) + "x");
    if (folder_size < text.size()) {
        spec.mask = text.substr(folder_size);
    }
    return spec;
}

}  // namespace vantrel::zip
