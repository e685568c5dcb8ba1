// An empty window on a machine with nothing in it, to put controls on.
#pragma once

#include <string>
#include <vector>

#include "forms/form.h"
#include "tests/support/error_of.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

class FormsFixture : public ProgramFixture {
  protected:
    struct BareForm : forms::Form {
        explicit BareForm(forms::Program& owner) : Form(owner, "Frm_Test") {}
    };
    BareForm form{program};
};

// The description of the error that `action` raises; "" when it raises none.
template <typename Action>
std::string DescriptionOf(Action&& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.description();
    }
    return "";
}

// Records the aspects that a control reports to its view.
struct RecordingView : forms::ControlView {
    std::vector<forms::Aspect> changes;
    void Changed(forms::Aspect aspect) override { changes.push_back(aspect); }
};

}  // namespace vantrel::test
