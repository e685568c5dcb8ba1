// The program on the screen and on the machine that it is made for.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "forms/program.h"
#include "tests/platform/machine_under_test.h"
#include "tests/support/test_machine.h"
#include "tests/views/real_controls.h"
#include "tests/views/win32_user.h"

namespace vantrel::test {

using Lines = std::vector<std::string>;

// The real machine, with an application folder on an empty drive. There is a command line, so that
// nobody is asked anything.
class RealProgram : public ::testing::Test {
  protected:
    RealProgram() {
        process.application_folder = machine->OtherDrive() + "\\Real";
        process.command_line = "NONE.INI";
        program.globals.CrLf = "\r\n";
        program.globals.LogFilePath = program.InApplicationFolder("Vantrel.Log");
        auto& files = program.machine.files;
        files.MakeFolder(process.application_folder);
        files.Open(program.globals.LogFilePath, platform::OpenMode::kAppend)->Close();
    }
    ~RealProgram() override {
        auto& files = program.machine.files;
        std::vector<std::string> names;
        files.List(process.application_folder, [&names](const platform::FileInfo& entry) {
            names.push_back(entry.name);
            return true;
        });
        for (const auto& name : names) {
            files.RemoveFile(program.InApplicationFolder(name));
        }
        files.RemoveFolder(process.application_folder);
    }

    std::unique_ptr<MachineUnderTest> machine = NewMachineUnderTest();
    TestProcess process;
    platform::Machine with_process = With({.process = &process}, machine->machine());
    Win32User user;
    forms::Program program{with_process, user.desktop()};
};

}  // namespace vantrel::test
