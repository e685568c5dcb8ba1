"""What a start on the command line does before and instead of a backup."""
import archives
import harness
import log_file


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


if __name__ == "__main__":
    harness.main()
