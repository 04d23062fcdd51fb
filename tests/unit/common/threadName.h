#pragma once

#include <string>

/** The name of the calling thread, as the system shows it. */
std::string ThisThreadsName();
