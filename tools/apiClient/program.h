#pragma once

#include <iosfwd>

namespace apiclient {

/** Runs the program and returns its exit status. */
int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace apiclient
