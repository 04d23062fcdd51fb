#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

/** The base of all GetList methods. Without arguments such a call lists all instances of its object. */
class GETLISTApiMethod : public BASEApiMethod {
  protected:
    using BASEApiMethod::BASEApiMethod;
};
