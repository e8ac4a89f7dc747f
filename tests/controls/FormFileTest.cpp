#include "ControlsFixture.h"

#include "platform/controls/ComboBox.h"
#include "platform/controls/Edit.h"
#include "platform/controls/Label.h"
#include "platform/controls/ListBox.h"
#include "platform/controls/Panel.h"
#include "platform/controls/StandardClasses.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"

using namespace qv;
using namespace qvtest;

namespace {

template <class T> T* Named(TComponent& root, const std::string& name) {
    auto* found = dynamic_cast<T*>(root.FindComponent(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
}

} // namespace

// The standard controls survive a trip through a text form file.
TEST(StandardControlsFormFile, WrittenFormReadsBackWithTheSameSettings) {
    RegisterStandardClasses();
    TForm original(nullptr);
    original.SetName("Main");
    auto* panel = new TPanel(&original);
    panel->SetName("Panel1");
    panel->SetParent(&original);
    panel->SetBevelInner(bvLowered);
    panel->SetBorderStyle(bsSingle);
    panel->SetCaption("Top");
    auto* edit = new TEdit(&original);
    edit->SetName("Edit1");
    edit->SetParent(panel);
    edit->SetText("typed");
    edit->SetMaxLength(12);
    edit->SetPasswordChar('*');
    auto* label = new TLabel(&original);
    label->SetName("Label1");
    label->SetParent(&original);
    label->SetCaption("&Name");
    label->SetLayout(tlCenter);
    label->SetFocusControl(edit);
    auto* list = new TListBox(&original);
    list->SetName("List1");
    list->SetParent(&original);
    list->Items()->SetText("a\nb\nc\n");
    list->SetStyle(lbOwnerDrawFixed);
    list->SetItemHeight(20);
    auto* combo = new TComboBox(&original);
    combo->SetName("Combo1");
    combo->SetParent(&original);
    combo->SetStyle(csDropDownList);
    combo->Items()->SetText("red\ngreen\nblue\n");
    combo->SetItemIndex(1);

    const std::string text = WriteComponentText(original);
    EXPECT_EQ(text.find("BevelOuter"), std::string::npos) << text; // defaults are not written
    const std::unique_ptr<TComponent> copy = ReadComponentText(text);
    ASSERT_NE(copy, nullptr);
    auto* panel2 = Named<TPanel>(*copy, "Panel1");
    auto* edit2 = Named<TEdit>(*copy, "Edit1");
    auto* label2 = Named<TLabel>(*copy, "Label1");
    auto* list2 = Named<TListBox>(*copy, "List1");
    auto* combo2 = Named<TComboBox>(*copy, "Combo1");
    ASSERT_TRUE(panel2 && edit2 && label2 && list2 && combo2);
    EXPECT_EQ(panel2->BevelInner(), bvLowered);
    EXPECT_EQ(panel2->BorderStyle(), bsSingle);
    EXPECT_EQ(panel2->Caption(), "Top");
    EXPECT_EQ(edit2->Parent(), panel2);
    EXPECT_EQ(edit2->Text(), "typed");
    EXPECT_EQ(edit2->MaxLength(), 12);
    EXPECT_EQ(edit2->PasswordChar(), '*');
    EXPECT_EQ(label2->Layout(), tlCenter);
    EXPECT_EQ(label2->FocusControl(), edit2);
    EXPECT_EQ(label2->Width(), label->Width());
    EXPECT_EQ(list2->Items()->Text(), "a\nb\nc\n");
    EXPECT_EQ(list2->Style(), lbOwnerDrawFixed);
    EXPECT_EQ(list2->ItemHeight(), 20);
    EXPECT_EQ(combo2->Style(), csDropDownList);
    EXPECT_EQ(combo2->Items()->Count(), 3);
    EXPECT_EQ(combo2->ItemIndex(), 1); // the text is read before the items
    EXPECT_EQ(WriteComponentText(*copy), text);
}
