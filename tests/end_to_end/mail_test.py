"""The Log tab and what goes to the user's mail program: the log and the contact message, through
Simple MAPI into a library of the tests' own (recording_mapi.cpp)."""
import contextlib
import re
import subprocess

import harness
import log_file
import window

MAIL_DIALOG = 8  # MAPI_DIALOG
LOGON_DIALOG = 1  # MAPI_LOGON_UI
TO = "1"

PRODUCT = log_file.PRODUCT.read_text(encoding="utf-8")
SUPPORT = re.search(r'kSupportAddress = "(.*)";', PRODUCT)[1]
SURE = "Are you sure that you wish to E-Mail the Log File to Corvane Limited."
BODY = ("Please find attached the Vantrel Log File.  "
        "The reason I am mailing it to you is ...")
LOG = "V:\\Vantrel\\Vantrel.Log"
CLIENTS = "[Software\\\\Clients\\\\Mail"  # as the registry's file spells it
LAST_MONTH = "V:\\Vantrel\\Vantrel.Bak"


class Mailing(harness.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.record = self.pc.folder / "mail"

    # The mail program

    def _replace_clients(self, clients):
        """Before the computer's first run: replaces the mail programs in its registry. The one that
        Wine registers by itself sends nothing and reports success."""
        registry = self.pc.prefix / "system.reg"
        text = registry.read_text(encoding="utf-8", errors="surrogateescape")
        text = re.sub(rf"{re.escape(CLIENTS)}[^\n]*\n.*?\n(\n|$)", "", text, flags=re.S)
        self.assertNotIn(CLIENTS.lower(), text.lower())
        registry.write_text(text + clients, encoding="utf-8", errors="surrogateescape")

    def remove_mail_programs(self):
        self._replace_clients("")

    def register_mail_program(self):
        """Makes the recording library the computer's mail program."""
        library = "Z:" + self.pc.helper("recording_mapi.dll").replace("/", "\\\\")
        self._replace_clients('\n[Software\\\\Clients\\\\Mail] 1\n@="Recording"\n\n'
                              '[Software\\\\Clients\\\\Mail\\\\Recording] 1\n@="Recording"\n'
                              f'"DLLPath"="{library}"\n')
        self.pc.environment["VANTREL_MAIL_RECORD"] = "Z:" + str(self.record).replace("/", "\\")

    def let_fail(self, call, number):
        """From now on the mail program answers that call so."""
        self.record.with_suffix(".fails").write_text(f"{call}={number}", encoding="ascii")

    def calls(self):
        """What the mail program was asked to do: a list of fields for each call."""
        if not self.record.exists():
            return []
        lines = self.record.read_bytes().decode("cp1252").splitlines()
        return [[window.Attended._unescape(field) for field in line.split("\t")]
                for line in lines]

    def take_calls(self):
        """The same, and forgets them."""
        calls = self.calls()
        self.record.unlink()
        return calls

    def take_sent(self):
        """The one message: subject, body, attachments, and whether with a dialog."""
        logon, send, logoff = self.take_calls()
        self.assertEqual(["MAPILogon", "(null)", str(LOGON_DIALOG)], logon)
        self.assertEqual("MAPISendMail", send[0])
        self.assertEqual(["MAPILogoff", send[1]], logoff)
        self.assertEqual("owned", send[2])
        dialog = {"0": False, str(MAIL_DIALOG): True}[send[3]]
        subject, body, count = send[4], send[5], int(send[6])
        recipients, files = send[7:7 + 3 * count], send[7 + 3 * count:]
        self.assertEqual([TO, SUPPORT, SUPPORT], recipients)
        return subject, body, list(zip(*[iter(files)] * 4)), dialog

    # The program

    def records(self):
        """What the log holds behind the records of the start."""
        started = log_file.started("Nil")
        records = self.pc.log.records()
        self.assertEqual(started, records[:len(started)])
        self.assertEqual([True] * (len(records) - 2), [dated for dated, _ in records[2:]])
        return [text for _, text in records[2:]]

    def records_before_the_exit(self):
        """What the log of a closed program holds between the records of its start and its exit."""
        records = [text for _, text in self.pc.log.records()]
        start = len(log_file.started("Nil"))
        exits = [text.startswith("Application Closed") for text in records]
        return records[start:exits.index(True)]

    def wait_for_records(self, program, *expected):
        program.wait_for(lambda: len(self.records()) >= len(expected), expected[-1])
        self.assertEqual(list(expected), self.records())


class TheLogByMail(Mailing):
    ATTEMPT = "Log File Emailed to Corvane Limited."

    def open_log(self):
        program = window.Attended(self.pc)
        program.show_tab("Log")
        program.wait_for(lambda: program.enabled("Cmd_Email"), "the Log tab")
        return program

    def mail(self, program):
        program.click("Cmd_Email")
        box = program.answer("Yes", SURE)
        self.assertEqual(("E-Mail", "No", True), (box.title, box.default, box.has_icon))

    def mail_and_be_told(self, program):
        self.mail(program)
        box = program.answer("OK", "Log File Succesfully Sent to your E-Mail Application")
        self.assertEqual(("E-Mail Log File", True), (box.title, box.has_icon))

    def test_one_attachment_and_two_with_last_months_log(self):
        self.register_mail_program()
        program = self.open_log()
        program.click("Cmd_Email")
        program.answer("No", SURE)
        program.wait_for(lambda: program.enabled("Cmd_Email"), "the Log tab")
        self.assertEqual([], self.records())
        self.assertEqual([], self.calls())

        self.mail_and_be_told(program)
        self.assertEqual(
            ("Vantrel Log", BODY, [(LOG, "Vantrel.Log", "-1", "readable")], False),
            self.take_sent())
        attached = self.record.with_suffix(".0").read_bytes().decode("cp1252")
        self.assertTrue(attached.endswith(self.ATTEMPT + "\r\n"))
        self.wait_for_records(program, self.ATTEMPT, "Email Successful")

        (self.pc.application / "Vantrel.Bak").write_bytes(b"last month\r\n")
        self.mail_and_be_told(program)
        self.assertEqual(
            ("Vantrel Log", BODY, [(LOG, "Vantrel.Log", "1", "readable"),
                                   (LAST_MONTH, "Vantrel.Bak", "2", "readable")], False),
            self.take_sent())
        self.assertEqual(b"last month\r\n", self.record.with_suffix(".1").read_bytes())
        program.close()

    def test_failures_are_logged_and_those_of_the_sign_on_shown(self):
        self.register_mail_program()
        program = self.open_log()
        self.let_fail("MAPILogon", 3)
        self.mail(program)
        box = program.answer("OK", "Logon Failure: Signing on to the mail program failed")
        self.assertEqual(("Vantrel", False), (box.title, box.has_icon))
        no_sign_on = "Email Failed - Error Code 3 - Signing on to the mail program failed"
        self.wait_for_records(program, self.ATTEMPT, no_sign_on)
        self.assertEqual(["MAPILogon"], [call[0] for call in self.take_calls()])

        self.let_fail("MAPISendMail", 12)
        self.mail(program)
        self.wait_for_records(program, self.ATTEMPT, no_sign_on, self.ATTEMPT,
                              "Email Failed - Error Code 12 - An attachment could not be opened")
        program.wait_for(lambda: program.enabled("Cmd_Email"), "the Log tab")
        self.assertIsNone(program.box())
        self.assertEqual(["MAPILogon", "MAPISendMail", "MAPILogoff"],
                         [call[0] for call in self.take_calls()])
        program.close()

    def test_no_mail_program(self):
        self.remove_mail_programs()
        program = self.open_log()
        self.mail(program)
        program.answer("OK", "Logon Failure: There is no mail program")
        failed = "Email Failed - Error Code 26 - There is no mail program"
        self.wait_for_records(program, self.ATTEMPT, failed)
        program.close()
        self.assertEqual([self.ATTEMPT, failed], self.records_before_the_exit())


class TheContactMessage(Mailing):
    ATTEMPT = "Contact attempted for Corvane Limited."

    def test_its_text_and_its_failures(self):
        self.register_mail_program()
        program = window.Attended(self.pc)
        program.show_tab("About")
        program.click("Cmd_ContactUs")
        self.wait_for_records(program, self.ATTEMPT, "Contact Successful")
        rule = "-" * 45
        body = ("Your Message Goes Here ...........\r\n" + "\r\n" * 5 + rule + "\r\n"
                "My Product Details are;\r\n\r\n"
                "Product                : Vantrel\r\n"
                f"Version                : {log_file.version()}\r\n" + rule + "\r\n\r\n")
        self.assertEqual(("Vantrel Query", body, [], True), self.take_sent())
        self.assertIsNone(program.box())

        self.let_fail("MAPISendMail", 1)
        program.click("Cmd_ContactUs")
        unsent = "Contact Failed - Error Code 1 - The message was cancelled"
        self.wait_for_records(program, self.ATTEMPT, "Contact Successful", self.ATTEMPT, unsent)
        self.assertIsNone(program.box())
        self.assertEqual("MAPILogoff", self.take_calls()[-1][0])

        self.let_fail("MAPILogon", 2)
        program.click("Cmd_ContactUs")
        program.answer("OK", "Logon Failure: The mail program failed")
        self.wait_for_records(program, self.ATTEMPT, "Contact Successful", self.ATTEMPT, unsent,
                              self.ATTEMPT,
                              "Contact Failed - Error Code 2 - The mail program failed")
        program.close()


    def test_no_mail_program(self):
        self.remove_mail_programs()
        program = window.Attended(self.pc)
        program.show_tab("About")
        program.click("Cmd_ContactUs")
        program.answer("OK", "Logon Failure: There is no mail program")
        failed = "Contact Failed - Error Code 26 - There is no mail program"
        self.wait_for_records(program, self.ATTEMPT, failed)
        program.close()
        self.assertEqual([self.ATTEMPT, failed], self.records_before_the_exit())


class TheLogTab(Mailing):
    def hint(self):
        size = (self.pc.application / "Vantrel.Log").stat().st_size // 1024
        return ("The Vantrel Log File is being limited to a File Size of 50K.\r\n"
                f"File Current Size is {size}K")

    def add_to_log(self, records):
        with (self.pc.application / "Vantrel.Log").open("ab") as log:
            log.write(records)

    @contextlib.contextmanager
    def locked(self, path):
        """Another program holds the file meanwhile, and lets nobody read it."""
        holder = self.pc.start(self.pc.helper("lock_file.exe"), path, stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE)
        self.assertEqual(b"locked", holder.stdout.readline().strip())
        yield
        holder.stdin.close()
        self.pc.finish(holder)

    def assert_at_the_end(self, program):
        # A page below the line at the top there is nothing more.
        lines = len(program.text("Fld_Log").split("\r\n"))
        top = program.first_line("Fld_Log")
        self.assertGreater(top, lines - 40)
        return top

    def wait_for_log(self, program):
        program.wait_for(lambda: program.text("Fld_Log") == self.pc.log.text(), "the log")
        program.wait_for(lambda: program.text("Lbl_LogHint") == self.hint(), "its size")

    def test_records_size_newest_record_and_focus(self):
        program = window.Attended(self.pc)
        self.add_to_log(b"".join(b" " * 20 + b"record %d\r\n" % n for n in range(600)))
        # The keyboard must not go back to what the tab has hidden.
        program.show_tab("INI Edit")
        program.click("Fld_INI")
        program.wait_for(lambda: program.focus() == "Fld_INI", "the keyboard in the editor")
        program.show_tab("Log")
        self.wait_for_log(program)
        self.assert_at_the_end(program)
        program.wait_for(lambda: program.focus() == "TAB_Backup", "the keyboard on the tabs")

        self.add_to_log(b"the newest record\r\n" * 100)
        program.click("Fld_Log")
        program.keys("Ctrl+Home", "Fld_Log")
        program.wait_for(lambda: program.first_line("Fld_Log") == 0, "the top")
        program.click("Cmd_Refresh")
        self.wait_for_log(program)
        program.wait_for(lambda: program.first_line("Fld_Log") > 0, "the end")
        self.assert_at_the_end(program)
        program.wait_for(lambda: program.focus() == "Cmd_Refresh", "the keyboard on the button")

        # Nobody can write into it.
        text = program.text("Fld_Log")
        program.click("Fld_Log")
        program.keys("Ctrl+A", "Fld_Log")
        program.type("Fld_Log", "typed")
        program.click("Cmd_Email")  # comes after what was typed
        program.answer("No", SURE)
        self.assertEqual(text, program.text("Fld_Log"))
        program.close()

    def test_log_that_another_program_holds_and_one_of_a_megabyte(self):
        program = window.Attended(self.pc)
        with self.locked(LOG):
            program.show_tab("Log")
            box = program.answer("OK", "Permission denied")
            self.assertEqual(("Error", True), (box.title, box.has_icon))
            self.assertEqual("", program.text("Fld_Log"))
        record = b" " * 20 + b"one of very many records\r\n"
        self.add_to_log(record * (1024 * 1024 // len(record)))
        program.click("Cmd_Refresh")
        self.wait_for_log(program)
        self.assert_at_the_end(program)
        program.close()


if __name__ == "__main__":
    harness.main()
