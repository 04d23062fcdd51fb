#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

// Made at the first registration, which may come before the static objects of this unit.

template <>
APIObjectFactory<BASEApiObject>& APIObjectFactory<BASEApiObject>::Instance() {
    static auto& factory = *new APIObjectFactory;
    return factory;
}

template <>
APIObjectFactory<BASEApiMethod>& APIObjectFactory<BASEApiMethod>::Instance() {
    static auto& factory = *new APIObjectFactory;
    return factory;
}

template <>
APIObjectFactory<BASEApiMethodObject>& APIObjectFactory<BASEApiMethodObject>::Instance() {
    static auto& factory = *new APIObjectFactory;
    return factory;
}
