#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/unit/apiClient/clientRun.h"
#include "tests/unit/layers/fakeApiMgr.h"
#include "tests/unit/layers/temporaryFolder.h"

using testing::HasSubstr;

namespace {

constexpr char kGood[] = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";

/** Runs the program against an API manager that gives one response. */
class ApiClientResponse : public testing::Test {
  protected:
    ApiClientResponse() { WriteKey("KEY\n", 0600); }

    void WriteKey(const std::string& text, int mode) {
        std::ofstream(key_file_) << text;
        std::filesystem::permissions(key_file_, static_cast<std::filesystem::perms>(mode));
    }

    ClientRun Run(const std::string& words) {
        return ClientRun(words + " --socket " + endpoint_.path() + " --key-file " + key_file_);
    }

    /** content: the children of the response's root element. */
    ClientRun RunAgainst(const std::string& content, const std::string& words) {
        FakeApiMgr manager(endpoint_, 1, [&](const auto&, protoIPCMsg::GPBIPCMsg& response) {
            SetDocument(response, "<lumapi>" + content + "</lumapi>");
            return true;
        });
        ClientRun run = Run(words);
        EXPECT_EQ(manager.requests.size(), 1u) << run.errors;
        request_ = manager.requests.empty() ? protoIPCMsg::GPBIPCMsg() : manager.requests[0];
        return run;
    }

    const TemporaryFolder folder_;
    const std::string key_file_ = folder_.Path("key");
    const WireLinkEndpoint endpoint_ =
        WireLinkEndpoint::CreateLocalEndpoint(folder_.Path("api.sock"), 60, 65536);
    protoIPCMsg::GPBIPCMsg request_;
};

const std::string kTwoDisks =
    std::string(kGood) +
    "<ReturnObjectArray>"
    "<TsDisk><InstanceId>64702.3</InstanceId><Name>01-03</Name><Status>Down</Status><Index>3</Index>"
    "<Spare>True</Spare><Size>2097152</Size><HealthMask>ReadError WriteError</HealthMask>"
    "<DiskFolder>64702.1 TsDiskFolder Folder 1</DiskFolder>"
    "<StatusMessage>pulled, \"maybe\"\nby hand</StatusMessage><Colour>blue</Colour></TsDisk>"
    "<TsDisk><InstanceId>64702.14</InstanceId><Name>\xc3\xa4\xc3\xb6</Name><Status>Up</Status><Index>x</"
    "Index></TsDisk>"
    "</ReturnObjectArray>";

TEST_F(ApiClientResponse, ShowsAListAsATableWithLabelsAndWidths) {
    const ClientRun chosen =
        RunAgainst(kTwoDisks, "TsDisk GetList --columns name,Index,Status,Spare,StatusMessage");
    EXPECT_EQ(chosen.output,
              "Name    Index   Status                     Spare   Status Message\n"
              "01-03   3       Down                       True    pulled, \"maybe\"\\nby hand\n"
              "\xc3\xa4\xc3\xb6      x       Up\n");
    EXPECT_EQ(chosen.status, 0) << chosen.errors;
    // By default: ID, name and status, then the non-empty columns that fit.
    const ClientRun fitting = RunAgainst(kTwoDisks, "TsDisk GetList --width 90");
    EXPECT_EQ(
        fitting.output,
        "Instance ID                     Name    Status                     Disk Folder\n"
        "64702.3                         01-03   Down                       64702.1 TsDiskFolder Folder 1\n"
        "64702.14                        \xc3\xa4\xc3\xb6      Up\n");
    const ClientRun readable =
        RunAgainst(kTwoDisks, "TsDisk GetList --readable --columns Name,Size,DiskFolder,Colour --no-check");
    EXPECT_EQ(readable.output,
              "Name    Size                  Disk Folder           Colour\n"
              "01-03   1 GB                  Folder 1              blue\n"
              "\xc3\xa4\xc3\xb6\n");
}

TEST_F(ApiClientResponse, ShowsAnObjectWithOneAttributePerLine) {
    const ClientRun run =
        RunAgainst(std::string(kGood) +
                       "<ReturnObject><TsUps><Name>ups &lt;1&gt;</Name><Status>Down</Status>"
                       "<InstanceId>64702.1</InstanceId></TsUps></ReturnObject>",
                   "TsUps Get InstanceId=64702.1 --columns Name,Status");
    EXPECT_EQ(run.output, "Name    ups <1>\nStatus  Down\n");
}

TEST_F(ApiClientResponse, WritesCsvForSpreadsheets) {
    const ClientRun run =
        RunAgainst(kTwoDisks, "TsDisk GetList --format csv --columns Name,Status,StatusMessage");
    EXPECT_EQ(
        run.output,
        "Name,Status,StatusMessage\n01-03,Down,\"pulled, \"\"maybe\"\"\nby hand\"\n\xc3\xa4\xc3\xb6,Up,\n");
    EXPECT_EQ(
        RunAgainst(kTwoDisks, "TsDisk GetList --format csv --readable --columns Size,DiskFolder").output,
        "Size,DiskFolder\n1 GB,Folder 1\n,\n");
    EXPECT_THAT(RunAgainst(kTwoDisks, "TsDisk GetList --format csv").output,
                HasSubstr(",InstanceId,ObjectType,Colour\n"));
    EXPECT_EQ(RunAgainst(kTwoDisks, "TsDisk GetList --format xml").output,
              "<lumapi>" + kTwoDisks + "</lumapi>\n");
}

TEST_F(ApiClientResponse, SortsLikeFiltersWithMissingValuesLast) {
    std::string disks;
    for (const char* index : {"10", "9", "", "-1"}) {
        disks += "<TsDisk><Name>D" + std::string(index) + "</Name><Index>" + index + "</Index></TsDisk>";
    }
    const std::string list = std::string(kGood) + "<ReturnObjectArray>" + disks + "</ReturnObjectArray>";
    const std::pair<const char*, const char*> cases[] = {{"index", "Name\nD-1\nD9\nD10\nD\n"},
                                                         {"Name", "Name\nD\nD-1\nD10\nD9\n"}};
    for (const auto& [column, expected] : cases) {
        const std::string words = "TsDisk GetList --format csv --columns Name --sort ";
        EXPECT_EQ(RunAgainst(list, words + column).output, expected);
    }
}

TEST_F(ApiClientResponse, WritesJsonWithTypes) {
    const ClientRun run = RunAgainst(
        kTwoDisks,
        "TsDisk GetList --format json --columns Name,Index,Spare,Size,HealthMask,DiskFolder,StatusMessage");
    EXPECT_EQ(run.output, R"([
  {
    "Name": "01-03",
    "Index": 3,
    "Spare": true,
    "Size": 2097152,
    "HealthMask": [
      "ReadError",
      "WriteError"
    ],
    "DiskFolder": {
      "InstanceId": "64702.1",
      "ObjectType": "TsDiskFolder",
      "InstanceName": "Folder 1"
    },
    "StatusMessage": "pulled, \"maybe\"\nby hand"
  },
  {
    "Name": ")"
                          "\xc3\xa4\xc3\xb6"
                          R"(",
    "Index": "x"
  }
]
)");
}

TEST_F(ApiClientResponse, FormatsEveryKindOfResult) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"", "Done.\n", "", "null\n"},
        {"<ReturnBool>True</ReturnBool>", "True\n", "Value\nTrue\n", "true\n"},
        {"<ReturnInt>-5</ReturnInt>", "-5\n", "Value\n-5\n", "-5\n"},
        {"<ReturnString>a,b</ReturnString>", "a,b\n", "Value\n\"a,b\"\n", "\"a,b\"\n"},
        {"<ReturnEnum>Up</ReturnEnum>", "Up\n", "Value\nUp\n", "\"Up\"\n"},
        {"<ReturnObjectArray />", "No objects.\n", "", "[]\n"},
        {"<ReturnObject />", "No objects.\n", "", "null\n"},
        {"<ReturnMethodObject><TsIscsiConnectionOptions><UsingNAT>True</UsingNAT></TsIscsiConnectionOptions>"
         "</ReturnMethodObject>",
         "Using NAT  True\n", "UsingNAT\nTrue\n", "{\n  \"UsingNAT\": true\n}\n"},
    };
    for (const auto& [result, table, csv, json] : cases) {
        const std::vector<std::pair<const char*, const char*>> forms = {
            {"table", table}, {"csv", csv}, {"json", json}};
        for (const auto& [format, expected] : forms) {
            const ClientRun run = RunAgainst(std::string(kGood) + result,
                                             std::string("TsDisk Delete InstanceId=1 --format ") + format);
            EXPECT_EQ(run.output, expected) << result;
            EXPECT_EQ(run.status, 0) << run.errors;
        }
    }
}

TEST_F(ApiClientResponse, ShowsATablePerClass) {
    const std::string mixed =
        std::string(kGood) +
        "<ReturnObjectArray><TsUps><Name>u</Name></TsUps><TsDisk><Name>d</Name></TsDisk><TsToaster/>"
        "</ReturnObjectArray>";
    const ClientRun run = RunAgainst(mixed, "Tessera ActiveAlertList InstanceId=1 --columns Name");
    EXPECT_EQ(run.output, "Name\nu\n\nName\nd\n");
    EXPECT_THAT(run.errors, HasSubstr("skipped 1 objects of unknown classes"));
    EXPECT_EQ(run.status, 0);
    const ClientRun unknown = RunAgainst(mixed, "Tessera ActiveAlertList InstanceId=1 --columns Nmae");
    EXPECT_THAT(unknown.errors, HasSubstr("there is no column 'Nmae'; do you mean Name?"));
    EXPECT_EQ(unknown.status, 2);
}

TEST_F(ApiClientResponse, ReplacesControlCharacters) {
    const ClientRun run = RunAgainst(std::string(kGood) + "<ReturnString>a\xc2\x9b\x7f&#9;b</ReturnString>",
                                     "TsDisk Delete InstanceId=1");
    EXPECT_EQ(run.output, "a???b\n");
}

TEST_F(ApiClientResponse, ExplainsARejectedCall) {
    const std::pair<const char*, const char*> cases[] = {
        {"<ErrorCode>ObjectNotAvailable</ErrorCode><Error>no such disk</Error><LocalizedError>no such disk"
         "</LocalizedError><ErrorDetail>64702.9</ErrorDetail>",
         "apiClient: TsDisk Get failed: Object Not Available (ObjectNotAvailable, 5)\n  no such disk\n  "
         "64702.9\n"},
        {"<ErrorCode>11</ErrorCode>", "failed: User Privilege Error (UserPrivilegeError, 11)\n"},
        {"<ErrorCode>Nonsense</ErrorCode><Error>?</Error>", "failed: unknown error state\n  ?\n"},
    };
    for (const auto& [status, message] : cases) {
        const ClientRun run = RunAgainst(
            std::string("<ApiMethodReturn><Successful>False</Successful>") + status + "</ApiMethodReturn>",
            "TsDisk Get InstanceId=64702.9 --format json");
        EXPECT_THAT(run.errors, HasSubstr(message));
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.output, "");
    }
}

TEST_F(ApiClientResponse, FailsWithoutAProperResponse) {
    FakeApiMgr manager(endpoint_, 2, [](const auto& request, protoIPCMsg::GPBIPCMsg& response) {
        SetDocument(response, "<html><body>busy</body></html>");
        return request.apireqmsg().cmd().cmddata().find("GetList") == std::string::npos;
    });
    const ClientRun foreign = Run("TsDisk Delete InstanceId=1");
    EXPECT_EQ(foreign.status, 1);
    EXPECT_THAT(foreign.errors, HasSubstr("the response is not a document of the array's API: <html>"));
    const ClientRun closed = Run("TsDisk GetList");
    EXPECT_EQ(closed.status, 1);
    EXPECT_THAT(closed.errors, HasSubstr("cannot reach the API manager: " + endpoint_.path()));
}

}  // namespace
