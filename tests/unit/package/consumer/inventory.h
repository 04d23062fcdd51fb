#pragma once

/** Prints how many classes each of the factories holds. */
void PrintInventory();
