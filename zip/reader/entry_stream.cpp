#include "zip/reader/entry_stream.h"

#include <zlib.h>

#include <new>

#include "common/error.h"
#include "zip/deflate/inflate64.h"

namespace vantrel::zip {

namespace {

class InflateStream {
  public:
    InflateStream() {
        if (inflateInit2(&stream_, -MAX_WBITS) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~InflateStream() { inflateEnd(&stream_); }
    InflateStream(const InflateStream&) = delete;
    InflateStream& operator=(const InflateStream&) = delete;

    z_stream& operator*() { return stream_; }

  private:
    z_stream stream_{};
};

std::uint64_t PassStored(const MorePacked& more, const PutUnpacked& put) {
    std::uint64_t taken = 0;
    for (;;) {
        const std::string_view bytes = more();
        if (bytes.empty()) {
            return taken;
        }
        put(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        taken += bytes.size();
    }
}

std::uint64_t Inflate(const MorePacked& more, const PutUnpacked& put, Buffer& scratch) {
    scratch.Reserve(kStreamChunk);
    InflateStream inflater;
    z_stream& stream = *inflater;
    std::uint64_t taken = 0;
    for (int result = Z_OK; result != Z_STREAM_END;) {
        if (stream.avail_in == 0) {
            const std::string_view bytes = more();
            // zlib wants its input writable but leaves it alone.
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
            stream.avail_in = static_cast<uInt>(bytes.size());
            taken += bytes.size();
        }
        stream.next_out = scratch.data();
        stream.avail_out = static_cast<uInt>(kStreamChunk);
        result = inflate(&stream, Z_NO_FLUSH);
        put(scratch.data(), kStreamChunk - stream.avail_out);
        if (result != Z_OK && result != Z_STREAM_END) {
            throw Error(error_number::kDeviceIo, "", "its data is damaged");
        }
    }
    return taken - stream.avail_in;
}

std::uint64_t RunInflate64(const MorePacked& more, const PutUnpacked& put) {
    std::uint64_t taken = 0;
    Inflate64 inflater(
        [&] {
            const std::string_view bytes = more();
            taken += bytes.size();
            return bytes;
        },
        put);
    inflater.Run();
    return taken - inflater.UnusedInput();
}

}  // namespace

std::uint64_t Unpack(Method method, const MorePacked& more, const PutUnpacked& put,
                     Buffer& scratch) {
    switch (method) {
        case Method::kStored:
            return PassStored(more, put);
        case Method::kDeflated64:
            return RunInflate64(more, put);
        default:
            return Inflate(more, put, scratch);
    }
}

}  // namespace vantrel::zip
