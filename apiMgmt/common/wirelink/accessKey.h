#pragma once

#include <string>

/** Contains the trusted session key in its first line. */
inline constexpr char kAccessKeyFile[] = "/etc/wirelink.key";

/**
 * Returns the key in a file according to the rules of WireLinkEndpoint::GetAccessKey; empty if there is no
 * trusted one.
 */
std::string ReadAccessKey(const char* path);
