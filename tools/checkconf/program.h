#pragma once

#include <iosfwd>

namespace checkconf {

/** Runs the program and returns its exit status. */
int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace checkconf
