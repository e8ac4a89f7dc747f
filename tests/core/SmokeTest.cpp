#include "platform/core/Component.h"
#include <gtest/gtest.h>
TEST(Smoke, Builds) { qv::TComponent c(nullptr); EXPECT_EQ(c.ComponentCount(), 0); }
