#pragma once

#include <cstddef>

/** The number of classes in each factory. */
struct Inventory {
    size_t objects;
    size_t methods;
    size_t methodObjects;
};

Inventory TakeInventory();
