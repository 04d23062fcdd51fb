#include "inventory.h"

#include <iostream>

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

void PrintInventory() {
    std::cout << APIObjectFactory<BASEApiObject>::Instance().GetCreators().size() << ' '
              << APIObjectFactory<BASEApiMethod>::Instance().GetCreators().size() << ' '
              << APIObjectFactory<BASEApiMethodObject>::Instance().GetCreators().size() << '\n';
}
