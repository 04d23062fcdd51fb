#pragma once

#include <cstdint>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/** The walk over all columns, one after the other, as the meaning of a lookup. */
namespace literal_lookup {

using name_type = std::vector<oid>;

/** The index of a cached instance, -1 when there is none of that name. */
int32_t exact(const name_type& name);

/** Where the search for the next cached instance begins, perhaps beyond the store; -1: the view has ended. */
int64_t next_candidate(const name_type& name);

}  // namespace literal_lookup
