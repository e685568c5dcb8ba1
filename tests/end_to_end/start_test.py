"""What a start on the command line does before and instead of a backup."""
import archives
import harness
import log_file
import window


class CommandLine(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = self.pc.drive("s")
        (self.source / "letter.txt").write_text("Dear reader\n", encoding="utf-8")
        self.destination = self.pc.drive("e")
        self.pc.write_set("Weekly.INI", BackupFiles="S:\\*.*", BackupToDrive="E:\\")

    def assert_no_such_set(self, exit_code, command_line):
        self.assert_exit_code(harness.NO_SUCH_SET, exit_code)
        self.assertEqual(
            [*log_file.started(command_line),
             (True, f"Unable to Start Backup - File {command_line} does not exist."),
             *log_file.closed()],
            self.pc.log.records())
        self.assertEqual([], list(self.destination.iterdir()))

    def test_missing_set(self):
        self.assert_no_such_set(self.pc.run_unattended("Monthly.INI"), "Monthly.INI")

    def test_extension_is_not_added(self):
        self.assert_no_such_set(self.pc.run_unattended("Weekly"), "Weekly")

    def test_quoted_name_is_not_unquoted(self):
        self.assert_no_such_set(self.pc.run_with_command_line(' "Weekly.INI"'), '"Weekly.INI"')

    def test_blanks_only_are_not_an_empty_command_line(self):
        # The first of the three separates; the record keeps the other two between its texts.
        self.assert_no_such_set(self.pc.run_with_command_line("   "), "  ")

    def test_trailing_blank_is_not_trimmed(self):
        self.assert_no_such_set(self.pc.run_with_command_line(" Weekly.INI "), "Weekly.INI ")

    def test_other_letter_case_is_found(self):
        self.assert_exit_code(harness.COMPLETE, self.pc.run_unattended("wEEKLY.ini"))
        self.assertEqual([], archives.differences(self.source, self.destination / "WEEKLY.zip"))
        self.assertIn("Command Line Parameter = wEEKLY.ini", self.pc.log.undated())
        self.assertIn("Successful Backup", self.pc.log.dated())


class TwoCopies(harness.EndToEndTest):
    def test_second_copy_logs_and_leaves(self):
        # Nobody closes the first: it is attended and waits for its user.
        first = self.pc.start("V:\\Vantrel\\Vantrel.exe")
        harness.wait_until(
            lambda: "Command Line Parameter = Nil" in self.pc.log.undated(), "the first copy")
        self.assert_exit_code(harness.ALREADY_RUNNING, self.pc.run_unattended("Any.INI"))
        self.assertIsNone(first.poll())
        self.assertEqual([*log_file.started("Nil"),
                          (True, "Previous Instance Detected - Not Started")],
                         self.records_with_open_line())

    def records_with_open_line(self):
        # The record is left without a line end on purpose.
        text = self.pc.log.text()
        self.assertFalse(text.endswith("\r\n"))
        path = self.pc.application / "closed.Log"
        path.write_bytes((text + "\r\n").encode("cp1252"))
        return log_file.LogFile(path).records()


class AfterAnUntrappedError(harness.EndToEndTest):
    def test_error_box_that_is_open_or_just_answered_is_no_previous_instance(self):
        # A folder of the log's name: the start fails, and nothing traps that.
        log = self.pc.application / "Vantrel.Log"
        log.mkdir()
        program = window.Attended(self.pc, wait=False)
        box = program.wait_for_box("Run-time error")
        self.assertEqual(("Vantrel", ["OK"]), (box.title, list(box.buttons)))
        log.rmdir()
        self.assert_exit_code(harness.NO_SUCH_SET, self.pc.run_unattended("Any.INI"))
        self.assertIsNone(program.process.poll())
        log.unlink()

        program.answer("OK")
        again = window.Attended(self.pc)
        self.assertEqual(log_file.started("Nil"), self.pc.log.records())
        self.assert_exit_code(harness.FAILED, program.wait_for_end())
        self.assert_exit_code(0, again.close())


if __name__ == "__main__":
    harness.main()
