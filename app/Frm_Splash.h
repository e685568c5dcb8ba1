// The splash window. It is shown during the slow steps of start-up, for at least five seconds.
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

    forms::Timer Tim_Delay;

    void Form_Load() override;
    void Form_Resize() override;
    // Returns after the delay, or when the window was closed.
    void Form_Activate() override;
    void Tim_Delay_Timer();

  private:
    bool delay_elapsed_ = false;
};

}  // namespace vantrel
