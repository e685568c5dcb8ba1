"""The dialog resources: nothing clipped, nothing covered, access keys that lead to one place, and a
label before what it names, which is what a screen reader reads out."""
import re
import unittest
from itertools import combinations
from pathlib import Path
from typing import NamedTuple

VIEWS = Path(__file__).resolve().parents[2] / "views" / "win32"
RESOURCES = VIEWS / "vantrel.rc"
ANCHORS = VIEWS / "anchors.cpp"

# The given captions want one key twice here.
DOUBLE_KEYS = {("Frm_Mainmenu_0", "B")}
# These hold others, or take another's place for a while.
CONTAINERS = re.compile(r"Fra_|Frame1|SSP_PleaseWait|SSP_ProgressSecure|TAB_Backup")
SAME_PLACE = {"Frm_Backup_Cmd_Cancel", "Frm_Restore_Cmd_Cancel"}
# Named by their tab or frame.
UNLABELLED = {"Dir_DirList", "TV_Restore", "Fld_Log", "Dri_SecureMode", "TV_SecureMode",
              "Fld_SecureData", "Frm_Backup_Lst_Details", "Frm_Restore_Lst_Details"}


class Control(NamedTuple):
    kind: str
    text: str
    name: str
    left: int
    top: int
    right: int
    bottom: int


def read_dialogs():
    """Name -> (width, height, controls in tab order)."""
    text = re.sub(r"//[^\n]*", "", RESOURCES.read_text(encoding="utf-8"))
    text = re.sub(r",\s*\n\s+", ", ", re.sub(r"\|\s*\n\s+", "| ", text))
    dialogs = {}
    for name, width, height, body in re.findall(
            r"^(\w+) DIALOGEX 0, 0, (\d+), (\d+)\n.*?^BEGIN\n(.*?)^END", text, re.M | re.S):
        controls = []
        for line in filter(str.strip, body.splitlines()):
            kind, rest = line.split(None, 1)
            caption = re.match(r'"([^"]*)", ', rest)
            rest = rest[caption.end():] if caption else rest
            words = [word.strip() for word in rest.split(",")]
            if kind == "CONTROL":
                kind = words.pop(1).strip('"')
                numbers = [word for word in words[1:] if re.fullmatch(r"\d+", word)][-4:]
            else:
                numbers = words[1:5]
            left, top, wide, high = map(int, numbers)
            if kind == "COMBOBOX":
                high = 13  # the list drops down over the others
            controls.append(Control(kind, caption[1] if caption else "", words[0], left, top,
                                    left + wide, top + high))
        dialogs[name] = (int(width), int(height), controls)
    return dialogs


def read_anchors():
    """Control -> the shares of the window's growth by which its left, top, right and bottom move."""
    text = ANCHORS.read_text(encoding="utf-8")
    shares = {name: tuple(map(int, numbers.split(","))) for name, numbers in
              re.findall(r"constexpr Anchors (\w+)\{([\d, ]+)\};", text)}
    return {name: shares[kind] for names, kind in re.findall(r"\{\{([\w, ]+)\}, (k\w+)\},", text)
            for name in names.split(", ")}


def stretched(control, shares, wider, higher):
    """A control as it stands in a window that has become larger."""
    left, top, right, bottom = shares.get(control.name, (0, 0, 0, 0))
    return control._replace(left=control.left + wider * left // 100,
                            top=control.top + higher * top // 100,
                            right=control.right + wider * right // 100,
                            bottom=control.bottom + higher * bottom // 100)


class Dialogs(unittest.TestCase):
    def setUp(self):
        self.dialogs = read_dialogs()
        self.assertEqual(14, len(self.dialogs))
        self.assertTrue(all(controls for _, _, controls in self.dialogs.values()))
        self.designed = dict(self.dialogs)
        shares = read_anchors()
        self.assertLess(70, len(shares))
        # The windows that can be resized, larger in one way and in both.
        for name in [each for each in self.dialogs if
                     re.fullmatch(r"Frm_Mainmenu(_\d)?|Frm_(Backup|Restore)(Where)?", each)]:
            width, height, controls = self.dialogs[name]
            for wider, higher in ((101, 0), (0, 101), (333, 222), (1500, 900)):
                self.dialogs[f"{name} +{wider} +{higher}"] = (
                    width + wider, height + higher,
                    [stretched(each, shares, wider, higher) for each in controls])

    def test_every_anchor_is_of_a_control(self):
        names = {each.name for _, _, controls in self.designed.values() for each in controls}
        self.assertEqual(set(), set(read_anchors()) - names)

    def test_lists_trees_and_text_views_take_the_growth(self):
        for name, (_, _, controls) in self.designed.items():
            larger = self.dialogs.get(f"{name} +333 +222")
            for before, after in zip(controls, larger[2] if larger else ()):
                if before.kind in ("LISTBOX", "WC_TREEVIEW") or before.name in (
                        "Fld_INI", "Fld_Log", "Fld_SecureData"):
                    self.assertEqual(222, after.bottom - before.bottom - (after.top - before.top),
                                     after)
                    self.assertLess(before.right - before.left, after.right - after.left, after)

    def test_every_control_is_inside_its_dialog(self):
        for name, (width, height, controls) in self.dialogs.items():
            for each in controls:
                self.assertTrue(0 <= each.left < each.right <= width and
                                0 <= each.top < each.bottom <= height, (name, each))

    def test_no_control_covers_another(self):
        for name, (_, _, controls) in self.dialogs.items():
            solid = [each for each in controls
                     if not CONTAINERS.search(each.name) and each.name not in SAME_PLACE]
            for one, other in combinations(solid, 2):
                apart = (one.right <= other.left or other.right <= one.left or
                         one.bottom <= other.top or other.bottom <= one.top)
                self.assertTrue(apart, (name, one, other))

    def test_access_keys_lead_to_one_place(self):
        for name, (_, _, controls) in self.designed.items():
            keys = [match[1].upper() for each in controls
                    if (match := re.search(r"&(\w)", each.text))]
            doubles = {(name, key) for key in keys if keys.count(key) > 1}
            self.assertEqual({each for each in DOUBLE_KEYS if each[0] == name}, doubles)

    def test_a_label_stands_before_what_it_names(self):
        for name, (_, _, controls) in self.dialogs.items():
            for before, each in zip([None, *controls], controls):
                if each.kind not in ("COMBOBOX", "EDITTEXT", "LISTBOX", "WC_TREEVIEW"):
                    continue
                if each.name not in UNLABELLED:
                    self.assertTrue(before and before.kind == "LTEXT", (name, each))

    def test_edges_keep_their_distance(self):
        for name, (width, height, controls) in self.dialogs.items():
            if name.split()[0] in ("Frm_Mainmenu", "Frm_Splash"):
                continue
            for each in controls:
                if each.kind in ("PUSHBUTTON", "DEFPUSHBUTTON", "EDITTEXT", "LISTBOX"):
                    self.assertTrue(each.left >= 7 and each.right <= width - 7 and
                                    each.top >= 7 and each.bottom <= height - 7, (name, each))


if __name__ == "__main__":
    unittest.main()
