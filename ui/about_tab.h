// The About tab: the product, its version and how to contact the company. The web address blinks
// while the tab is shown.
#pragma once

#include <array>

#include "forms/controls.h"
#include "forms/form.h"

namespace vantrel {

class AboutTab {
  public:
    explicit AboutTab(forms::Form& window);

    forms::Frame Fra_Logo;
    forms::Picture Img_Logo;
    forms::Label Lbl_ProductName;
    forms::Label Lbl_CompanyProduct;
    forms::Label Lbl_Description;
    forms::Frame Fra_Version;
    forms::Label Label1;
    forms::Label Fld_Version;
    forms::Label Lbl_Build;
    forms::Label Fld_Build;
    forms::Frame Fra_About;
    forms::Label Lbl_About;
    forms::Label Lbl_CompanyName;
    forms::Label Lbl_Who;
    std::array<forms::Label, 2> Lbl_Address;
    forms::Label Lbl_WebAddress;
    forms::Button Cmd_ContactUs;
    forms::Timer Tim_Flash;
    forms::Frame Fra_Warning;
    forms::Label Lbl_Warning;

    // Called when the tab is shown: fills in the version and starts the timer of the web address.
    void OnShown();
    void Tim_Flash_Timer();
    void Lbl_WebAddress_Click();

  private:
    forms::Program& program_;
};

}  // namespace vantrel
