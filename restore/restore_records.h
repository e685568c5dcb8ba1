// The log records of a restore, which name its source.
#pragma once

#include <string>

#include "forms/program.h"
#include "restore/restore_controls.h"

namespace vantrel {

class RestoreRecords {
  public:
    // The source is the one that `controls` show when a record is written.
    RestoreRecords(forms::Program& program, const RestoreControls& controls)
        : program_(program), controls_(controls) {}

    void WriteStarted();
    void WriteFinished();
    // The end of a run that the user has cancelled: the finished record is the first of two.
    void WriteCancelled();

  private:
    // "ZIP File - C:\x.zip" for a browsed archive, the set's name for a chosen set.
    std::string SourceInWords() const;
    void LogRecord(const std::string& text);

    forms::Program& program_;
    RestoreControls controls_;
};

}  // namespace vantrel
