// An archive on disk, read at random by one thread; asks when its medium is gone.
#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"
#include "zip/byte_source.h"
#include "zip/run_channel.h"

namespace vantrel::zip {

class ArchiveSource : public ByteSource {
  public:
    ArchiveSource(platform::FileSystem& files, std::string path)
        : files_(files), path_(std::move(path)) {}

    // From now on failures are questions: tried again until it works or the run stops. So is an
    // archive of another size than this, which somebody has put in the place of the one that was
    // listed.
    void AskOn(RunChannel& channel, std::uint64_t size) {
        channel_ = &channel;
        expected_size_ = size;
    }

    std::uint64_t Size() override;
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;

  private:
    template <typename Step>
    auto Try(Step step);
    platform::File& Opened();

    platform::FileSystem& files_;
    std::string path_;
    RunChannel* channel_ = nullptr;
    std::uint64_t expected_size_ = 0;
    std::unique_ptr<platform::File> file_;
    std::uint64_t position_ = 0;
};

}  // namespace vantrel::zip
