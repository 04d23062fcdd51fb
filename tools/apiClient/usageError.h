#pragma once

#include <stdexcept>

/** A command line that asks for something that is not to be had, in words. Nothing has been sent. */
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};
