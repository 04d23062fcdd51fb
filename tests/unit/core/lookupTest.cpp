#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidText.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/snmpPdu.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

using name_type = std::vector<oid>;

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
