#include "inventory.h"

int main() {
    PrintInventory();
}
