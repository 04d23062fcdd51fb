#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"

#include <sys/socket.h>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"
#include "tests/unit/core/fakes/fakeTrapSession.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using fake_traps::failure;
using std::string;

const char* const kTime2 = "  1.3.6.1.2.1.1.3.0 time 123456\n";
const char* const kTrapOid = "  1.3.6.1.6.3.1.1.4.1.0 oid ";
const char* const kHead1 =
    "notify 1 udp:192.0.2.9:1162 secret trap enterprise=1.3.6.1.4.1.913.11000.2000.500.1.251 "
    "agent=192.0.2.1 ";
const char* const kHead2 = "notify 2c udp:192.0.2.9:1162 secret trap2\n";
const char* const kTrio =
    "  R.29.1.8.1 \"192.0.2.1\"\n  R.29.1.11.1 \"2001:db8::1\"\n  R.29.1.12.1 gauge 64\n";

class Send : public TrapWorld {
  protected:
    static string send(int32_t number, const string& msg = "", int version = 0,
                       int type = kTrapTypeEnterprise) {
        const int result = Send_a_Trap(number, msg, version, type);
        return std::to_string(result) + "\n" + transcript::take();
    }
};

TEST_F(Send, SpeaksEachVersion) {
    const string text = "1.3.6.1.4.1.913.11000.2000.500.1.251";
    const string list =
        "  R.10.0 gauge 64702\n  R.9.0 \"\"\n  R.11.0 \"SNMP server subsystem is accessible\"\n" +
        string(kTrio);
    const string identity = kTrapOid + text + ".0.200\n";
    const string plain = kTrapOid + text + ".0.8\n";
    const string words = "  " + text + " \"a text\"\n";
    const string cold = kTrapOid + string("1.3.6.1.6.3.1.1.5.1\n") +
                        "  1.3.6.1.6.3.1.1.4.3.0 oid 1.3.6.1.4.1.913.11000.2000.500.1.250.255\n";
    const string head1 = kHead1;
    const string head2 = string(kHead2) + kTime2;
    const string inform = "notify 2c udp:192.0.2.9:1162 secret inform\n" + string(kTime2);
    const std::tuple<int32_t, const char*, int, string> rows[] = {
        {200, "", 1, head1 + "generic=6 specific=200 time=123456\n" + list},
        {200, "", 2, head2 + identity + list},
        {200, "", 3, inform + identity + list},
        {8, "a text", 1, head1 + "generic=6 specific=8 time=123456\n" + plain + words},
        {8, "a text", 2, head2 + plain + words},
        {8, "", 2, head2 + plain},
        {0, "", 1, head1 + "generic=0 specific=0 time=123456\n" + cold},
        {0, "", 2, head2 + cold},
    };
    for (const auto& [number, msg, version, shown] : rows)
        EXPECT_EQ(send(number, msg, version, number == 0 ? kTrapTypeColdStart : kTrapTypeEnterprise),
                  "0\n" + shown + "close session\n");
    conf_trapVer = 1;  // a change applies from the next notification on
    EXPECT_EQ(send(200).substr(0, 11), "0\nnotify 1 ");
    for (const int version : {4, -1}) {
        conf_trapVer = version;
        EXPECT_EQ(send(200), "1\nlog 4 Invalid Trap Type$\n");
    }
}

TEST_F(Send, GoesThroughTheMasterAgentToo) {
    fake_traps::has_master_agent = true;
    const string same = string(kTime2) + kTrapOid + "1.3.6.1.4.1.913.11000.2000.500.1.251.0.8\n";
    const string through_master = "notify master agent\n" + same;
    EXPECT_EQ(send(8, "", 2), "0\n" + through_master + kHead2 + same + "close session\n");
    conf_trapDest = "";
    EXPECT_EQ(send(8, "", 1),
              "1\n" + through_master +
                  "log 4 Unable to send trap because there is no trap destination defined.$\n");
    conf_trapDest = kNoTrapDest;
    EXPECT_EQ(send(8, "", 1), "0\n" + through_master);
    fake_traps::has_master_agent = false;
    EXPECT_EQ(send(8, "", 1), "1\n");
    conf_trapsEnabled = false;
    fake_traps::has_master_agent = true;
    EXPECT_EQ(send(8), "1\nlog 4 Traps are disabled$\n");
}

TEST_F(Send, NeedsTheAddressOfTheArray) {
    put("R.29.1.8.1", "0.0.0.0");
    EXPECT_NE(send(8, "", 1).find("agent=0.0.0.0 "), string::npos);  // the field is too short for IPv6
    put("R.29.1.8.1", "192.0.2.300");
    EXPECT_EQ(send(8, "", 1), "1\nlog 4 couldn't parse ip addr string: 192.0.2.300$\nclose session\n");
    EXPECT_EQ(send(8, "", 2)[0], '0');
    put("R.29.1.8.1", "");
    put("R.29.1.12.1", 0);
    EXPECT_EQ(send(8, "", 2), "1\nlog 4 Unable to get a non-zero IPAddr from the TS API$\n");
}

TEST_F(Send, FindsThePeer) {
    using fake_traps::names;
    using fake_traps::numeric;
    numeric = {{"192.0.2.7", AF_INET},
               {"2001:db8::7", AF_INET6},
               {"::ffff:192.0.2.7", AF_INET6},
               {"3221225991", AF_INET},
               {"local", AF_UNIX}};
    names = {{"receiver", AF_INET6}, {"receiver.example", AF_INET}, {"nets", AF_UNIX}, {"a:b", AF_INET}};
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"192.0.2.7", "udp:192.0.2.7:1162", ""},
        {"2001:db8::7", "udp6:[2001:db8::7]:1162", ""},
        {"receiver", "receiver:1162", ""},
        {"local", "", "Invalid format for trap dest addr: local"},
        {"nobody", "", "Invalid trap dest addr: nobody"},
        {"receiver.example", "", "Invalid IPv4 trap dest addr: receiver.example"},
        {"a:b", "", "Invalid IPv6 trap dest addr: a:b"},
        {"", "", "Unable to send trap because there is no trap destination defined."},
    };
    for (const auto& [destination, peer, log] : rows) {
        conf_trapDest = destination;
        const string course = send(8);
        if (*log != '\0') {
            EXPECT_EQ(course, "1\nlog 4 " + string(log) + "$\n");
        } else {
            EXPECT_EQ(course.find("0\nnotify 2c " + string(peer) + " secret trap2"), 0) << course;
        }
    }
}

TEST_F(Send, TellsWhatFails) {
    const auto with = [](failure what, int version) {
        fake_traps::failing = what;
        return send(8, "", version);
    };
    EXPECT_EQ(with(failure::transport, 2), "1\nlog 4 Unable to open transport client$\n");
    EXPECT_EQ(with(failure::session, 2), "1\nlog 4 Unable to open SNMP session$\n");
    const string error = "ss->s_snmp_errno=-7, err= no way$\n";
    EXPECT_EQ(with(failure::send, 2),
              "1\nlog 4 err on snmp_send() for Trap-Notify: " + error + "close session\n");
    EXPECT_EQ(with(failure::send, 3), "1\nlog 4 err on snmp_send() for Inform: " + error + "close session\n");
    fake_traps::failing = failure::none;
    varbindings.erase(202);
    EXPECT_EQ(send(202), "1\nlog 4 Fail on finding trapaVal in varbindings map: 202$\nclose session\n");
}

}  // namespace
