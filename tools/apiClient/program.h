#pragma once

#include <iosfwd>

/** Runs the program; the result is its exit status. */
int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err);
