#include "app/Frm_Splash.h"

#include <chrono>

#include "common/product.h"
#include "system/clsForm.h"

namespace vantrel {

namespace {
constexpr std::chrono::milliseconds kDelay{5000};
}  // namespace

Frm_Splash::Frm_Splash(forms::Program& program)
    : Form(program, "Frm_Splash"),
      Img_Logo(*this, "Img_Logo"),
      Lbl_ProductName(*this, "Lbl_ProductName", product::kName),
      Lbl_Description(*this, "Lbl_Description", "Backup Utility"),
      Lbl_Version(*this, "Lbl_Version", "Version 3.0.0"),
      Lbl_Platform(*this, "Lbl_Platform", "for Windows 95/98/NT"),
      Lbl_CompanyProduct(*this, "Lbl_CompanyProduct", "Corvane Limited "),
      Lbl_Copyright(*this, "Lbl_Copyright", product::kNoticeLine),
      Lbl_Warning(*this, "Lbl_Warning", product::kSplashWarning),
      Tim_Delay(*this, "Tim_Delay", kDelay) {
    Tim_Delay.Tick = [this] { Tim_Delay_Timer(); };
}

void Frm_Splash::Form_Load() { Lbl_Version.SetCaption("Version " + product::VersionText()); }

void Frm_Splash::Form_Resize() { clsForm().Gradient(*this, 0, 0, 255, true); }

// Start-up shows this window and runs pending events, which call this handler: start-up waits here.
void Frm_Splash::Form_Activate() {
    Tim_Delay.SetEnabled(true);
    while (!delay_elapsed_ && Loaded()) {
        program().desktop.WaitEvents();
    }
}

void Frm_Splash::Tim_Delay_Timer() { delay_elapsed_ = true; }

}  // namespace vantrel
