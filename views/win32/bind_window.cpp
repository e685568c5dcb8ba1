// Binders of the controls that belong to the entire window: tabs, menus and timers.
#include "forms/form.h"
#include "views/win32/binder.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

class TabsBinder : public BinderOf<forms::Tabs> {
  public:
    TabsBinder(BinderWindow& window, forms::Control& control, HWND handle, int id)
        : BinderOf(window, control, handle, id) {
        int index = 0;
        for (const std::string& caption : object().Captions()) {
            std::wstring text = Wide(caption);
            TCITEMW item{};
            item.mask = TCIF_TEXT;
            item.pszText = text.data();
            SendMessageW(handle, TCM_INSERTITEMW, static_cast<WPARAM>(index++),
                         reinterpret_cast<LPARAM>(&item));
        }
    }

    void Notify(const NMHDR& header) override {
        if (header.code == TCN_SELCHANGE) {
            object().SetTab(static_cast<int>(SendMessageW(handle(), TCM_GETCURSEL, 0, 0)));
        }
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect != Aspect::kSelection) {
            return;
        }
        SendMessageW(handle(), TCM_SETCURSEL, static_cast<WPARAM>(object().Tab()), 0);
        window_.ShowPage(object().Tab());
    }
};

class MenuBinder : public BinderOf<forms::MenuItem> {
  public:
    using BinderOf::BinderOf;

    void Command(WORD) override { object().UserChoose(); }

  protected:
    void Show(Aspect aspect) override {
        switch (aspect) {
            case Aspect::kText:
                window_.SetMenuText(id(), object().Caption());
                break;
            case Aspect::kEnabled:
                window_.EnableMenuEntry(id(), object().Enabled());
                break;
            case Aspect::kPopUp:
                window_.PopUpMenu(id());
                break;
            default:
                break;
        }
    }
};

class TimerBinder : public BinderOf<forms::Timer> {
  public:
    using BinderOf::BinderOf;
    ~TimerBinder() override { KillTimer(window_.handle(), Number()); }

    void Tick() override { object().Elapse(); }

  protected:
    void Show(Aspect aspect) override {
        if (aspect != Aspect::kEnabled) {
            return;
        }
        if (object().Enabled()) {
            SetTimer(window_.handle(), Number(), static_cast<UINT>(object().Interval().count()),
                     nullptr);
        } else {
            KillTimer(window_.handle(), Number());
        }
    }

  private:
    UINT_PTR Number() const { return reinterpret_cast<UINT_PTR>(static_cast<const Binder*>(this)); }
};

}  // namespace

const BinderMaker kTabsBinder = NewBinder<TabsBinder>;
const BinderMaker kMenuBinder = NewBinder<MenuBinder>;
const BinderMaker kTimerBinder = NewBinder<TimerBinder>;

}  // namespace vantrel::views
