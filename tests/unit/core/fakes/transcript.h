#pragma once

#include <functional>
#include <string>
#include <vector>

/**
 * The calls of all fakes of a test program, one per line, in their order. Any thread.
 */
namespace transcript {

void add(const std::string& line);

/** Returns all lines since the last call. */
std::string take();

/** Called with each line that begins with this string, so that a test can act in between. */
void on(const std::string& beginning, std::function<void(const std::string&)> action);

}  // namespace transcript
