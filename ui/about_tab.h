// The About tab: what this program is, and whom to ask about it.
#pragma once

#include <array>

#include "forms/controls.h"
#include "forms/form.h"

namespace vantrel {

struct AboutTab {
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
};

}  // namespace vantrel
