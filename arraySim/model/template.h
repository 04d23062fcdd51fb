#pragma once

#include <string>
#include <string_view>

#include "arraySim/model/random.h"

namespace arraysim {

struct Place;

/** Fills the {placeholders} of a text rule; data/objects.def lists them. */
class Template {
  public:
    Template(const Place& place, Random& random) : place_(place), random_(random) {}

    /** Throws CatalogueError on an unknown placeholder. */
    std::string Expand(std::string_view text);

  private:
    std::string Fill(std::string_view placeholder);
    std::string Value(std::string_view name, int64_t added);

    const Place& place_;
    Random& random_;
};

}  // namespace arraysim
