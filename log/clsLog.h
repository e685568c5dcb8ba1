// The transaction log: one record per event, a header, a monthly roll-over and a size limit.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

class clsLog {
  public:
    explicit clsLog(forms::Program& program) : program_(program) {}

    // Writes one record. `kind` is "Backup", "Exit", "INI Edit", "Startup", "Command Line" or
    // "PrevInstance", to the letter; anything else writes nothing and shows a box. `with_date`
    // matters for "Backup" only; `message` is the text, for "Exit" the unload mode in decimal.
    void WriteToLog(const std::string& kind, bool with_date, const std::string& message = "");
    // Trims the log below `limit` bytes, keeping its header and its first record.
    void Log_Truncate(long limit);

  private:
    void LogFile();
    std::string Log_WriteDate(bool with_date);
    void Log_WriteBackup(bool with_date, const std::string& message);
    void Log_WriteOther(bool with_date, int unload_mode);
    void Log_WriteINI_Edit(bool with_date, const std::string& message);
    void Log_WriteStartup(bool with_date);
    void Log_WriteCommandLine();
    void Log_WritePrevInstance(bool with_date);
    void Append(const std::string& text);

    forms::Program& program_;
};

}  // namespace vantrel
