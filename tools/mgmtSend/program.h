#pragma once

#include <iosfwd>

namespace mgmtsend {

/** Runs the program and returns its exit status. */
int RunProgram(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace mgmtsend
