#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"

#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"

FILTERList* GETLISTApiMethod::GetFilter() const {
    return GetTyped(*this, FilterAttribute()).release();
}

void GETLISTApiMethod::SetFilter(const FILTERList* filter) {
    SetTyped(*this, FilterAttribute(), filter);
}

const GETLISTFILTERApiAttribute& GETLISTApiMethod::FilterAttribute() {
    static const auto& attribute = *new GETLISTFILTERApiAttribute("Filter", 20, false, "Filter");
    return attribute;
}
