// Understanding one record of a central directory. Pure functions: they may be given any bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "zip/records/stored_entry.h"

namespace vantrel::zip {

// Bytes of a central record (APPNOTE 4.3.12) before name, extra fields and comment.
constexpr std::size_t kCentralSize = 46;

// Length of the whole record that starts with these `kCentralSize` bytes.
std::size_t CentralRecordLength(std::string_view fixed_part);

// Of one complete record. Extra fields of a wrong length are ignored. Times come from field 000A,
// else from 5455, else from the DOS time, which is local. Offset and disk are as stored.
struct CentralRecord {
    StoredEntry entry;
    std::uint32_t disk = 0;
    std::string_view disk_list;  // the field of disk_signs.h, "" if there is none; of the record
};
CentralRecord ParseCentralRecord(std::string_view record, platform::CodePage& code_page,
                                 platform::Clock& clock);

// A stored name as UTF-8: flagged as such; else from `unicode_path`, the body of a field 7075 (""
// if there is none) when it is valid (APPNOTE 4.6.9); else as it is when it is ASCII or valid
// UTF-8; else from the OEM code page.
std::string DecodeName(std::string_view raw, bool utf8_flag, std::string_view unicode_path,
                       platform::CodePage& code_page);

// A DOS date (high half) and time (APPNOTE 4.4.6), both local. What does not exist is brought back
// to the nearest that does.
platform::Ticks TicksOfDosTime(std::uint32_t date_time, platform::Clock& clock);

}  // namespace vantrel::zip
