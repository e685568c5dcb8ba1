// A folder to back up at level 1 and the archive that a backup of it makes: for tests that damage
// or forge an earlier archive.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "tests/support/memory_file_system.h"
#include "zip/writer/archive_writer.h"

namespace vantrel::test {

// Contents by name below C:\Data: compressed, stored, and two chunks.
const std::map<std::string, std::string>& EarlierSamples();
void PutEarlierSamples(MemoryFileSystem& files);

// A backup of C:\Data into C:\New.zip over the archive `earlier`, "" for none, unattended.
struct SampleRun {
    zip::WriterResult result;
    std::string archive;
    std::vector<std::string> lines;  // of information, without those about single files
};
SampleRun BackUpSamples(MemoryFileSystem& files, const platform::Machine& machine,
                        const std::string& earlier, int threads = 1);

// Whether `archive` is right: read by the strict reader, it has the files of C:\Data. Otherwise
// what is wrong.
std::string WrongIn(const std::string& archive, const MemoryFileSystem& files);

// The mark of the archives that these backups make.
std::string SampleMark();

}  // namespace vantrel::test
