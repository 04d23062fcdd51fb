#pragma once

#include <string>

/**
 * Finds the array's address in the store: its management address, else that of a controller. Returns 0, or 1
 * if none is known. `is_leader` is set if this controller is known to be the leader, `is_ipv4` if the address
 * is an IPv4 address. Main thread only.
 */
int get_array_ip_addr(std::string* address, bool* is_leader, bool* is_ipv4);
