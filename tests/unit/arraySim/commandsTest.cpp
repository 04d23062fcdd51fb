#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "arraySim/control/simulator.h"
#include "arraySim/model/presets.h"

using namespace arraysim;

namespace {

class Commands : public testing::Test {
  protected:
    std::string Good(const std::string& line) {
        const Reply reply = simulator_.Execute(line);
        EXPECT_TRUE(reply.good) << line << ": " << reply.text;
        return reply.text;
    }

    std::string Bad(const std::string& line) {
        const Reply reply = simulator_.Execute(line);
        EXPECT_FALSE(reply.good) << line;
        return reply.text;
    }

    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {"key"}, Spelling::kApi};
};

TEST_F(Commands, MistakesAreNamedAndChangeNothing) {
    struct Case {
        const char *line, *error;
    };
    const Case cases[] = {
        {"", "missing command; `help` prints all"},
        {"explode", "unknown command 'explode'; `help` prints all"},
        {"set", "missing argument; usage: set KIND INDEX ATTR VALUE"},
        {"set TsMoon 1 Name x", "unknown kind 'TsMoon'; `list` prints all"},
        {"set TsDisk x Name y", "'x' is not an API index"},
        {"set TsDisk -5 Name y", "'-5' is not an API index"},
        {"set TsDisk 4294967296 Name y", "'4294967296' is not an API index"},
        {"set TsDisk 5 Colour red", "TsDisk has no attribute 'Colour'"},
        {"set TsDisk 5 Name", "missing argument; usage: set KIND INDEX ATTR VALUE"},
        {"set TsDisk 8 Name x", "TsDisk 8 does not exist"},
        {"set TsDisk 5 Index 6", "Index identifies the object; the fault no-index omits it"},
        {"unset TsDiskConfiguration 5 DiskIndex",
         "DiskIndex identifies the object; the fault no-index omits it"},
        {"set TsObjectCount 1 NumberOfDisks 5", "NumberOfDisks is computed from the model and cannot be set"},
        {"set TsDisk 5 Name \"open", "missing closing quote"},
        {"set TsDisk 5 Name \"\\x\"", "unknown escape sequence \\x"},
        {"set TsDisk 5 Name \xff", "the string is not valid UTF-8"},
        {"unset TsDisk 5 Name y", "unexpected 'y'; usage: unset KIND INDEX ATTR"},
        {"set TsServer 5 TsCreated True", "TsPhysicalServer has no attribute 'TsCreated'"},
        {"fail TsDisk 5 Sideways", "unexpected 'Sideways'; expected Down or Degraded"},
        {"fail TsDisk 5 Up", "unexpected 'Up'; expected Down or Degraded"},
        {"fail TsAlert 2", "TsAlert has no status"},
        {"recover TsObjectCount 1", "TsObjectCount has no status"},
        {"fail TsPhysicalServer 6", "TsPhysicalServer 6 does not exist"},
        {"add TsServer", "TsServer contains several kinds; name one of them"},
        {"add TsDisk Name", "unexpected 'Name'; expected ATTR=VALUE; usage: add KIND [ATTR=VALUE...]"},
        {"add TsDisk Index=5", "TsDisk 5 already exists"},
        {"add TsVirtualServer Index=5", "TsServer 5 already exists"},
        {"add TsDisk Index=x", "'x' is not an API index"},
        {"add Tessera", "Tessera 1 already exists"},
        {"add TsObjectCount NumberOfDisks=1", "NumberOfDisks is computed from the model and cannot be set"},
        {"remove TsDisk 8", "TsDisk 8 does not exist"},
        {"get TsDisk 8", "TsDisk 8 does not exist"},
        {"expect TsDisk 5 Status Down", "TsDisk 5 Status: expected 'Down', found 'Up'"},
        {"dump /nonexistent/folder/x", "cannot write /nonexistent/folder/x: No such file or directory"},
        {"load /nonexistent", "cannot read /nonexistent: No such file or directory"},
        {"load /tmp", "cannot read /tmp: Is a directory"},
        {"load", "missing argument; usage: load FILE"},
        {"event 4 4 4 0", "events are off; start the simulator with --events"},
        {"misc", "missing argument; usage: misc TEXT"},
        {"misc \xff", "the string is not valid UTF-8"},
        {"scsi 1", "missing argument; usage: scsi TYPE STATUS [DISK-ROW]"},
        {"scsi -1 2", "'-1' is not a type; expected 0 to 2147483647"},
        {"scsi 1 x", "'x' is not a status; expected 0 to 2147483647"},
        {"scsi 1 2 2147483648", "'2147483648' is not a row of the disk table; expected 0 to 2147483647"},
        {"list everything", "unexpected 'everything'; usage: list"},
        {"clear nonsense", "unknown fault 'nonsense'"},
        {"fault", "missing fault name; `help` prints all"},
        {"fault nonsense", "unknown fault 'nonsense'; `help` prints all"},
        {"fault delay", "missing argument; usage: fault delay MS [on KIND] [for N]"},
        {"fault delay 0", "'0' is not a number from 1 to 3600000; usage: fault delay MS [on KIND] [for N]"},
        {"fault hang 5", "unexpected '5'; usage: fault hang [on KIND] [for N]"},
        {"fault hang for 0", "'0' is not a number of exchanges from 1"},
        {"fault hang on TsMoon", "unknown kind 'TsMoon'"},
        {"fault hang on TsVirtualServer", "TsVirtualServer is never requested; use its list TsServer"},
        {"fault refuse on TsDisk",
         "this fault acts before a request is read, so it cannot depend on the kind; usage: fault "
         "refuse [on KIND] [for N]"},
        {"fault stop-listening for 2",
         "this fault lasts until it is cleared; usage: fault stop-listening [on KIND] "
         "[for N]"},
        {"fault truncated on Ping",
         "this fault affects commands, not pings; usage: fault truncated [on KIND] [for N]"},
        {"fault ping-false on TsDisk",
         "this fault affects pings, which have no kind; usage: fault ping-false [on "
         "KIND] [for N]"},
        {"fault error Code", "missing argument; usage: fault error CODE TEXT [on KIND] [for N]"},
        {"fault missing Colour", "no kind has an attribute 'Colour'"},
    };
    const std::string model = Good("dump");
    for (const Case& each : cases) {
        EXPECT_EQ(Bad(each.line), each.error) << each.line;
    }
    EXPECT_EQ(Good("dump"), model);
    EXPECT_EQ(Good("faults"), "");
}

TEST_F(Commands, ValuesAreTakenAsWrittenInEitherSpelling) {
    Good("set tsDisk 5 name   two  words ");
    EXPECT_EQ(Good("get TSDISK 5 Name"), "two words\n");
    Good("set TsDisk 5 Name \"two  words\\n\\\"quoted\\\" \\\\ ö\"");
    EXPECT_EQ(Good("get TsDisk 5 Name"), "two  words\n\"quoted\" \\ ö\n");
    Good("set TsDisk 5 Name \"\"");
    EXPECT_EQ(Good("get TsDisk 5 Name"), "\n");
    Good("unset TsDisk 5 Name");
    EXPECT_EQ(Bad("get TsDisk 5 Name"), "TsDisk 5 has no value for Name");
    EXPECT_EQ(Bad("expect TsDisk 5 Name x"), "TsDisk 5 Name: expected 'x', found nothing");
    Good("set TsServer 6 Status Sideways");
    Good("expect TsServerCluster 6 Status Sideways");
}

TEST_F(Commands, ObjectsComeAndGoWithTheirCompanionsAndCounts) {
    Good("expect TsObjectCount 1 NumberOfDisks 12");
    EXPECT_EQ(Good("add TsDisk Status=Down \"Name=new disk\" EnclosureIndex=2"), "17\n");
    Good("expect TsDisk 17 Status Down");
    Good("expect TsDisk 17 Name new disk");
    Good("expect TsDisk 17 InstanceId 64702.17");
    Good("expect TsDiskConfiguration 17 DiskIndex 17");
    Good("expect TsObjectCount 1 NumberOfDisks 13");
    EXPECT_EQ(Good("add TsDiskFolder Index=40"), "40\n");
    Good("expect TsDiskFolderStorageUsage 40 Index 40");
    Good("remove TsDiskFolder 40");
    EXPECT_EQ(Bad("get TsDiskFolderStorageUsage 40"), "TsDiskFolderStorageUsage 40 does not exist");
    Good("remove TsDisk 17");
    Good("expect TsObjectCount 1 NumberOfDisks 12");
    EXPECT_EQ(Bad("get TsDiskConfiguration 17"), "TsDiskConfiguration 17 does not exist");
    Good("expect TsControllerFanSensor 2 Name Controller A Fan 1");
    EXPECT_EQ(Good("add TsControllerFanSensor ControllerIndex=3"), "11\n");
    Good("expect TsControllerFanSensor 11 Name Controller B Fan 4");
}

TEST_F(Commands, AModelGoesToAFileAndComesBack) {
    std::string folder = std::filesystem::temp_directory_path() / "arraySimTest.XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string model = Good("dump");
    Good("dump " + folder + "/model");
    Good("fail TsDisk 5");
    EXPECT_NE(Good("dump"), model);
    Good("load " + folder + "/model");
    EXPECT_EQ(Good("dump"), model);
    std::filesystem::remove_all(folder);
}

TEST_F(Commands, FaultsAreListedAsTheyWouldBeTyped) {
    const char* const faults[] = {"fault hang on TsDisk for 2",
                                  "fault delay 250",
                                  "fault tear",
                                  "fault tear 6 on Ping",
                                  "fault error InvalidValue \"on and for\" on Tessera",
                                  "fault unknown-status \"\"",
                                  "fault missing EnclosureIndex for 1",
                                  "fault huge-text Name 4096"};
    std::string all;
    for (const char* fault : faults) {
        Good(fault);
        all += std::string(fault) + "\n";
    }
    EXPECT_EQ(Good("faults"), all);
    EXPECT_EQ(Good("clear tear"), "2 faults cleared\n");
    EXPECT_EQ(Good("clear delay"), "1 fault cleared\n");
    EXPECT_EQ(Good("clear"), "5 faults cleared\n");
    EXPECT_EQ(Good("faults"), "");
    Good("fault nesting for 3 on tsalert");
    EXPECT_EQ(Good("faults"), "fault nesting 100000 on TsAlert for 3\n");
}

}  // namespace
