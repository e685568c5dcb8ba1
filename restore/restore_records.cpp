#include "restore/restore_records.h"

#include "log/clsLog.h"

namespace vantrel {

std::string RestoreRecords::SourceInWords() const {
    const std::string set = controls_.Cmb_RestoreFile.Text();
    return set.empty() ? "ZIP File - " + controls_.Fld_RestoreFile.Caption() : set;
}

void RestoreRecords::LogRecord(const std::string& text) {
    clsLog(program_).WriteToLog("Backup", true, text);
}

void RestoreRecords::WriteStarted() { LogRecord("Starting Restore from " + SourceInWords()); }

void RestoreRecords::WriteFinished() { LogRecord("Finished Restore from " + SourceInWords()); }

void RestoreRecords::WriteCancelled() {
    WriteFinished();
    LogRecord("Cancelled by User");
}

}  // namespace vantrel
