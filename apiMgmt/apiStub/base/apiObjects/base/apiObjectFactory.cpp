#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

// Created at the first registration, which may precede the initialisation of this unit's static objects.

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
