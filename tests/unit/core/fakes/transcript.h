#pragma once

#include <functional>
#include <string>
#include <vector>

/**
 * What the fakes of this folder were called with, line by line, in the order of the calls. All fakes of a
 * test program write here; any thread.
 */
namespace transcript {

void add(const std::string& line);

/** Everything since the last call, a line each. */
std::string take();

/** Called after each line that begins with this text, with the line; for tests that act in mid-course. */
void on(const std::string& beginning, std::function<void(const std::string&)> action);

}  // namespace transcript
