#include "StandardClasses.h"

#include "ComboBox.h"
#include "Edit.h"
#include "Form.h"
#include "Label.h"
#include "ListBox.h"
#include "Menus.h"
#include "Panel.h"
#include "Timer.h"

#include "platform/core/ClassRegistry.h"

namespace qv {

void RegisterStandardClasses() {
    RegisterClasses({&TForm::StaticClassInfo(), &TPanel::StaticClassInfo(),
                     &TLabel::StaticClassInfo(), &TEdit::StaticClassInfo(),
                     &TListBox::StaticClassInfo(), &TComboBox::StaticClassInfo(),
                     &TTimer::StaticClassInfo(), &TPopupMenu::StaticClassInfo(),
                     &TMenuItem::StaticClassInfo()});
}

} // namespace qv
