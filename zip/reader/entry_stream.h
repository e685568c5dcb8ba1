// Decompression of an entry's data in portions, up to where the data itself ends. Pure functions.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "zip/base/bytes.h"
#include "zip/records/format.h"

namespace vantrel::zip {

// Bytes that are read, and decompressed, at a time.
constexpr std::size_t kStreamChunk = std::size_t{1} << 18;

// Returns the next packed bytes, valid until its next call; empty at the end.
using MorePacked = std::function<std::string_view()>;
using PutUnpacked = std::function<void(const std::uint8_t* data, std::size_t count)>;

// Passes the decompressed data to `put`, in order, until the stream ends (stored data: until there
// are no more bytes). Returns how many packed bytes belong to it. Raises 57 when the stream is
// damaged or ends early, and what the functions throw; the data before that point has been passed.
// `scratch` is memory for the output of one step.
std::uint64_t Unpack(Method method, const MorePacked& more, const PutUnpacked& put,
                     Buffer& scratch);

}  // namespace vantrel::zip
