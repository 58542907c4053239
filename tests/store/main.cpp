#include <gtest/gtest.h>

#include "store/Child.h"

int main(int argc, char** argv) {
    if (int const status = kov::test::RunChildRole(argc, argv); status >= 0) return status;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
