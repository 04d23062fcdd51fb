#include "apiMgmt/common/utils/generalUtils.h"

#include <stdexcept>

#include "apiMgmt/common/utils/pathConstants.h"

namespace {

// Never destroyed, because threads that use an endpoint may outlive static objects.
const WireLinkEndpoint* NewEndpoint(const char* path, unsigned long size_bytes) {
    constexpr long timeout_s = 900;
    return new WireLinkEndpoint(WireLinkEndpoint::CreateLocalEndpoint(path, timeout_s, size_bytes));
}

}  // namespace

const WireLinkEndpoint& GENERALUtils::GetEndpoint(int index) {
    switch (index) {
        case ENDPOINT_APIMGR: {
            static const WireLinkEndpoint* const endpoint = NewEndpoint(kApiMgrSocket, 5242880);
            return *endpoint;
        }
        case ENDPOINT_MCSHIM: {
            static const WireLinkEndpoint* const endpoint = NewEndpoint(kMcShimSocket, 2097152);
            return *endpoint;
        }
        case ENDPOINT_SNMPSUBAGENT: {
            static const WireLinkEndpoint* const endpoint = NewEndpoint(kSnmpSubagentSocket, 2097152);
            return *endpoint;
        }
        default:
            throw std::invalid_argument("GENERALUtils::GetEndpoint: unknown endpoint");
    }
}
