// A log in the application folder, its files and the time that they bear.
#pragma once

#include <string>
#include <vector>

#include "log/clsLog.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

class TransactionLog : public ProgramFixture {
  protected:
    static constexpr const char* kLog = "C:\\Vantrel\\Vantrel.Log";
    static constexpr const char* kBak = "C:\\Vantrel\\Vantrel.Bak";

    static std::string Header() {
        const std::string rule(80, '-');
        return rule + "\r\n\r\nVantrel - Backup Utility\r\n\r\n" +
               "Copyright 1999 Corvane Limited\r\nAll Rights Reserved\r\n\r\n" +
               "Written by the Vantrel team\r\n\r\n" + rule + "\r\nTransaction Log\r\n" + rule +
               "\r\n";
    }
    void Write(const std::string& kind, const std::string& message = "", bool with_date = true) {
        clsLog(program).WriteToLog(kind, with_date, message);
    }
    // What the log holds behind its header.
    std::string Records() {
        const std::string text = machine.Content(kLog);
        EXPECT_EQ(text.substr(0, Header().size()), Header());
        return text.substr(std::min(text.size(), Header().size()));
    }
    // A log last written on that day, at noon.
    void PutLog(const std::string& path, const std::string& text, int year, int month, int day) {
        machine.PutFile(path, text);
        machine.clock.Set(year, month, day);
        const platform::Ticks then = machine.clock.UtcNow();
        machine.files().SetTimes(path, {then, then, then});
    }
};

}  // namespace vantrel::test
