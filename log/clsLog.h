// The transaction log: one record per event, a header, a monthly roll-over and a size limit.
#pragma once

#include <string>
#include <vector>

#include "common/error.h"
#include "forms/program.h"

namespace vantrel {

// Keeps no state: an object is created for one record, and no file stays open. Window thread only.
// Records are appended to the file named by LogFilePath. Roll-over, the test whether a log exists
// and the trim use "\Vantrel.Log" in the application folder; both are one file unless the
// executable was renamed. Raises through the shared error reporter, "clsLog:WriteToLog Method" and
// so on. docs/formats.md describes the file.
class clsLog {
  public:
    explicit clsLog(forms::Program& program) : program_(program) {}

    // Writes one record. `kind` is exactly "Backup", "Exit", "INI Edit", "Startup", "Command Line"
    // or "PrevInstance"; any other kind writes nothing and shows a box. `with_date` applies to
    // "Backup" only. `message` is the text, for "Exit" the unload mode in decimal. On the 1st of a
    // month a log last written in the month before is first renamed to "\Vantrel.Bak".
    void WriteToLog(const std::string& kind, bool with_date, const std::string& message = "");
    // Removes the oldest records until the log has fewer than `limit` bytes. The header and the
    // first record stay, also when they alone exceed the limit. Pending events run after each
    // removed line.
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

// Shows a trapped run-time error: a box with its description, the critical icon and the title
// "Error". In an unattended run an undated log line takes the place of the box; a failure to write
// that line is ignored, since the exit code reports the error as well.
void ShowError(forms::Program& program, const Error& error);

}  // namespace vantrel
