#pragma once

#include <cstdint>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/** A linear scan over all columns, which defines the correct result of a lookup. */
namespace literal_lookup {

using name_type = std::vector<oid>;

/** Returns the index of the cached instance with that name, or -1. */
int32_t exact(const name_type& name);

/** Returns where the search for the next cached instance begins, or -1 at the end of the view. The result can
    be beyond the store. */
int64_t next_candidate(const name_type& name);

}  // namespace literal_lookup
