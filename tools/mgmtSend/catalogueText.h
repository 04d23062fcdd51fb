#pragma once

#include <string>

/** All notifications with their numbers, words, names and arguments, for people. */
std::string CatalogueText();
