#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"

/** Parses an OID. A leading "R" means the root of the MIB, "OLD" the old enterprise number. */
std::vector<oid> oid_of(const std::string& text);

/** Formats an OID, with R and OLD where possible. */
std::string text_of(const oid* name, size_t length);

/** Formats the OID of a variable; "-" for index -1. */
std::string name_of(int32_t var_index);

/** Returns the index of the variable with this OID, whether it is cached or not. */
int32_t index_of(const std::string& name);

/** Returns the variable of a column in this row and parent, both from 1. */
int32_t var_at(int col_id, int32_t row, int32_t parent = 1);

/** Formats a value: a string in quotes, or a number; "-" if it is not cached. */
std::string value_of(int32_t var_index);

/** A fresh store and comm object, with nothing cached, `verbose` set and the transcript empty. Its header
   brings the log, the clock, the array and the transcript, as every test of the core uses them. */
class MibWorld : public testing::Test {
  protected:
    MibWorld();

    /** Caches a variable with a value. */
    static void put(const std::string& name, const std::string& text);
    static void put(const std::string& name, uint32_t number);
};
