// Apart from apiObjectInstance.cpp, so that references can be used without the object classes.
#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

APIObjectInstance::APIObjectInstance(const BASEApiObject& object)
    : APIObjectInstance(object.GetInstanceId(), object.GetObjectType(), object.GetInstanceName()) {}
