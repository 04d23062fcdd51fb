#include "apiMgmt/common/utils/generalUtils.h"

#include <gtest/gtest.h>

#include <stdexcept>

TEST(GeneralUtils, AnUnknownEndpointIsRefused) {
    for (const int index : {-1, 3, 1000}) {
        try {
            GENERALUtils::GetEndpoint(index);
            ADD_FAILURE() << index;
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "GENERALUtils::GetEndpoint: unknown endpoint");
        }
    }
}
