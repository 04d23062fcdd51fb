#include "inventory.h"

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

Inventory TakeInventory() {
    return {APIObjectFactory<BASEApiObject>::Instance().GetCreators().size(),
            APIObjectFactory<BASEApiMethod>::Instance().GetCreators().size(),
            APIObjectFactory<BASEApiMethodObject>::Instance().GetCreators().size()};
}
