#include <random>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidText.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/snmpPdu.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/literalLookup.h"

namespace {

using literal_lookup::name_type;

// ---- random stores and names ----

class LookupWalk : public MibWorld {
  protected:
    std::mt19937 random{20240607};
    std::vector<int32_t> next_cached;  // for each index, and one behind the last

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

    // One in `spread` variables is cached.
    void fill_store(size_t spread) {
        next_cached.assign(static_cast<size_t>(total_vars) + 1, -1);
        for (int32_t i = total_vars - 1; i >= 0; --i) {
            clear_cached(i);
            if (spread != 0 && below(spread) == 0)
                set_cached(i);
            next_cached[static_cast<size_t>(i)] = is_cached(i) ? i : next_cached[static_cast<size_t>(i) + 1];
        }
    }

    oid any_arc() {
        static const oid kEdges[] = {0,
                                     1,
                                     2,
                                     6,
                                     7,
                                     9000,
                                     9001,
                                     2147483647,
                                     2147483648,
                                     4294967295,
                                     0xFFFFFFFF80000000,
                                     0xFFFFFFFFFFFFFFFF};
        return below(2) == 0 ? kEdges[below(std::size(kEdges))] : below(50);
    }

    // The name of an instance or of a column, cut, lengthened, or with one arc a little off.
    name_type any_name() {
        const column_record& column = cols[below(NUMBER_OF_COLUMNS)];
        name_type name(column.oid_ptr, column.oid_ptr + column.oid_len);
        if (below(4) != 0)
            name = oid_of(name_of(static_cast<int32_t>(below(static_cast<size_t>(total_vars)))));
        if (below(3) == 0)
            name.resize(below(name.size() + 1));
        for (size_t more = below(2) == 0 ? below(4) : 0; more > 0; --more)
            name.push_back(any_arc());
        if (!name.empty() && below(2) == 0) {
            oid& arc = name[name.size() - 1 - below(std::min<size_t>(name.size(), 5))];
            const oid changes[] = {arc + 1, arc == 0 ? 0 : arc - 1, any_arc()};
            arc = changes[below(3)];
        }
        name.resize(std::min<size_t>(name.size(), 20));
        return name;
    }
};

TEST_F(LookupWalk, FindsWhatTheWalkOverAllColumnsFinds) {
    verbose = false;
    for (const size_t spread : {0, 1, 2, 40, 3000, 100000}) {
        fill_store(spread);
        for (int i = 0; i < 20000; ++i) {
            const name_type name = any_name();
            const int64_t candidate = literal_lookup::next_candidate(name);
            const int32_t next =
                candidate < 0 || candidate >= total_vars ? -1 : next_cached[static_cast<size_t>(candidate)];
            ASSERT_EQ(get_index_of_oid(name.data(), name.size()), literal_lookup::exact(name))
                << text_of(name.data(), name.size());
            ASSERT_EQ(find_next_index(name.data(), name.size()), next) << text_of(name.data(), name.size());
        }
    }
}

TEST_F(MibWorld, EdgesOfAGet) {
    for (const char* name : {"1.3.6.1.2.1.1.4.0", "R.1.0", "R.13.1.2.1", "R.13.1.2.2", "R.16.1.3.1.6",
                             "R.16.1.3.2.1", "R.46.1.11.2.9000"})
        set_cached(index_of(name));
    struct row {
        const char* name;
        const char* answer;  // the name found, or the reason in the log
    };
    const row rows[] = {
        {"1.3.6.1.2.1.1.4.0", "1.3.6.1.2.1.1.4.0"},
        {"R.1.0", "R.1.0"},
        {"R.13.1.2.2", "R.13.1.2.2"},
        {"R.16.1.3.1.6", "R.16.1.3.1.6"},
        {"R.16.1.3.2.1", "R.16.1.3.2.1"},
        {"R.46.1.11.2.9000", "R.46.1.11.2.9000"},
        {"R.1", "found exact match with base-oid, but base column-oid == requested oid$"},
        {"R.1.1", "found exact match with base-oid, but oid too long$"},
        {"R.1.0.0", "found exact match with base-oid, but oid too long$"},
        {"1.3.6", "found exact match with base-oid, but oid too long$"},
        {"R.2.0", "found exact match with base-oid, but var not cached: index_of_matched: 5$"},
        {"R.13", "found exact match with base-oid, but base column-oid >= requested oid$"},
        {"R.13.1.2", "found exact match with base-oid, but base column-oid >= requested oid$"},
        {"R.13.1.2.0", "found exact match with base-oid, but seq nums is bad: seq: 0$"},
        {"R.13.1.2.3", "found exact match with base-oid, but seq nums is bad: seq: 3$"},
        {"R.13.1.2.4294967295", "found exact match with base-oid, but seq nums is bad: seq: -1$"},
        {"R.13.1.2.1.1", "found exact match with base-oid, but oid too long$"},
        {"R.13.1.3.1", "found exact match with base-oid, but var not cached$"},
        {"R.13.1.1.1", "found greater-than so search has failed$"},
        {"R.16.1.3.1", "found exact match with base-oid, but oid too long$"},
        {"R.16.1.3.1.1.1", "found exact match with base-oid, but oid too long$"},
        {"R.16.1.3.0.1",
         "found exact match with base-oid, but one or more seq nums is bad: parent seq: 0, row seq: 1$"},
        {"R.16.1.3.1.7",
         "found exact match with base-oid, but one or more seq nums is bad: parent seq: 1, row seq: 7$"},
        {"R.16.1.3.3.1",
         "found exact match with base-oid, but one or more seq nums is bad: parent seq: 3, row seq: 1$"},
        {"R.16.1.3.1.1", "found exact match with base-oid, but var not cached$"},
        {"R.46.1.12.1.1", "could not find index for oid: 1.3.6.1.4.1.913.11000.2000.500.1.2.46.1.12.1.1.$"},
    };
    for (const row& each : rows) {
        const name_type name = oid_of(each.name);
        transcript::take();
        const int32_t found = get_index_of_oid(name.data(), name.size());
        const std::string log = transcript::take();
        EXPECT_EQ(found < 0 ? log : name_of(found),
                  found < 0 ? std::string("log 7 ") + each.answer + "\n" : each.answer)
            << each.name;
    }
}

TEST_F(MibWorld, EdgesOfAGetNext) {
    for (const char* name : {"1.3.6.1.2.1.1.4.0", "1.3.6.1.2.1.1.5.0", "R.1.0", "R.13.1.2.1", "R.13.1.3.1",
                             "R.16.1.3.1.1", "R.16.1.3.1.3", "R.16.1.3.1.6", "R.16.1.3.2.1", "R.16.1.4.2.2",
                             "R.17.1.2.1.1", "R.46.1.10.1.1", "R.46.1.11.1.1"})
        set_cached(index_of(name));
    struct row {
        const char* name;
        const char* next;
    };
    const row rows[] = {
        {"1", "1.3.6.1.2.1.1.4.0"},
        {"1.3.6.1.2.1.1.4.0", "1.3.6.1.2.1.1.5.0"},
        {"1.3.6.1.4.1.913", "R.1.0"},
        {"R", "R.1.0"},
        {"R.1", "R.1.0"},
        {"R.1.0", "R.13.1.2.1"},
        {"R.13", "R.13.1.2.1"},
        {"R.13.1.1", "R.13.1.2.1"},
        {"R.13.1.2", "R.13.1.2.1"},
        {"R.13.1.2.0", "R.13.1.2.1"},
        {"R.13.1.2.1", "R.13.1.3.1"},       // row 2 is not cached
        {"R.13.1.2.2.5", "R.13.1.3.1"},     // what follows the row is ignored
        {"R.13.1.2.2000", "R.16.1.3.1.1"},  // lands in a later column
        {"R.16.1.3", "R.16.1.3.1.1"},
        {"R.16.1.3.0", "R.16.1.3.1.6"},  // begins at the last row of parent 1
        {"R.16.1.3.0.4", "R.16.1.3.1.1"},
        {"R.16.1.3.1", "R.16.1.4.2.2"},  // a parent alone: on with the next column
        {"R.16.1.3.2", "R.16.1.4.2.2"},
        {"R.16.1.3.3", "R.16.1.4.2.2"},
        {"R.16.1.3.1.0", "R.16.1.3.1.1"},
        {"R.16.1.3.1.2", "R.16.1.3.1.3"},
        {"R.16.1.3.1.6", "R.16.1.3.2.1"},
        {"R.16.1.3.1.2.7", "-"},
        {"R.16.1.4.2.2", "R.17.1.2.1.1"},
        {"R.16.1.3.4294967295.4294967295", "-"},
        {"R.13.1.2.4294967295", "-"},
        {"R.13.1.2.18446744073709551615", "-"},
        {"R.46.1.10.1", "R.46.1.11.1.1"},
        {"R.46.1.11.1", "-"},  // no column behind it
        {"R.46.1.11.3", "-"},
        {"R.46.1.11.1.1", "-"},
        {"R.47", "-"},
        {"2", "-"},
    };
    for (const row& each : rows) {
        const name_type name = oid_of(each.name);
        EXPECT_EQ(name_of(find_next_index(name.data(), name.size())), each.next) << each.name;
    }
}

// The request handler's way to the lookups: through the OID that was delivered last.
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

TEST_F(LastOid, KeepsReadsOfTheSelfTestOutOfTheDebugLog) {
    put("R.7.0", "6.5.2.12");
    put("R.6.0", 3);
    get("R.7.0");
    transcript::take();
    get("R.7.0");
    EXPECT_EQ(transcript::take(), "");
    get("R.6.0");
    EXPECT_EQ(transcript::take(), "");  // judged by the variable delivered before
    get("R.6.0");
    EXPECT_EQ(transcript::take(),
              "log 7 reqinfo->mode: MODE_GET: current_requestvb->name_length: 14, current_requestvb->name: "
              "1.3.6.1.4.1.913.11000.2000.500.1.2.6.0.$\n"
              "log 7 matched previously processed oid$\n");
}

TEST(OidText, IsCutAtItsLimits) {
    verbose = true;
    const name_type longest(19, 1);
    name_type destination(20, 7);
    copy_oid(destination.data(), longest.data(), 19);
    EXPECT_EQ(destination[18], 1U);
    EXPECT_EQ(destination[19], 7U);
    const name_type too_long(20, 2);
    copy_oid(destination.data(), too_long.data(), 20);
    EXPECT_EQ(destination[0], 1U);
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
    EXPECT_EQ(get_oid_str(too_long.data(), 20, text, 190), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(transcript::take(),
              "log 4 ran out of room in output_str: 1.3.$\nlog 4 no ptr to output string$\n"
              "log 4 oidlen too long: 20$\n");

    std::string appended = "oid ";
    oid_to_string(appended, name.data(), 3);
    EXPECT_EQ(appended, "oid 1.3.600000.");
}

}  // namespace
