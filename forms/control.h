// The base of all controls of a window: a plain object with a name, a few properties and the events
// that changing them raises. A control does not depend on a window system; a view that shows it
// binds itself and receives the aspects that have changed. Used on the user-interface thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vantrel::forms {

class Form;

enum class Aspect {
    kText,      // caption or contents
    kAppended,  // contents that got longer; shown with the next kRedraw at the latest
    kEnabled,
    kVisible,
    kItems,  // the entries of a list were replaced or one was added or removed
    kSelection,
    kValue,  // position of a bar, fill of a panel, check mark, playing animation
    kColor,
    kRedraw,        // paint now
    kFocus,         // takes the keyboard
    kScroll,        // moves what it shows
    kPopUp,         // a menu opens at the pointer
    kTaskProgress,  // of a window
};

// Shows a control on the screen: Changed updates one aspect of it.
class ControlView {
  public:
    virtual ~ControlView() = default;
    virtual void Changed(Aspect aspect) = 0;
};

enum class Kind {
    kAnimation,
    kButton,
    kCheckBox,
    kComboBox,
    kDriveList,
    kFileList,
    kFolderList,
    kFrame,
    kLabel,
    kListBox,
    kMenu,
    kPanel,
    kPicture,
    kProgressBar,
    kStatusBar,
    kTabs,
    kTextBox,
    kTimer,
    kTree,
};

using Event = std::function<void()>;

// Counts the running handlers of a form; a modal window ends only when none is left.
class HandlerScope {
  public:
    explicit HandlerScope(Form& form);
    ~HandlerScope();
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;

  private:
    Form& form_;
};

class Control {
  public:
    // Registers itself with `owner`; `name` is the control's given name, array members as "Name_0".
    Control(Form& owner, Kind kind, std::string name, std::string caption = "");
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    Form& owner() const { return owner_; }
    Kind kind() const { return kind_; }
    const std::string& name() const { return name_; }

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled) { Update(enabled_, enabled, Aspect::kEnabled); }
    bool Visible() const { return visible_; }
    void SetVisible(bool visible) { Update(visible_, visible, Aspect::kVisible); }
    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption) { Update(caption_, caption, Aspect::kText); }
    const std::string& Tooltip() const { return tooltip_; }
    void SetTooltip(const std::string& tooltip) { tooltip_ = tooltip; }
    void Refresh() { Notify(Aspect::kRedraw); }
    // Gives the control the keyboard; Form::ActiveControl is this one from then on.
    void SetFocus();

    // At most one view at a time; nullptr unbinds. A view reads the complete control when it binds;
    // earlier changes are not repeated.
    void Bind(ControlView* view) { view_ = view; }

  protected:
    void Notify(Aspect aspect);
    // Takes a value and shows it; false when it is the one that it has.
    template <typename Value>
    bool Update(Value& value, const Value& wanted, Aspect aspect) {
        if (value == wanted) {
            return false;
        }
        value = wanted;
        Notify(aspect);
        return true;
    }
    // Runs the handler, if there is one; its errors travel to the caller.
    template <typename... Arguments>
    void Raise(const std::function<void(Arguments...)>& event, Arguments... arguments) {
        if (!event) {
            return;
        }
        {
            const HandlerScope scope(owner_);
            event(arguments...);
        }
        Handled();
    }

  private:
    void Handled();

    Form& owner_;
    Kind kind_;
    std::string name_;
    std::string caption_;
    std::string tooltip_;
    bool enabled_ = true;
    bool visible_ = true;
    ControlView* view_ = nullptr;
};

}  // namespace vantrel::forms
