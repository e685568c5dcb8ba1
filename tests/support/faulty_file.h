// An open file of a faulty file system.
#pragma once

#include <memory>
#include <string>

#include "platform/file_system.h"
#include "tests/support/fault_plan.h"
#include "tests/support/unflushed_writes.h"

namespace vantrel::test {

class FaultyFile : public platform::File {
  public:
    // For reading.
    FaultyFile(FaultPlan& plan, std::string path, std::unique_ptr<platform::File> real)
        : plan_(plan), path_(std::move(path)), real_(std::move(real)) {}
    // For writing, from `start` on.
    FaultyFile(FaultPlan& plan, std::string path, std::unique_ptr<platform::File> real,
               UnflushedWrites& unflushed, std::shared_ptr<UnflushedWrites::Image> image,
               std::uint64_t start)
        : plan_(plan),
          path_(std::move(path)),
          real_(std::move(real)),
          unflushed_(&unflushed),
          image_(std::move(image)),
          position_(start) {}

    std::size_t Read(void* buffer, std::size_t count) override;
    void Write(const void* data, std::size_t count) override;
    void Seek(std::uint64_t position) override;
    std::uint64_t Size() override;
    void Truncate(std::uint64_t size) override;
    void SetTimes(const platform::FileTimes& times) override;
    void Flush() override;
    void Close() override;

  private:
    FaultPlan::Verdict Enter(Call kind) { return plan_.Enter({kind, path_, {}, {}}); }
    void WriteThrough(const void* data, std::size_t count);

    FaultPlan& plan_;
    std::string path_;
    std::unique_ptr<platform::File> real_;
    UnflushedWrites* unflushed_ = nullptr;
    std::shared_ptr<UnflushedWrites::Image> image_;
    std::uint64_t position_ = 0;
};

}  // namespace vantrel::test
