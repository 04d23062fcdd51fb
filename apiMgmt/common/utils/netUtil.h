#pragma once

#include <string>

/**
 * Splits "address/prefix" at the last "/". Returns whether the first part is a valid IPv6 address; `address`
 * is empty if not. `prefix_length` is 128 without a prefix, -1 for one above 128 and 0 for one that is not a
 * number.
 */
bool ParseIPv6Address(const std::string& text, std::string& address, int& prefix_length);
