#pragma once

#include <string>

/** Returns the name of the calling thread according to the system. */
std::string ThisThreadsName();
