#include "apiMgmt/common/wirelink/wireLinkEndpoint.h"

#include <utility>

#include "apiMgmt/common/wirelink/accessKey.h"

WireLinkEndpoint::WireLinkEndpoint(std::string path, long timeout_s, unsigned long size_bytes)
    : path_(std::move(path)), timeout_s_(timeout_s), size_bytes_(size_bytes) {}

WireLinkEndpoint WireLinkEndpoint::CreateLocalEndpoint(const std::string& path, long timeout_s,
                                                       unsigned long size_bytes) {
    return WireLinkEndpoint(path, timeout_s, size_bytes);
}

std::string WireLinkEndpoint::GetAccessKey() {
    return ReadAccessKey(kAccessKeyFile);
}
