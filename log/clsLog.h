// The transaction log: one record per event, a header, a monthly roll-over and a size limit.
#pragma once

#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// Keeps no state; created for one record and dropped. Records go to the file named by LogFilePath;
// roll-over, the test whether a log is there and the trim address "\Vantrel.Log" in the application
// folder. Both are one file while the executable bears its own name.
// Errors: through the shared reporter, "clsLog:WriteToLog Method", "clsLog:Log_Truncate Method".
class clsLog {
  public:
    explicit clsLog(forms::Program& program) : program_(program) {}

    // Writes one record. `kind` is "Backup", "Exit", "INI Edit", "Startup", "Command Line" or
    // "PrevInstance", to the letter; anything else writes nothing and shows a box. `with_date`
    // matters for "Backup" only; `message` is the text, for "Exit" the unload mode in decimal.
    // On the 1st of a month a log last written in the month before is first moved to
    // "\Vantrel.Bak".
    void WriteToLog(const std::string& kind, bool with_date, const std::string& message = "");
    // Trims the log below `limit` bytes, keeping its header and its first record. Pending events
    // run after each line that is thrown away. A log whose kept lines alone reach the limit stays
    // above it.
    void Log_Truncate(long limit);

  private:
    void LogFile();
    void RollOver();
    std::string Log_WriteDate(bool with_date);
    void Log_WriteBackup(bool with_date, const std::string& message);
    void Log_WriteOther(int unload_mode);
    void Log_WriteINI_Edit(const std::string& message);
    void Log_WriteStartup();
    void Log_WriteCommandLine();
    void Log_WritePrevInstance();
    void Append(const std::string& text);

    std::string FixedName() const;
    bool Exists();
    long long Size();
    bool TrimOnce(long long size, long long limit);

    forms::Program& program_;
};

}  // namespace vantrel
