#include "app/Frm_Splash.h"

#include "common/product.h"

namespace vantrel {

Frm_Splash::Frm_Splash(forms::Program& program)
    : Form(program, "Frm_Splash"),
      Img_Logo(*this, "Img_Logo"),
      Lbl_ProductName(*this, "Lbl_ProductName", product::kName),
      Lbl_Description(*this, "Lbl_Description", "Backup Utility"),
      Lbl_Version(*this, "Lbl_Version", "Version 3.0.0"),
      Lbl_Platform(*this, "Lbl_Platform", "for Windows 95/98/NT"),
      Lbl_CompanyProduct(*this, "Lbl_CompanyProduct", "Corvane Limited "),
      Lbl_Copyright(*this, "Lbl_Copyright", product::kNoticeLine),
      Lbl_Warning(*this, "Lbl_Warning", product::kSplashWarning) {}

void Frm_Splash::Form_Load() { Lbl_Version.SetCaption("Version " + product::VersionText()); }

}  // namespace vantrel
