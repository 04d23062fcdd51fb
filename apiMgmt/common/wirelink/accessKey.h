#pragma once

#include <string>

/** Holds the trusted session key in its first line. */
inline constexpr char kAccessKeyFile[] = "/etc/wirelink.key";

/** The key of a file by the rules of WireLinkEndpoint::GetAccessKey; empty when there is none to trust. */
std::string ReadAccessKey(const char* path);
