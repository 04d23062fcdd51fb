#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"

class GETLISTFILTERApiAttribute;
struct FILTERList;

/** The base of all GetList methods. Without arguments such a call lists all instances of its object. */
class GETLISTApiMethod : public BASEApiMethod {
  public:
    /** The filter, owned by the caller; null when there is none or its text cannot be read. */
    virtual FILTERList* GetFilter() const;

    /** Null stores an empty text. */
    virtual void SetFilter(const FILTERList* filter);

    static const GETLISTFILTERApiAttribute& FilterAttribute();

  protected:
    using BASEApiMethod::BASEApiMethod;
};
