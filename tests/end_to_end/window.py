"""The program's real windows, worked from outside as a person would.

    program = window.Attended(self.pc)          # starts it and waits for the main window
    program.choose("Cmb_BackupSet", "Job.INI")  # picks an entry of a drop-down list
    program.click("Cmd_Backup")
    program.answer("Yes", "Are you sure")       # presses a button of the message box in front
    program.wait_for(lambda: program.visible("Frm_Backup_Cmd_Ok"), "the end of the run")
    program.close()                             # system menu; waits for the program's end

Controls go by their names in views/win32/resource.h; other windows' controls bear the window's name
before theirs (Frm_Backup_Cmd_Ok). What is asked of a control that is hidden or disabled fails,
since no person could do it. Looking never waits: put it into `wait_for`. Acting does not wait for
its effect either.
"""
import re
import subprocess
from typing import NamedTuple

import harness

RESOURCES = harness.ROOT / "views" / "win32" / "resource.h"
CONTROLS = {name: int(number) for name, number in
            re.findall(r"^#define (\w+) (\d+)$", RESOURCES.read_text(encoding="utf-8"), re.M)}

# Looking costs the program that is looked at.
LONGEST_PAUSE = 0.1  # seconds

TABS = ["Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"]


class Box(NamedTuple):
    """A message box or a dialog of the system."""
    title: str
    text: str
    default: str  # caption of the default button
    right_aligned: bool
    has_icon: bool
    buttons: dict  # caption without "&" -> number
    handle: str  # two boxes that say the same differ in it


class DriverError(AssertionError):
    """What was asked could not be done, and why."""


class Attended:
    """The program with a person before it. Everything that it leaves behind ends with the
    computer it runs on."""

    def __init__(self, pc, *arguments, wait=True, program="V:\\Vantrel\\Vantrel.exe"):
        self.pc = pc
        self._driver = pc.start(pc.helper("drive_window.exe"), stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE)
        self.process = pc.start(program, *arguments, stdin=subprocess.DEVNULL)
        if wait:
            self.wait_for(lambda: self.visible("TAB_Backup"), "the main window")

    # The driver

    def _ask(self, *words):
        line = "\t".join(self._escape(str(word)) for word in words) + "\n"
        self._driver.stdin.write(line.encode("utf-8"))
        self._driver.stdin.flush()
        answer = self._driver.stdout.readline().decode("utf-8")
        if not answer:
            raise AssertionError(f"the driver has ended with {self._driver.wait()} at {words}; "
                                 f"Wine: {self.pc.chatter()}")
        answer = [self._unescape(word) for word in answer.rstrip("\n").split("\t")]
        if answer[0] != "ok":
            raise DriverError(f"{' '.join(map(str, words))}: {' '.join(answer[1:])}\n"
                              f"boxes: {self.box() if words[0] != 'box' else ''}")
        return answer[1:]

    @staticmethod
    def _escape(text):
        return (text.replace("\\", "\\\\").replace("\t", "\\t").replace("\r", "\\r")
                .replace("\n", "\\n"))

    @staticmethod
    def _unescape(text):
        ends = {"t": "\t", "r": "\r", "n": "\n"}
        return re.sub(r"\\(.)", lambda match: ends.get(match[1], match[1]), text)

    def _control(self, command, name, *words):
        return self._ask(command, CONTROLS[name], *words)

    # Looking

    def wait_for(self, condition, what):
        """Polls until `condition()` is true and returns its value; the program's end fails it."""
        def check():
            value = condition()
            if not value and self.process.poll() is not None:
                raise AssertionError(
                    f"the program has ended with {self.process.returncode}, waiting for {what}; "
                    f"its log:\n{self.pc.log.text()}\nWine: {self.pc.chatter()}")
            return value
        try:
            return harness.wait_until(check, what, LONGEST_PAUSE)
        except AssertionError as error:
            if self.process.poll() is not None:
                raise
            raise AssertionError(f"{error}; windows: {self.titles()}, box: {self.box()}") from None

    def exists(self, name):
        return self._control("state", name)[0] != "gone"

    def visible(self, name):
        return self._control("state", name)[0] == "visible"

    def enabled(self, name):
        """Whether a person could use it: its window must take input, too."""
        return self._control("state", name)[1] == "enabled"

    def text(self, name):
        return self._control("text", name)[0]

    def title(self, name):
        """The caption of the window that a control stands in."""
        return self._control("title", name)[0]

    def items(self, name):
        """The entries of a combo or list."""
        return self._control("items", name)

    def count(self, name):
        return int(self._control("count", name)[0])

    def selected(self, name):
        """The selected entry of a combo or list, None for none."""
        index = int(self._control("index", name)[0])
        return None if index < 0 else self.items(name)[index]

    def checked(self, name):
        return self._control("checked", name)[0] == "1"

    def value(self, name):
        """The position of a progress bar."""
        return int(self._control("value", name)[0])

    def shown_tab(self):
        return TABS[int(self._control("shown_tab", "TAB_Backup")[0])]

    def first_line(self, name):
        """The number of the line at the top of a text view, from 0."""
        return int(self._control("first_line", name)[0])

    def tree(self, name):
        """The entries of a tree, top down: (level, image, text)."""
        lines = [line.split(" ", 2) for line in self._control("tree", name)]
        return [(int(level), int(image), text) for level, image, text in lines]

    def place(self, name):
        """left, top, right, bottom on the screen."""
        return tuple(map(int, self._control("place", name)))

    def window_place(self, name):
        return tuple(map(int, self._control("window_place", name)))

    def maximized(self, name="TAB_Backup"):
        return self._control("maximized", name)[0] == "1"

    def focus(self):
        """The name of the control that has the keyboard, None when it is none of ours."""
        number = int(self._ask("focus")[0])
        return next((name for name, each in CONTROLS.items() if each == number), None)

    def titles(self):
        return self._ask("titles")

    def menu_is_open(self):
        """Whether a pop-up menu is open; keys go to it."""
        return self._ask("menu")[0] == "1"

    def menu_place(self):
        """left, top, right, bottom of the pop-up menu that is open."""
        return tuple(map(int, self._ask("menu_place")))

    def tree_place(self, name, *path):
        """left, top, right, bottom of a tree's entry on the screen."""
        return tuple(map(int, self._control("tree_place", name, "|".join(path))))

    def tip(self):
        """The tool tip that is shown, "" for none."""
        return self._ask("tip")[0]

    def status(self):
        """The line of the status bar."""
        return self.text("Sta_Mainmenu")

    # Acting

    def hover(self, name):
        """Rests the mouse on a control."""
        self._control("hover", name)

    def click(self, name):
        self._control("click", name)

    def right_click(self, name):
        self._control("right_click", name)

    def choose(self, name, entry):
        """Picks an entry of a drop-down list by one key press."""
        self._control("choose", name, entry)

    def click_entry(self, name, entry):
        self._control("click_entry", name, entry)

    def open_entry(self, name, entry):
        """A double click."""
        self._control("open_entry", name, entry)

    def click_tree(self, name, *path):
        """A click on a tree's entry; `path` holds the texts from the root down."""
        self._control("click_tree", name, "|".join(path))

    def right_click_tree(self, name, *path):
        self._control("right_click_tree", name, "|".join(path))

    def show_tab(self, caption):
        self._control("click_tab", "TAB_Backup", TABS.index(caption))
        self.wait_for(lambda: self.shown_tab() == caption, f"the {caption} tab")

    def type(self, name, text):
        """Characters, at the place where the field's text is marked; "\\r" is Enter."""
        self._control("type", name, text)

    def select_text(self, name, start=0, end=-1):
        self._control("select", name, start, end)

    def replace_text(self, name, text):
        """Marks everything in a field and types over it."""
        self.select_text(name)
        self.type(name, text if text else "\b")

    def keys(self, keys, name="TAB_Backup"):
        """Keys together, e.g. "Ctrl+Shift+Tab", to the window of a control or, with name=None,
        to whatever is in front."""
        if name:
            self._control("to_front", name)
        self._ask("keys", keys)

    def come_to_front(self, name):
        """Brings a control's window in front of other programs' and waits until it has the keyboard,
        which those do not give away at once."""
        def has_keyboard():
            self._control("to_front", name)
            return self.focus()
        self.wait_for(has_keyboard, f"the keyboard in the window of {name}")

    def set_dpi(self, dpi, name="TAB_Backup"):
        self._control("dpi", name, dpi)

    def move_window(self, left, top, width, height, name="TAB_Backup"):
        self._control("move_window", name, left, top, width, height)

    def move_pointer(self, left, top):
        self._ask("pointer", left, top)

    def maximize(self, name="TAB_Backup"):
        self._control("maximize", name)

    # Message boxes

    def box(self):
        """The box in front, or None."""
        try:
            words = self._ask("box")
        except DriverError:  # it was closed while it was looked at
            words = self._ask("box")
        if not words:
            return None
        title, text, default, alignment, icon, handle = words[:6]
        numbers = {caption.replace("&", ""): int(number)
                   for number, caption in zip(words[6::2], words[7::2])}
        default_caption = next((c for c, n in numbers.items() if n == int(default)), "")
        return Box(title, text, default_caption, alignment == "right", icon == "icon", numbers,
                   handle)

    def wait_for_box(self, text=""):
        """The box that comes and has `text` in it."""
        return self.wait_for(
            lambda: (box := self.box()) and text in box.text and box, f"a box with {text!r}")

    def answer(self, button, text=""):
        """Waits for a box that has `text` in it, presses one of its buttons and returns the box
        once it is gone."""
        box = self.wait_for_box(text)
        self._ask("press_in_box", box.buttons[button])
        self.wait_for_end_or(lambda: self.box() != box, "the box to close")
        return box

    def type_in_box(self, number, text):
        """Fills a field of a system dialog, by the system's own number."""
        self._ask("type_in_box", number, text)

    # The end

    def wait_for_end_or(self, condition, what):
        harness.wait_until(lambda: self.process.poll() is not None or condition(), what,
                           LONGEST_PAUSE)

    def close_box(self, name="TAB_Backup"):
        """The system menu's Close, as the close box and Alt+F4 send it."""
        self._control("close_box", name)

    def bare_close(self, name="TAB_Backup"):
        self._control("bare_close", name)

    def end_session(self, name="TAB_Backup"):
        return self._control("end_session", name)[0] == "agreed"

    def wait_for_end(self):
        """Waits until the program has ended by itself and returns its exit code."""
        return self.pc.finish(self.process)

    def close(self):
        self.close_box()
        return self.wait_for_end()

    # Pictures

    def picture(self, name):
        """What a control looks like now, as bytes of an image that can be compared."""
        left, top, right, bottom = self.place(name)
        crop = f"{right - left}x{bottom - top}+{left}+{top}"
        return subprocess.run(["import", "-window", "root", "-crop", crop, "+repage", "ppm:-"],
                              check=True, stdout=subprocess.PIPE).stdout

    def screenshot(self, path):
        """For a person's eyes."""
        subprocess.run(["import", "-window", "root", str(path)], check=True)
