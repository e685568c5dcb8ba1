// The simple controls: those that hold one value, and those that only show something. Functions
// named User... do what the mouse or the keyboard does, and respect Enabled().
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace vantrel::forms {

// A line of text. Colours are the two system colours that the program's one blinking label needs.
class Label : public Control {
  public:
    enum class Color { kButtonText, kHighlightText };
    Label(Form& owner, std::string name, std::string caption = "")
        : Control(owner, Kind::kLabel, std::move(name), std::move(caption)) {}
    Event Click;
    void UserClick();
    Color ForeColor() const { return color_; }
    void SetForeColor(Color color) { Update(color_, color, Aspect::kColor); }

  private:
    Color color_ = Color::kButtonText;
};

class Button : public Control {
  public:
    Button(Form& owner, std::string name, std::string caption)
        : Control(owner, Kind::kButton, std::move(name), std::move(caption)) {}
    Event Click;
    // Press raises Click even when the button is disabled; UserPress, for mouse and keyboard,
    // respects Enabled().
    void Press() { Raise(Click); }
    void UserPress();
};

class CheckBox : public Control {
  public:
    CheckBox(Form& owner, std::string name, std::string caption)
        : Control(owner, Kind::kCheckBox, std::move(name), std::move(caption)) {}
    Event Click;  // whenever the mark becomes a different one
    bool Checked() const { return checked_; }
    void SetChecked(bool checked);
    void UserToggle();

  private:
    bool checked_ = false;
};

// An edit field. Change is raised whenever the text becomes a different one.
class TextBox : public Control {
  public:
    TextBox(Form& owner, std::string name, bool multi_line = false, bool read_only = false)
        : Control(owner, Kind::kTextBox, std::move(name)),
          multi_line_(multi_line),
          read_only_(read_only) {}
    Event Change;
    const std::string& Text() const { return text_; }
    void SetText(const std::string& text);
    // Adds `text` at the end of the text; the screen may show it as late as the next Refresh.
    void Append(const std::string& text);
    void UserType(const std::string& text);  // the text as it is after the user's keystrokes
    bool MultiLine() const { return multi_line_; }
    bool ReadOnly() const { return read_only_; }
    // Moves the view down by `lines`, as far as there is text. Works on what the screen shows, so
    // it does nothing without one.
    void ScrollLines(int lines);
    int ScrolledLines() const { return scrolled_lines_; }  // of the latest call

  private:
    std::string text_;
    bool multi_line_;
    bool read_only_;
    int scrolled_lines_ = 0;
};

class Frame : public Control {
  public:
    Frame(Form& owner, std::string name, std::string caption = "")
        : Control(owner, Kind::kFrame, std::move(name), std::move(caption)) {}
};

class Picture : public Control {
  public:
    Picture(Form& owner, std::string name) : Control(owner, Kind::kPicture, std::move(name)) {}
};

// Its caption is the line that it shows, as wide as the window allows.
class StatusBar : public Control {
  public:
    StatusBar(Form& owner, std::string name) : Control(owner, Kind::kStatusBar, std::move(name)) {}
    // `path` is a part of `text` that may be shortened in its middle, "" for none.
    void SetLine(const std::string& text, const std::string& path);
    const std::string& Path() const { return path_; }
    // A short text at the right end, for every line.
    void SetNote(const std::string& note);
    const std::string& Note() const { return note_; }

  private:
    std::string path_;
    std::string note_;
};

// 0 to 100; values outside are clamped.
class ProgressBar : public Control {
  public:
    ProgressBar(Form& owner, std::string name)
        : Control(owner, Kind::kProgressBar, std::move(name)) {}
    int Value() const { return value_; }
    void SetValue(int value) { Update(value_, std::clamp(value, 0, 100), Aspect::kValue); }

  private:
    int value_ = 0;
};

// A panel whose fill shows a percentage, 0 to 100.
class Panel : public Control {
  public:
    Panel(Form& owner, std::string name, std::string caption = "")
        : Control(owner, Kind::kPanel, std::move(name), std::move(caption)) {}
    double FloodPercent() const { return percent_; }
    void SetFloodPercent(double percent) {
        Update(percent_, std::clamp(percent, 0.0, 100.0), Aspect::kValue);
    }

  private:
    double percent_ = 0;
};

// A clip in a file; an empty path shows nothing.
class Animation : public Control {
  public:
    Animation(Form& owner, std::string name) : Control(owner, Kind::kAnimation, std::move(name)) {}
    const std::string& Path() const { return path_; }
    bool Playing() const { return playing_; }
    void Open(const std::string& path);  // and plays it
    void Stop();

  private:
    std::string path_;
    bool playing_ = false;
};

// Ticks while enabled; created disabled.
class Timer : public Control {
  public:
    Timer(Form& owner, std::string name, std::chrono::milliseconds interval);
    Event Tick;
    std::chrono::milliseconds Interval() const { return interval_; }
    void Elapse();  // one tick, when enabled

  private:
    std::chrono::milliseconds interval_;
};

// An entry of the menu bar or of a pop-up menu, or such a menu itself.
class MenuItem : public Control {
  public:
    MenuItem(Form& owner, std::string name, std::string caption)
        : Control(owner, Kind::kMenu, std::move(name), std::move(caption)) {}
    Event Click;
    void UserChoose();
    // Opens this menu at the mouse pointer and returns when it is closed; the handler of the chosen
    // entry has run by then.
    void PopUp();
    int PopUps() const { return pop_ups_; }  // how often it was opened

  private:
    int pop_ups_ = 0;
};

// A tab control. Click is raised with the tab shown before; showing the shown tab raises nothing.
class Tabs : public Control {
  public:
    Tabs(Form& owner, std::string name, std::vector<std::string> captions);
    std::function<void(int previous)> Click;
    const std::vector<std::string>& Captions() const { return captions_; }
    int Tab() const { return tab_; }
    void SetTab(int tab);

  private:
    std::vector<std::string> captions_;
    int tab_ = 0;
};

}  // namespace vantrel::forms
