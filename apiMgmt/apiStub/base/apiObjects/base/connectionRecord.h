#pragma once

#include <string>

/** A connection that is forwarded on behalf of a client: what it proved itself with, and where it comes from.
 */
struct ConnectionRecord {
    std::string version;
    std::string userPass;
    std::string authToken;
    std::string hccid;
    std::string sourceAddress;
};
