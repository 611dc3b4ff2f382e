#include "kvtest.h"
#include "kvkit_core.h"
TEST(Smoke, Loads) { EXPECT_EQ(1, Kx1SetLayeredWindowAttributes_Enabled()); EXPECT_EQ(1, Kx1GradientFill_Enabled()); }
int main(int argc, char** argv) { ::testing::InitGoogleTest(&argc, argv); return RUN_ALL_TESTS(); }
