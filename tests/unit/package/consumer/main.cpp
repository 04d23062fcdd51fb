#include <iostream>

#include "inventory.h"

int main() {
    const Inventory inventory = TakeInventory();
    std::cout << inventory.objects << ' ' << inventory.methods << ' ' << inventory.methodObjects << '\n';
}
