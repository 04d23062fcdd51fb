#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

class GETLISTFILTERApiAttribute;
struct FILTERList;

/** Base of all GetList methods. Without arguments, such a call lists all instances of its object. */
class GETLISTApiMethod : public BASEApiMethod {
  public:
    /** Returns the filter, owned by the caller; null if there is none or it cannot be parsed. */
    virtual FILTERList* GetFilter() const;

    /** Null stores an empty string. */
    virtual void SetFilter(const FILTERList* filter);

    static const GETLISTFILTERApiAttribute& FilterAttribute();

  protected:
    using BASEApiMethod::BASEApiMethod;
};
