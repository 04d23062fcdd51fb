#pragma once

#include <iosfwd>

namespace checkconf {

/** The program. Result: its exit status; see --help. */
int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace checkconf
