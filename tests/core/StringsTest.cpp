#include "platform/core/Strings.h"
#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(StringList, TextSplitsAtAnyLineBreakAndJoinsWithNewlines) {
    TStringList list;
    list.SetText("one\r\ntwo\nthree\rfour");
    ASSERT_EQ(list.Count(), 4);
    EXPECT_EQ(list[3], "four");
    EXPECT_EQ(list.Text(), "one\ntwo\nthree\nfour\n");
    list.SetText("a\n\nb\n");
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list[1], "");
}

TEST(StringList, EditingAndLookup) {
    TStringList list{"alpha", "beta"};
    list.Insert(1, "mid");
    list.Add("gamma");
    list.Delete(0);
    EXPECT_EQ(list.Text(), "mid\nbeta\ngamma\n");
    EXPECT_EQ(list.IndexOf("BETA"), 1);
    EXPECT_EQ(list.IndexOf("zeta"), -1);
    EXPECT_THROW(list.Delete(3), EStringListError);
    EXPECT_THROW(list.Insert(5, "x"), EStringListError);
    list.Move(0, 2);
    EXPECT_EQ(list.Text(), "beta\ngamma\nmid\n");
}

TEST(StringList, OnChangeFiresOncePerUpdateBlock) {
    TStringList list;
    int changes = 0;
    list.OnChange = [&](TObject* sender) {
        EXPECT_EQ(sender, &list);
        ++changes;
    };
    list.Add("a");
    EXPECT_EQ(changes, 1);
    list.BeginUpdate();
    list.Add("b");
    list.Add("c");
    list.BeginUpdate();
    list.Delete(0);
    list.EndUpdate();
    EXPECT_EQ(changes, 1);
    list.EndUpdate();
    EXPECT_EQ(changes, 2);
    list.BeginUpdate();
    list.EndUpdate(); // nothing changed: no event
    EXPECT_EQ(changes, 2);
}

TEST(StringList, AssignCopiesAndRejectsForeignClasses) {
    TStringList a{"x", "y"}, b;
    b.Assign(a);
    EXPECT_EQ(b.Text(), "x\ny\n");
    b.Assign(b);
    EXPECT_EQ(b.Count(), 2);
    class TOther : public TPersistent {};
    TOther other;
    EXPECT_THROW(b.Assign(other), EConvertError);
}
