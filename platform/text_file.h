// Whole small files and lines, on the seam: what the program's own data files (sets, log, list) are
// read and written with. Bytes in, bytes out; code pages are the caller's business.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace vantrel::platform {

// All bytes of a file. Raises as FileSystem::Open does.
std::string ReadWholeFile(FileSystem& files, const std::string& path);

// Creates or empties the file and writes `bytes`.
void WriteWholeFile(FileSystem& files, const std::string& path, std::string_view bytes);

// The same; the bytes are on the disk when it returns.
void WriteFlushed(FileSystem& files, const std::string& path, std::string_view bytes);

// Appends `bytes` in one write, creating the file when it is missing.
void AppendToFile(FileSystem& files, const std::string& path, std::string_view bytes);

// A path in the folder of `path` where nothing stands, for a scratch file: "~Vantrel.new" or, where
// that is taken, "~Vantrel1.new" and so on. Raises 58 when 1,000 such names are taken, and as
// FileSystem::Find does.
std::string UnusedPathBeside(FileSystem& files, const std::string& path);

// Exchanges the whole content in one step: after a crash the file holds the old bytes or the new
// ones. Writes a scratch file beside it (UnusedPathBeside), which is gone afterwards either way.
// A read-only or locked file stays as it is and raises 70; hidden and other attributes are kept.
void ReplaceWholeFile(FileSystem& files, const std::string& path, std::string_view bytes);

// Makes a file that is not there yet, in one step: after a crash it is there whole or not at all.
// Raises 58, and leaves what is there, when the name turns out to be taken. The same scratch file.
void MakeWholeFile(FileSystem& files, const std::string& path, std::string_view bytes);

// Lines without their ends. CR LF, CR and LF all end a line; a last line needs no end; byte 1A is
// an ordinary byte. A text that ends in a line end has no empty line after it.
std::vector<std::string> SplitLines(std::string_view bytes);

}  // namespace vantrel::platform
