#include "StandardClasses.h"

#include "Form.h"
#include "Menus.h"
#include "Timer.h"

#include "platform/core/ClassRegistry.h"

namespace qv {

void RegisterStandardClasses() {
    RegisterClasses({&TForm::StaticClassInfo(), &TTimer::StaticClassInfo(),
                     &TPopupMenu::StaticClassInfo(), &TMenuItem::StaticClassInfo()});
}

} // namespace qv
