#pragma once

#include <cstddef>

/** How many classes the factories hold, one count for each factory. */
struct Inventory {
    size_t objects;
    size_t methods;
    size_t methodObjects;
};

Inventory TakeInventory();
