#include "apiMgmt/common/utils/generalUtils.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <thread>
#include <vector>

TEST(GeneralUtils, ThreadsSeeOneObjectForEachEndpoint) {
    std::vector<const WireLinkEndpoint*> seen(4);
    std::vector<std::thread> threads;
    for (auto& endpoint : seen) {
        threads.emplace_back([&endpoint] { endpoint = &GENERALUtils::GetEndpoint(ENDPOINT_MCSHIM); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(seen, testing::Each(&GENERALUtils::GetEndpoint(ENDPOINT_MCSHIM)));
    EXPECT_NE(&GENERALUtils::GetEndpoint(ENDPOINT_APIMGR), seen[0]);
}

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
