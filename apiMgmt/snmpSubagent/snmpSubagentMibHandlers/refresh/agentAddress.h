#pragma once

#include <string>

/**
 * The array's own address, from what was fetched: its management address, else that of a controller.
 * 0 with the address, 1 when none is known. is_leader: this controller is known to lead; is_ipv4: the
 * address is an IPv4 one. Main thread only.
 */
int get_array_ip_addr(std::string* address, bool* is_leader, bool* is_ipv4);
