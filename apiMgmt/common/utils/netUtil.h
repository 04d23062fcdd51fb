#pragma once

#include <string>

/**
 * Splits "address/prefix". address: the part before the last "/", set only when it is a valid IPv6
 * address, which is the answer; empty otherwise. prefix_length: 128 when none is given, -1 when it is
 * above 128, 0 when it is no number.
 */
bool ParseIPv6Address(const std::string& text, std::string& address, int& prefix_length);
