#include <algorithm>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/snmpPdu.h"

namespace {

using name_type = std::vector<oid>;

// A store in which every instance, or every third, is cached.
TEST_F(MibWorld, EveryInstanceIsFoundAndFollowsTheOneBeforeIt) {
    verbose = false;
    for (const int32_t step : {1, 3}) {
        clear_cached_range(0, total_vars);
        for (int32_t i = 0; i < total_vars; i += step)
            set_cached(i);
        for (int32_t i = 0; i < total_vars; ++i) {
            oid name[MAX_handled_oidlen + 1];
            const column_record& column = cols[vars[i].col_id];
            size_t length = column.oid_len;
            std::copy_n(column.oid_ptr, length, name);
            append_seq_nums(name, &length, i);
            const int32_t next = (i / step + 1) * step;
            ASSERT_EQ(get_index_of_oid(name, length), i % step == 0 ? i : -1) << text_of(name, length);
            ASSERT_EQ(find_next_index(name, length), next < total_vars ? next : -1) << text_of(name, length);
        }
    }
}

TEST_F(MibWorld, EdgesOfAGet) {
    for (const char* name : {"1.3.6.1.2.1.1.4.0", "R.1.0", "R.13.1.2.1", "R.13.1.2.2", "R.16.1.3.1.6",
                             "R.16.1.3.2.1", "R.46.1.11.2.9000"})
        set_cached(index_of(name));
    const std::pair<const char*, const char*> rows[] = {
        {"R.1.0", "R.1.0"},
        {"R.16.1.3.1.6", "R.16.1.3.1.6"},
        {"R.1", "found exact match with base-oid, but base column-oid == requested oid$"},
        {"R.1.0.0", "found exact match with base-oid, but oid too long$"},
        {"R.2.0", "found exact match with base-oid, but var not cached: index_of_matched: 5$"},
        {"R.13.1.2", "found exact match with base-oid, but base column-oid >= requested oid$"},
        {"R.13.1.2.0", "found exact match with base-oid, but seq nums is bad: seq: 0$"},
        {"R.13.1.2.3", "found exact match with base-oid, but seq nums is bad: seq: 3$"},
        {"R.13.1.2.4294967295", "found exact match with base-oid, but seq nums is bad: seq: -1$"},
        {"R.13.1.3.1", "found exact match with base-oid, but var not cached$"},
        {"R.13.1.1.1", "found greater-than so search has failed$"},
        {"R.16.1.3.0.1",
         "found exact match with base-oid, but one or more seq nums is bad: parent seq: 0, row seq: 1$"},
        {"R.16.1.3.1.7",
         "found exact match with base-oid, but one or more seq nums is bad: parent seq: 1, row seq: 7$"},
        {"R.16.1.3.1.1", "found exact match with base-oid, but var not cached$"},
        {"R.46.1.12.1.1", "could not find index for oid: 1.3.6.1.4.1.913.11000.2000.500.1.2.46.1.12.1.1.$"},
    };
    for (const auto& [each_name, answer] : rows) {
        const name_type name = oid_of(each_name);
        transcript::take();
        const int32_t found = get_index_of_oid(name.data(), name.size());
        const std::string log = transcript::take();
        EXPECT_EQ(found < 0 ? log : name_of(found),
                  found < 0 ? std::string("log 7 ") + answer + "\n" : answer)
            << each_name;
    }
}

TEST_F(MibWorld, EdgesOfAGetNext) {
    for (const char* name : {"1.3.6.1.2.1.1.4.0", "1.3.6.1.2.1.1.5.0", "R.1.0", "R.13.1.2.1", "R.13.1.3.1",
                             "R.16.1.3.1.1", "R.16.1.3.1.3", "R.16.1.3.1.6", "R.16.1.3.2.1", "R.16.1.4.2.2",
                             "R.17.1.2.1.1", "R.46.1.10.1.1", "R.46.1.11.1.1"})
        set_cached(index_of(name));
    const std::pair<const char*, const char*> rows[] = {
        {"1", "1.3.6.1.2.1.1.4.0"},
        {"1.3.6.1.2.1.1.4.0", "1.3.6.1.2.1.1.5.0"},
        {"R", "R.1.0"},
        {"R.1.0", "R.13.1.2.1"},
        {"R.13.1.2.0", "R.13.1.2.1"},
        {"R.13.1.2.1", "R.13.1.3.1"},       // row 2 is not cached
        {"R.13.1.2.2.5", "R.13.1.3.1"},     // what follows the row is ignored
        {"R.13.1.2.2000", "R.16.1.3.1.1"},  // is in a later column
        {"R.16.1.3.0", "R.16.1.3.1.6"},     // begins at the last row of parent 1
        {"R.16.1.3.0.4", "R.16.1.3.1.1"},
        {"R.16.1.3.1", "R.16.1.4.2.2"},  // only a parent: continues with the next column
        {"R.16.1.3.3", "R.16.1.4.2.2"},
        {"R.16.1.3.1.0", "R.16.1.3.1.1"},
        {"R.16.1.3.1.6", "R.16.1.3.2.1"},
        {"R.16.1.3.1.2.7", "-"},
        {"R.16.1.4.2.2", "R.17.1.2.1.1"},
        {"R.16.1.3.4294967295.4294967295", "-"},
        {"R.13.1.2.4294967295", "-"},
        {"R.46.1.11.1", "-"},  // no later column
        {"R.46.1.11.1.1", "-"},
        {"2", "-"},
    };
    for (const auto& [each_name, next] : rows) {
        const name_type name = oid_of(each_name);
        EXPECT_EQ(name_of(find_next_index(name.data(), name.size())), next) << each_name;
    }
}

// The lookups of the request handler, which try the last delivered OID first.
class LastOid : public MibWorld {
  protected:
    LastOid() { begin_agent_tick(); }
};

TEST_F(LastOid, AnswersARepeatedGetFromTheEntryEvenWhenARefreshHasClearedIt) {
    put("R.13.1.4.1", "ctlr");
    EXPECT_EQ(get("R.13.1.4.1"), "R.13.1.4.1 = \"ctlr\"");
    clear_cached(index_of("R.13.1.4.1"));
    EXPECT_EQ(get("R.13.1.4.1"), "R.13.1.4.1 = \"ctlr\"");
    EXPECT_EQ(get("R.13.1.4.2"), "R.13.1.4.2 = noSuchInstance");
    put("R.1.0", "other");
    get("R.1.0");
    EXPECT_EQ(get("R.13.1.4.1"), "R.13.1.4.1 = noSuchInstance");
}

TEST_F(LastOid, CarriesAWalkOnBehindAVariableThatHasLeftItsTable) {
    put("R.16.1.2.1.1", 1);
    put("R.16.1.2.1.2", 2);
    put("R.16.1.2.2.1", 1);
    EXPECT_EQ(get_next("R.16"), "R.16.1.2.1.1 = gauge 1");
    clear_cached(index_of("R.16.1.2.1.1"));
    EXPECT_EQ(get_next("R.16.1.2.1.1"), "R.16.1.2.1.2 = gauge 2");
    EXPECT_EQ(get_next("R.16.1.2.1.2"), "R.16.1.2.2.1 = gauge 1");
    EXPECT_EQ(get_next("R.16.1.2.2.1"), "R.16.1.2.2.1 = endOfMibView");
}

TEST(OidText, IsCutAtItsLimits) {
    verbose = true;
    const name_type ones(20, 1);
    name_type destination(20, 7);
    copy_oid(destination.data(), ones.data(), 20);  // too long
    EXPECT_EQ(destination, name_type(20, 7));
    copy_oid(destination.data(), ones.data(), 19);
    EXPECT_EQ(destination[18] * 10 + destination[19], 17U);
    EXPECT_EQ(transcript::take(), "log 4 iOidLen is too large: 20$\n");

    char text[191] = "left";
    const name_type name = {1, 3, 600000};
    EXPECT_EQ(get_oid_str(name.data(), 3, text, 190), 11);
    EXPECT_STREQ(text, "1.3.600000.");
    EXPECT_EQ(get_oid_str(name.data(), 0, text, 190), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(get_oid_str(name.data(), 3, text, 13), 4);
    EXPECT_STREQ(text, "1.3.");
    EXPECT_EQ(get_oid_str(name.data(), 3, nullptr, 190), 0);
    EXPECT_EQ(get_oid_str(ones.data(), 20, text, 190), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(transcript::take(),
              "log 4 ran out of room in output_str: 1.3.$\nlog 4 no ptr to output string$\n"
              "log 4 oidlen too long: 20$\n");

    std::string appended = "oid ";
    oid_to_string(appended, name.data(), 3);
    EXPECT_EQ(appended, "oid 1.3.600000.");
}

}  // namespace
