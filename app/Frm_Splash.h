// The window that is on screen while start-up does its slow steps.
#pragma once

#include "forms/controls.h"
#include "forms/form.h"

namespace vantrel {

class Frm_Splash : public forms::Form {
  public:
    explicit Frm_Splash(forms::Program& program);

    forms::Picture Img_Logo;
    forms::Label Lbl_ProductName;
    forms::Label Lbl_Description;
    forms::Label Lbl_Version;
    forms::Label Lbl_Platform;
    forms::Label Lbl_CompanyProduct;
    forms::Label Lbl_Copyright;
    forms::Label Lbl_Warning;

    void Form_Load() override;
};

}  // namespace vantrel
