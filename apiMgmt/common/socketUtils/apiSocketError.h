#pragma once

#include "apiMgmt/common/utils/generalError.h"

/** A listening socket that could not be made. */
class APISocketError : public GENERALError {
  public:
    APISocketError(const std::string& file, uint32_t line, const std::string& message)
        : GENERALError(file, line, message) {}
};
