// Someone who chooses an entry of a menu once it is open. A menu takes all messages while it is
// open, so a timer does the looking: it presses one key each time until the menu is closed.
#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace vantrel::test {

// An entry as it was seen in a menu.
struct SeenEntry {
    std::string text;
    bool enabled;
};

class MenuPerson {
  public:
    // Waits for a menu over `owner` that has an entry `id`, goes to it with the arrow keys and
    // presses Enter; Esc where that entry cannot be chosen. One at a time.
    MenuPerson(HWND owner, int id);
    ~MenuPerson();
    MenuPerson(const MenuPerson&) = delete;
    MenuPerson& operator=(const MenuPerson&) = delete;

    // Whether the menu has been there and is closed.
    bool Done() const { return pressed_ && !OpenMenu(); }
    // All entries of the menu by their numbers, as they looked while it was open.
    const std::map<int, SeenEntry>& Seen() const { return seen_; }

  private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD);
    static HMENU OpenMenu();
    void PressNext();

    HWND owner_;
    int id_;
    UINT_PTR timer_;
    bool pressed_ = false;
    std::map<int, SeenEntry> seen_;
};

}  // namespace vantrel::test
