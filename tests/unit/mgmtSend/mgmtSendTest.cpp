#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tests/unit/layers/temporaryFolder.h"
#include "tests/unit/words.h"
#include "tools/mgmtSend/program.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/** Runs the program against a fake daemon. */
class MgmtSend : public testing::Test {
  protected:
    int Run(const std::string& line, const std::string& input = {}) {
        Arguments arguments("mgmtSend --socket " + socket_ + " " + line);
        std::istringstream in(input);
        out_.str({});
        err_.str({});
        return mgmtsend::RunProgram(arguments.count(), arguments.values(), in, out_, err_);
    }

    void Listen() { daemon_.emplace(endpoint_); }

    /** Returns the messages of one connection, which the program must have closed already. */
    std::vector<protoIPCMsg::GPBIPCMsg> Take() {
        WireLinkServerConnection connection(endpoint_, daemon_->Accept(nullptr, nullptr, 0));
        std::vector<protoIPCMsg::GPBIPCMsg> messages;
        while (connection.RecvGPBMsg(messages.emplace_back()) != 0) {
        }
        messages.pop_back();
        return messages;
    }

    std::vector<std::string> TakeTexts() {
        std::vector<std::string> texts;
        for (const protoIPCMsg::GPBIPCMsg& message : Take()) {
            EXPECT_EQ(message.mgmtmsg().cmdspecific(), 1u);
            texts.push_back(message.mgmtmsg().addlarg());
        }
        return texts;
    }

    const TemporaryFolder folder_;
    const std::string socket_ = folder_.Path("daemon");
    const WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(socket_, 60, 65536);
    std::optional<WireLinkServer> daemon_;
    std::ostringstream out_;
    std::ostringstream err_;
};

TEST_F(MgmtSend, SendsOneMessagePerCommand) {
    // Bytes of the envelope: its kind; the message with service, kind and command type 0; the command; the
    // string.
    const std::pair<std::string, std::string> cases[] = {
        {"raw '4 4 4 0 0 0 0 0 x'",
         std::string("\x08\x06\x32\x1b\x08\x00\x10\x00\x18\x00\x20\x01\x2a\x11", 14) + "4 4 4 0 0 0 0 0 x"},
        {"lite-objects", std::string("\x08\x06\x32\x08\x08\x00\x10\x00\x18\x00\x20\x02", 12)},
        {"show-outstanding --file /dev/null",
         std::string("\x08\x06\x32\x08\x08\x00\x10\x00\x18\x00\x20\x03", 12)},
        {"verbose on", std::string("\x08\x06\x32\x08\x08\x00\x10\x00\x18\x00\x20\x04", 12)},
        {"verbose off", std::string("\x08\x06\x32\x08\x08\x00\x10\x00\x18\x00\x20\x05", 12)},
    };
    Listen();
    for (const auto& [words, body] : cases) {
        ASSERT_EQ(Run(words), 0) << err_.str();
        const std::vector<protoIPCMsg::GPBIPCMsg> messages = Take();
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_EQ(messages[0].SerializeAsString(), body) << words;
        EXPECT_THAT(out_.str() + err_.str(), IsEmpty());
    }
}

TEST_F(MgmtSend, ShowsTheStatusFile) {
    const std::string path = folder_.Path("status");
    std::ofstream(path)
        << "# TYPE snmpsubagent_up gauge\nsnmpsubagent_up 1\n"
           "snmpsubagent_unhealthy_object_since_seconds{object=\"a\\\"b\\\\, {\x01}\",status=\"Down\","
           "notification=\"tsDiskStatusChange\"} 86400.5\n"
           "snmpsubagent_table_refresh_duration_seconds{table=\"tsDisk\"} 0.25\n"
           "snmpsubagent_cut{a=\"\nsnmpsubagent_";
    ASSERT_EQ(Run("status --json --file " + path), 0) << err_.str();
    std::string json = out_.str();
    std::erase_if(json, [](char each) { return each == ' ' || each == '\n'; });
    EXPECT_EQ(json,
              R"({"up":1,"unhealthy_object_since_seconds":[{"object":"a\"b\\,{\u0001}","status":"Down",)"
              R"("notification":"tsDiskStatusChange","value":86400.5}],)"
              R"("table_refresh_duration_seconds":[{"table":"tsDisk","value":0.25}],"cut":0})");
    ASSERT_EQ(Run("status --file " + path), 0);
    EXPECT_THAT(out_.str(), HasSubstr(": not running\n"));  // the file is old
    EXPECT_THAT(out_.str(), HasSubstr("tsDisk                      never          -         0\n"));
    EXPECT_THAT(out_.str(), HasSubstr("  Down      a\"b\\, {?}  (tsDiskStatusChange)\n"));
    EXPECT_EQ(Run("status --file " + folder_.Path("none")), 1);
}

TEST_F(MgmtSend, BuildsTrapCommands) {
    const std::string longest(477, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"202 17", "13 1 37 202 17 0 0 0 @@@"},
        {"disk-status 17 --alert 'two  words'", "13 1 37 202 17 0 0 0 @@@two  words"},
        {"disk-status 17 --cleared", "13 1 37 202 17 0 0 5 @@@"},
        {"disk-status 17 --event 1,22,333", "1 22 333 202 17 0 0 0 @@@"},
        {"202 17 --alert '64702.17 x@@@y'", "13 1 37 202 17 0 0 0 64702.17 x@@@y"},
        {"ctlr-comp-status 1 fan 0", "29 1 98 204 1 1 0 0 @@@"},
        {"encl-comp-status 5 alarm 1 5", "12 7 37 206 5 6 1 5 @@@"},
        {"scsi-device-status 0 3 4", "0 0 0 213 0 3 4 0 @@@"},
        {"test", "0 0 0 200 0 0 0 0 @@@"},
        {"202 1 --alert " + longest, "13 1 37 202 1 0 0 0 @@@" + longest},  // 500 bytes
        {"misc --alert 'an alert'", "0 0 0 201 0 0 0 0 an alert"},
        {"100 --alert 'a plain one'", "0 0 0 100 0 0 0 0  @@@a plain one"},
    };
    Listen();
    for (const auto& [words, text] : cases) {
        ASSERT_EQ(Run("trap " + words), 0) << err_.str();
        EXPECT_THAT(TakeTexts(), ElementsAre(text));
        EXPECT_EQ(Run("trap " + words + " --print"), 0);
        EXPECT_EQ(out_.str(), text + "\n");
    }
}

/** No daemon is running, so an error that is detected too late would give status 1. */
TEST_F(MgmtSend, RejectsErrorsBeforeSending) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "missing command; see --help"},
        {"trap", "KIND is required"},
        {"trap disk", "unknown notification 'disk'; see --list"},
        {"trap disk-status", "disk-status needs argument A: API index of the disk"},
        {"trap 211 3", "ports-balanced needs argument A: 1 or 2"},
        {"trap 213 0 0 1", "scsi-device-status needs argument B: type of the device, above 0"},
        {"trap 202 x", "invalid argument A 'x'; expected a number from 0 to 2147483647"},
        {"trap 202 1 2 3 4 5", "too many arguments; a notification has only A, B, C and D"},
        {"trap 204 1", "ctlr-comp-status needs argument B: keyword or number of the component"},
        {"trap ctlr-comp-status 1 io-module 1",
         "unknown component 'io-module' of ctlr-comp-status; expected fan (1), power (2), temperature (3), "
         "voltage (4)"},
        {"trap 206 1 4 1",
         "unknown component '4' of encl-comp-status; expected fan (1), power (2), temperature (3), io-module "
         "(5), alarm (6)"},
        {"trap 204 1 fan", "ctlr-comp-status needs argument C: API index of the fan minus 1"},
        {"trap 202 1 0 0 4 --cleared", "argument D 4 contradicts --cleared"},
        {"trap 202 1 --event 13,1", "invalid event ID '13,1'; expected three numbers, for example 13,1,37"},
        {"trap 202 1 --alert two\nlines", "the trap command contains a line feed; it must be a single line"},
        {"trap 202 1 --alert " + std::string(478, 'x'), "the trap command has 501 bytes; the maximum is 500"},
        {"raw ''", "empty trap command"},
        {"verbose loud", "on|off: loud not in {on,off}"},
    };
    for (const auto& [words, error] : cases) {
        EXPECT_EQ(Run(words), 2) << error;
        EXPECT_THAT(err_.str(), HasSubstr(error));
    }
}

TEST_F(MgmtSend, SendsLinesOfInputOnOneConnection) {
    Listen();
    ASSERT_EQ(
        Run("raw -", "1 1 1 201 0 0 0 0 one\n\n2 2 2 201 0 0 0 0 two \n" + std::string(500, 'x') + "\nlast"),
        0);
    EXPECT_THAT(TakeTexts(), ElementsAre("1 1 1 201 0 0 0 0 one", "2 2 2 201 0 0 0 0 two ",
                                         std::string(500, 'x'), "last"));
    ASSERT_EQ(Run("raw -", "first\n\n" + std::string(501, 'x') + "\nnever"), 2);
    EXPECT_THAT(err_.str(),
                HasSubstr("standard input:3: longer than 500 bytes; the lines before it were sent"));
    EXPECT_THAT(TakeTexts(), ElementsAre("first"));
}

TEST_F(MgmtSend, HasAStatusForAnUnreachableDaemon) {
    for (const char* words : {"trap 202 1", "raw -", "verbose on"}) {
        EXPECT_EQ(Run(words, "1 1 1 201 0 0 0 0 one\n"), 1);
        EXPECT_THAT(err_.str(), HasSubstr("mgmtSend: cannot reach the daemon: " + socket_));
    }
}

TEST_F(MgmtSend, ListsWithoutADaemon) {
    EXPECT_EQ(Run("--list"), 0);
    EXPECT_THAT(out_.str(),
                HasSubstr("\n202    disk-status          tsDiskStatusChange           The status of a disk "
                          "has changed.\n       A                    API index of the disk\n"));
    EXPECT_THAT(out_.str(), HasSubstr("       B 5 io-module        I/O module; C: row of the module\n"));
}

}  // namespace
