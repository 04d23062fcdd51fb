#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/apiClient/clientRun.h"

using testing::HasSubstr;

namespace {

struct Case {
    std::string words;
    std::string expected;
};

std::string Document(const char* kind, const char* object, const char* command,
                     const std::string& arguments) {
    return std::string("<ApiMethod><CommandType>") + kind + "</CommandType><Object>" + object +
           "</Object><Command>" + command +
           "</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>" +
           (arguments.empty() ? "" : "<Attributes>" + arguments + "</Attributes>") + "</ApiMethod>\n";
}

TEST(ApiClientRequest, BuildsTheDocument) {
    const Case cases[] = {
        {"TsDisk GetList", Document("Method", "TsDisk", "GetList", "")},
        {"tsdisk getlist --lite", Document("Method", "TsDisk", "GetList", "<LiteObj>1</LiteObj>")},
        {"TsController FanSensorList InstanceId=64702.1",
         Document("Association", "TsController", "FanSensorList", "<InstanceId>64702.1</InstanceId>")},
        {"Tessera Modify InstanceId=64702 'Location=a <b> & \"c\"\nd=e' OperationMode=2",
         Document(
             "Method", "Tessera", "Modify",
             "<InstanceId>64702</InstanceId><Location>a &lt;b&gt; &amp; &quot;c&quot;&#x0a;d=e</Location>"
             "<OperationMode>Maintenance</OperationMode>")},
        {"Tessera Modify InstanceId=64702 Location= IPv6ManagementIP=fe80::1/64",
         Document("Method", "Tessera", "Modify",
                  "<IPv6ManagementIP>fe80::1</IPv6ManagementIP><InstanceId>64702</InstanceId><Location></"
                  "Location>")},
        {"TsDisk ReleaseDisk 'ReleasedDisks=64702.3 TsDisk 01:03' 'ReleasedDisks=64702.4 TsDisk 01-04' "
         "'Tessera=64702 Tessera my array'",
         Document("Method", "TsDisk", "ReleaseDisk",
                  "<ReleasedDisks>64702.3 TsDisk 01-co-03:64702.4 TsDisk 01-04</ReleasedDisks>"
                  "<Tessera>64702 Tessera my array</Tessera>")},
        {"Tessera CheckVolumeSize InstanceId=64702 'Size=1 gb'",
         Document("Method", "Tessera", "CheckVolumeSize",
                  "<InstanceId>64702</InstanceId><Size>2097152</Size>")},
        {"TsDisk GetHistoricalIoUsage InstanceId=1 HistoricalFilter.UseCurrent=yes "
         "HistoricalFilter.FilterTime=<now>",
         Document("Method", "TsDisk", "GetHistoricalIoUsage",
                  "<HistoricalFilter><HistoricalFilter><FilterTime>&lt;now&gt;</FilterTime>"
                  "<UseCurrent>True</UseCurrent></HistoricalFilter></HistoricalFilter><InstanceId>1</"
                  "InstanceId>")},
        {"Tessera AddIScsiTesseraConnections InstanceId=1 'Tessera=2 Tessera b' Options.UsingNAT=1 "
         "NatInfo.2.IpAddress=10.0.0.2 NatInfo.1.IpAddress=10.0.0.1",
         Document(
             "Method", "Tessera", "AddIScsiTesseraConnections",
             "<InstanceId>1</InstanceId><NatInfo>"
             "<TsIscsiConnectionNatInfo><IpAddress>10.0.0.1</IpAddress></TsIscsiConnectionNatInfo>"
             "<TsIscsiConnectionNatInfo><IpAddress>10.0.0.2</IpAddress></TsIscsiConnectionNatInfo></NatInfo>"
             "<Options><TsIscsiConnectionOptions><UsingNAT>True</UsingNAT></TsIscsiConnectionOptions></"
             "Options>"
             "<Tessera>2 Tessera b</Tessera>")},
        // Not in the catalogue.
        {"TsToaster Pop Slice=<2> --no-check",
         Document("Method", "TsToaster", "Pop", "<Slice>&lt;2&gt;</Slice>")},
    };
    for (const Case& each : cases) {
        const ClientRun run(each.words + " --print");
        EXPECT_EQ(run.output, each.expected);
        EXPECT_EQ(run.status, 0) << run.errors;
    }
}

TEST(ApiClientRequest, BuildsTheFilterFromConditions) {
    // In this time zone, half past two does not exist on that day; the array's is another.
    setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
    tzset();
    const Case cases[] = {
        {"TsDisk GetList --filter 'Status = Down'", "and Status = Down-"},
        {"TsDisk GetList --filter Index>=2 --filter 'Index lt 9'", "and Index &gt;= 2-Index &lt; 9-"},
        {"TsDisk GetList --filter 'Name iqs 01-' --filter 'Spare = yes' --any",
         "or Name iqs 01&amp;hy&amp;-Spare = True-"},
        {"TsDisk GetList --filter 'Size > 2 TB'", "and Size &gt; 4294967296-"},
        {"TsDisk GetList 'Filter=and Index = 5-'", "and Index = 5-"},
        {"TsDisk GetList --filter 'EstimatedWearDate > 03/13/2016 2:30:00 am'",
         "and EstimatedWearDate &gt; 03/13/2016 02:30:00 AM-"},
        {"TsDisk GetList --filter 'EstimatedWearDate < 02/29/2016-00:00:59'",
         "and EstimatedWearDate &lt; 02/29/2016 12:00:59 AM-"},
        {"TsControllerVoltageSensor GetList --filter 'CurrentVoltage > -1.5e1'",
         "and CurrentVoltage &gt; &amp;hy&amp;1.5e1-"},
        {"TsControllerTemperatureSensor GetList --filter 'CurrentTemperature < -5 c'",
         "and CurrentTemperature &lt; &amp;hy&amp;5 c-"},
        {"TsControllerTemperatureSensor GetList --filter 'CurrentTemperature = 45 C/113 F'",
         "and CurrentTemperature = 45 C/113 F-"},
        {"TsController GetList --filter 'Version >= 07.03.20.0027'", "and Version &gt;= 07.03.20.0027-"},
    };
    for (const Case& each : cases) {
        const ClientRun run(each.words + " --print");
        EXPECT_THAT(run.output, HasSubstr("<Filter>" + each.expected + "</Filter>")) << run.errors;
    }
}

/** There is no socket and no key, so a mistake that is found too late would give another message. */
TEST(ApiClientRequest, RejectsMistakesWithAMessage) {
    const Case cases[] = {
        {"", "missing object; see --help"},
        {"TsDisk", "missing command or association; see apiClient TsDisk --list"},
        {"TsDisk GetLst", "there is no command or association of TsDisk 'GetLst'; do you mean GetList?"},
        {"TsDisk Get", "TsDisk Get needs:\n  InstanceId: an instance ID"},
        {"TsDisk Get InstanceId", "invalid argument 'InstanceId'; expected NAME=VALUE"},
        {"TsDisk Get Name=x InstanceId=1",
         "there is no argument of TsDisk Get 'Name'; it accepts InstanceId"},
        {"TsDisk Get InstanceId=1 InstanceId=2", "InstanceId is given 2 times; it holds only one value"},
        {"Tessera Modify InstanceId=1 Name=<x>",
         "invalid value '<x>' (3 bytes) for Name; expected a string of 1 to 64 bytes without < > &"},
        {"Tessera Modify InstanceId=1 Location=a\tb", "Location contains a control character"},
        {"Tessera Modify InstanceId=1 OperationMode=Fast",
         "invalid value 'Fast' for OperationMode; expected one of Normal"},
        {"Tessera Modify InstanceId=1 ManagementIp=10.0.0", "; expected an IPv4 address"},
        {"Tessera CheckVolumeSize InstanceId=1 'Size=3 pints'",
         "invalid value '3 pints' for Size; expected a number of"},
        {"TsController Modify InstanceId=1 IPv6Eth0IPPrefix=129",
         "invalid value '129' for IPv6Eth0IPPrefix (IPv6 Address Prefix); expected an integer, 0 to 128"},
        {"TsController Modify InstanceId=1 IndicatorOn=maybe",
         "invalid value 'maybe' for IndicatorOn; expected True or False"},
        {"TsDisk GetHistoricalIoUsage InstanceId=1 HistoricalFilter=x",
         "HistoricalFilter is a HistoricalFilter: give HistoricalFilter.FIELD=VALUE for each field"},
        {"TsDisk Get InstanceId.x=1", "InstanceId has no field 'x'"},
        {"Tessera AddIScsiTesseraConnections NatInfo.IpAddress=10.0.0.1",
         "give NatInfo.1.FIELD=VALUE for each field of the first, .2 for the second, and so on"},
        {"TsDisk GetList --filter Status",
         "invalid filter 'Status'; expected ATTRIBUTE OPERATOR VALUE with one of = > >= < <="},
        {"TsDisk GetList --filter 'Status > Up'",
         "operator '>' never matches attribute Status; supported are ="},
        {"TsDisk GetList --filter 'Status = Upp'",
         "invalid value 'Upp' for Status; expected one of Up, Down, Degraded"},
        {"TsController GetList --filter 'Version > 6..3'", "invalid value '6..3' for Version"},
        {"TsDisk GetList --filter 'HealthMask = x'",
         "filters do not support attribute HealthMask (ENUMMASK)"},
        {"TsDisk Get InstanceId=1 --filter 'Status = Up'", "TsDisk Get does not accept a filter"},
        {"TsDisk GetList --filter 'Status = Up' 'Filter=and Index = 1-'", "either --filter or Filter="},
        {"TsDisk GetList --columns Nme", "there is no column 'Nme'; do you mean Name?"},
        {"TsController Modify InstanceId=1 --watch 1", "--watch repeats only calls that read the array"},
        {"'Ts Disk' Get --no-check", "object and command must consist of letters and digits"},
    };
    for (const Case& each : cases) {
        const ClientRun run(each.words + " --socket /nonexistent");
        EXPECT_EQ(run.status, 2) << each.expected;
        EXPECT_THAT(run.errors, HasSubstr(each.expected));
        EXPECT_EQ(run.output, "");
    }
}

TEST(ApiClientRequest, ListsTheCatalogue) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"--list", {"TsDisk                         A disk as the array uses it\n"}},
        {"TsUps --list",
         {"  GetList  ", "[Filter]", "  Tessera\n", "  Status ", "one of Up, Down, Degraded"}},
        {"TsDisk GetHistoricalIoUsage --list",
         {"reads the array; privilege Reporter", "\nRequired arguments:\n  InstanceId ",
          "\nOptional arguments:\n  HistoricalFilter ", "\nFields of HistoricalFilter:\n  EndTime "}},
        {"--enumeration DiskTier", {"1  "}},
        // Converted from ISO-8859-1 to UTF-8.
        {"--enumeration CareBridgeCountry", {"C\xc3\xb4te"}},
    };
    for (const auto& [words, lines] : cases) {
        const ClientRun run(words);
        EXPECT_EQ(run.status, 0) << run.errors;
        for (const char* line : lines) {
            EXPECT_THAT(run.output, HasSubstr(line));
        }
    }
    EXPECT_THAT(ClientRun("--help").output, HasSubstr("Exit status:"));
}

}  // namespace
