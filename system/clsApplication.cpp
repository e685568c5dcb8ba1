#include "system/clsApplication.h"

#include "common/error.h"
#include "common/product.h"

namespace vantrel {

bool clsApplication::PrevInstance() {
    return Reported("clsApplication:PrevInstance Method",
                    [&] { return program_.machine.process.PreviousInstance(); });
}

void clsApplication::ShutDown(forms::Form* splash) {
    Reported("clsApplication:ShutDown Method", [&] {
        if (splash != nullptr && splash->Loaded()) {
            program_.desktop.Unload(*splash);
        }
    });
}

std::string clsApplication::VersionNo() {
    return Reported("clsApplication:VersionNo Method", [] { return product::VersionText(); });
}

}  // namespace vantrel
