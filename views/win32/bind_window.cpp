// Binders of the controls that belong to the entire window: tabs, menus and timers.
#include "forms/form.h"
#include "views/win32/binder.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;

namespace {

class TabsBinder : public Binder {
  public:
    TabsBinder(BinderWindow& window, forms::Tabs& tabs, HWND handle, int id)
        : Binder(window, tabs, handle, id), tabs_(tabs) {
        int index = 0;
        for (const std::string& caption : tabs.Captions()) {
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
            tabs_.SetTab(static_cast<int>(SendMessageW(handle(), TCM_GETCURSEL, 0, 0)));
        }
    }

  protected:
    void Show(Aspect aspect) override {
        if (aspect != Aspect::kSelection) {
            return;
        }
        SendMessageW(handle(), TCM_SETCURSEL, static_cast<WPARAM>(tabs_.Tab()), 0);
        window_.ShowPage(tabs_.Tab());
    }

  private:
    forms::Tabs& tabs_;
};

class MenuBinder : public Binder {
  public:
    MenuBinder(BinderWindow& window, forms::MenuItem& item, int id)
        : Binder(window, item, nullptr, id), item_(item) {}

    void Command(WORD) override { item_.UserChoose(); }

  protected:
    void Show(Aspect aspect) override {
        switch (aspect) {
            case Aspect::kText:
                window_.SetMenuText(id(), item_.Caption());
                break;
            case Aspect::kEnabled:
                window_.EnableMenuEntry(id(), item_.Enabled());
                break;
            case Aspect::kPopUp:
                window_.PopUpMenu(id());
                break;
            default:
                break;
        }
    }

  private:
    forms::MenuItem& item_;
};

class TimerBinder : public Binder {
  public:
    TimerBinder(BinderWindow& window, forms::Timer& timer)
        : Binder(window, timer, nullptr, 0), timer_(timer) {}
    ~TimerBinder() override { KillTimer(window_.handle(), Number()); }

    void Tick() override { timer_.Elapse(); }

  protected:
    void Show(Aspect aspect) override {
        if (aspect != Aspect::kEnabled) {
            return;
        }
        if (timer_.Enabled()) {
            SetTimer(window_.handle(), Number(), static_cast<UINT>(timer_.Interval().count()),
                     nullptr);
        } else {
            KillTimer(window_.handle(), Number());
        }
    }

  private:
    UINT_PTR Number() const { return reinterpret_cast<UINT_PTR>(static_cast<const Binder*>(this)); }
    forms::Timer& timer_;
};

}  // namespace

OwnedBinder BindTabs(BinderWindow& window, forms::Tabs& tabs, HWND handle, int id) {
    return std::make_unique<TabsBinder>(window, tabs, handle, id);
}

OwnedBinder BindMenu(BinderWindow& window, forms::MenuItem& item, int id) {
    return std::make_unique<MenuBinder>(window, item, id);
}

OwnedBinder BindTimer(BinderWindow& window, forms::Timer& timer) {
    return std::make_unique<TimerBinder>(window, timer);
}

}  // namespace vantrel::views
