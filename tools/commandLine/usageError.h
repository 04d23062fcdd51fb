#pragma once

#include <stdexcept>

namespace commandline {

/** The command line is wrong; what() says what is wrong and what is allowed. Nothing has been sent. */
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace commandline
