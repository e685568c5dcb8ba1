#include "ui/about_tab.h"

#include <chrono>
#include <string>

#include "common/product.h"
#include "forms/desktop.h"

namespace vantrel {

using std::chrono::milliseconds;

AboutTab::AboutTab(forms::Form& window)
    : Fra_Logo(window, "Fra_Logo"),
      Img_Logo(window, "Img_Logo"),
      Lbl_ProductName(window, "Lbl_ProductName", product::kName),
      Lbl_CompanyProduct(window, "Lbl_CompanyProduct", "Corvane Limited "),
      Lbl_Description(window, "Lbl_Description", "Backup Utility"),
      Fra_Version(window, "Fra_Version", "Product Information"),
      Label1(window, "Label1", "Version"),
      Fld_Version(window, "Fld_Version"),
      Lbl_Build(window, "Lbl_Build", "Build No."),
      Fld_Build(window, "Fld_Build"),
      Fra_About(window, "Fra_About", "Further Information"),
      Lbl_About(window, "Lbl_About",
                "Distribution and Purchasing Information can be obtained from;"),
      Lbl_CompanyName(window, "Lbl_CompanyName", product::kCompany),
      Lbl_Who(window, "Lbl_Who", "The Manager"),
      Lbl_Address{{{window, "Lbl_Address_0", product::kAddressLine1},
                   {window, "Lbl_Address_1", product::kAddressLine2}}},
      Lbl_WebAddress(window, "Lbl_WebAddress", product::kWebAddress),
      Cmd_ContactUs(window, "Cmd_ContactUs", "&Contact Us"),
      Tim_Flash(window, "Tim_Flash", milliseconds(500)),
      Fra_Warning(window, "Fra_Warning"),
      Lbl_Warning(window, "Lbl_Warning", product::kWarningText),
      program_(window.program()) {
    Lbl_WebAddress.Click = [this] { Lbl_WebAddress_Click(); };
    Tim_Flash.Tick = [this] { Tim_Flash_Timer(); };
    Lbl_WebAddress.SetTooltip("Connect to Web Address");
    Cmd_ContactUs.SetTooltip("Send EMail to Corvane Limited");
}

void AboutTab::OnShown() {
    const forms::Hourglass hourglass(program_.desktop);
    Tim_Flash.SetEnabled(true);
    Fld_Version.SetCaption(std::to_string(product::kVersionMajor) + "." +
                           std::to_string(product::kVersionMinor));
    Fld_Build.SetCaption(std::to_string(product::kVersionRevision));
}

void AboutTab::Tim_Flash_Timer() {
    using Color = forms::Label::Color;
    const bool plain = Lbl_WebAddress.ForeColor() == Color::kButtonText;
    Lbl_WebAddress.SetForeColor(plain ? Color::kHighlightText : Color::kButtonText);
}

// The shell reports its own failures.
void AboutTab::Lbl_WebAddress_Click() {
    program_.machine.shell.Open(Lbl_WebAddress.Caption(), platform::ShellVerb::kDefault);
}

}  // namespace vantrel
