#include "apiMgmt/apiStub/client/client.h"

#include <gmock/gmock.h>

#include <functional>
#include <future>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTessera.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsControllerTemperatureSensor.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsControllerVoltageSensor.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsEnclosure.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsServer.h"
#include "tests/unit/layers/fakeApiMgr.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

using namespace tessera;
using testing::HasSubstr;

constexpr char kGood[] = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";

/** The kind of the error that a function throws, its attribute and its message; "nothing" if it throws none.
 */
std::string OutcomeOf(const std::function<void()>& function) {
    try {
        function();
        return "nothing";
    } catch (const InvalidArgument& error) {
        return "invalid " + error.GetAttribute() + ": " + error.what();
    } catch (const Refused& error) {
        return "refused " + std::to_string(error.GetState()) + " " + error.GetCode() + ": " + error.what();
    } catch (const ClientError& error) {
        const char* kind = dynamic_cast<const Unreachable*>(&error)       ? "unreachable: "
                           : dynamic_cast<const TimedOut*>(&error)        ? "timed out: "
                           : dynamic_cast<const Cancelled*>(&error)       ? "cancelled: "
                           : dynamic_cast<const MalformedAnswer*>(&error) ? "malformed: "
                                                                          : "";
        return std::string(kind) + error.what();
    }
}

class ClientTest : public testing::Test {
  protected:
    ClientOptions Options() const { return {.socketPath = endpoint.path(), .sessionKey = "K&Y"}; }

    /** Executes calls of a client against an API manager that gives one response, and keeps the request. */
    template <class Ask>
    auto AskFor(const std::string& document, Ask ask) {
        FakeApiMgr manager(endpoint, 1, [&](const auto& received, protoIPCMsg::GPBIPCMsg& response) {
            request = received.apireqmsg().cmd().cmddata();
            SetDocument(response, document);
            return true;
        });
        return ask(Client(Options()));
    }

    template <class Ask>
    auto AskGood(const std::string& result, Ask ask) {
        return AskFor("<lumapi>" + (kGood + result) + "</lumapi>", ask);
    }

    const TemporaryFolder folder;
    const WireLinkEndpoint endpoint =
        WireLinkEndpoint::CreateLocalEndpoint(folder.Path("api.sock"), 60, 65536);
    std::string request;
};

TEST_F(ClientTest, ObjectsBelongToTheCaller) {
    const std::string disk =
        "<TsDisk><InstanceId>64702.17</InstanceId><Name>01-17</Name><Size>2097152</Size></TsDisk>";
    const std::vector<APITsDisk> disks =
        AskGood("<ReturnObjectArray>" + disk + "<TsDisk/></ReturnObjectArray>", [](const Client& client) {
            return client.List<APITsDisk>(Where(APITsDisk::NameAttribute()).Contains("01-") &&
                                          Where(APITsDisk::SizeAttribute()) < "1 TB");
        });
    ASSERT_EQ(disks.size(), 2u);
    EXPECT_EQ(disks[0].GetName() + " " + disks[0].GetSize().ToDisplayText(), "01-17 1 GB");
    EXPECT_THAT(request, HasSubstr("<sessionkey>K&amp;Y</sessionkey><locale>en_US</locale>"));
    EXPECT_THAT(request, HasSubstr("<Attributes><Filter>and Name iqs 01&amp;hy&amp;-Size &lt; "
                                   "2147483648-</Filter></Attributes>"));

    const auto list_all = [](const Client& client) { return client.List<APITsDisk>(); };
    EXPECT_EQ(AskGood("<ReturnObjectArray/>", list_all).size(), 0u);
    EXPECT_THAT(request, testing::Not(HasSubstr("<Attributes>")));

    const auto get = [](const Client& client) { return client.Get<APITsDisk>("<64702.17>"); };
    EXPECT_EQ(AskGood("<ReturnObject>" + disk + "</ReturnObject>", get).GetName(), "01-17");
    EXPECT_THAT(request, HasSubstr("<InstanceId>&lt;64702.17&gt;</InstanceId>"));

    const auto follow = [](const Client& client) {
        return client.Follow<APITsEnclosure>(APITsDisk::APITsDiskEnclosureAssociation("64702.17"));
    };
    const auto enclosures =
        AskGood("<ReturnObject><TsEnclosure><Name>E</Name></TsEnclosure></ReturnObject>", follow);
    EXPECT_EQ(enclosures.at(0).GetName(), "E");
    EXPECT_THAT(request, HasSubstr("<CommandType>Association</CommandType>"));
}

TEST_F(ClientTest, ReturnsEachKindOfResult) {
    APITsDisk::APITsDiskRestoreMethod call;
    call.SetInstanceId("1");
    const auto as = [&]<class Value>(const std::string& result, Value /*kind*/) {
        return AskGood(result, [&](const Client& client) { return client.Call<Value>(call); });
    };
    EXPECT_TRUE(as("<ReturnBool>True</ReturnBool>", bool()));
    EXPECT_EQ(as("<ReturnInt>-5</ReturnInt>", int32_t()), -5);
    EXPECT_EQ(as("<ReturnString>a &lt; b</ReturnString>", std::string()), "a < b");
    EXPECT_EQ(as("<ReturnEnum>Up</ReturnEnum>", std::string()), "Up");
    EXPECT_EQ(
        as("<ReturnObjectArray><TsUps/><TsDisk/></ReturnObjectArray>", AnyObjects())[1]->GetObjectName(),
        "TsDisk");
    EXPECT_TRUE(as("<ReturnMethodObject><TsIscsiConnectionOptions><UsingNAT>True</UsingNAT>"
                   "</TsIscsiConnectionOptions></ReturnMethodObject>",
                   APITsIscsiConnectionOptions())
                    .GetUsingNAT());
    AskGood("", [&](const Client& client) { client.Call(call); });
}

TEST_F(ClientTest, ThrowsWhatWentWrong) {
    const std::pair<std::string, std::string> cases[] = {
        {"<lumapi><ApiMethodReturn><Successful>False</Successful><ErrorCode>5</ErrorCode><Error>no "
         "disk</Error>"
         "<LocalizedError>no disk</LocalizedError><ErrorDetail>17</ErrorDetail></ApiMethodReturn></lumapi>",
         "refused 5 ObjectNotAvailable: TsDisk GetList failed: ObjectNotAvailable (5): no disk; 17"},
        {"<lumapi><ApiMethodReturn><ErrorCode>New</ErrorCode></ApiMethodReturn></lumapi>",
         "refused 999 : TsDisk GetList failed: unknown error (999)"},
        {"<html>busy</html>",
         "malformed: the response is not a document of the array's API: <html>busy</html>"},
        {"<lumapi>", "malformed: TsDisk GetList: Invalid content in response message; Failed to parse XML"},
        {std::string("<lumapi>") + kGood + "</lumapi>",
         "malformed: TsDisk GetList: the response does not contain objects"},
        {std::string("<lumapi>") + kGood + "<ReturnObjectArray><TsUps/></ReturnObjectArray></lumapi>",
         "malformed: TsDisk GetList: the response does not contain only TsDisk objects"},
        {std::string("<lumapi>") + kGood + "<ReturnObjectArray><TsDisk/><New/></ReturnObjectArray></lumapi>",
         "malformed: TsDisk GetList: the response contains objects of classes that this program does not "
         "have: 1"},
    };
    for (const auto& [document, expected] : cases) {
        const std::string outcome =
            OutcomeOf([&] { AskFor(document, [](const Client& client) { client.List<APITsDisk>(); }); });
        EXPECT_THAT(outcome, testing::StartsWith(expected));
    }
    EXPECT_THAT(OutcomeOf([&] { Client(Options()).List<APITsDisk>(); }),
                testing::StartsWith("unreachable: cannot reach the API manager: " + endpoint.path()));
}

TEST_F(ClientTest, EndsACallThatTakesTooLong) {
    const WireLinkServer silent(endpoint);
    ClientOptions options = Options();
    options.timeout = std::chrono::milliseconds(20);
    EXPECT_EQ(OutcomeOf([&] { Client(options).List<APITsDisk>(); }),
              "timed out: TsDisk GetList: no response from " + endpoint.path() + " within 20 ms");
}

TEST_F(ClientTest, AnotherThreadCancelsCalls) {
    Client client(Options());
    std::promise<void> done;
    FakeApiMgr manager(endpoint, 1, [&](const auto&, const auto&) {
        client.Cancel();
        done.get_future().wait();
        return false;
    });
    const auto list = [&] { client.List<APITsDisk>(); };
    EXPECT_EQ(OutcomeOf(list), "cancelled: TsDisk GetList: cancelled");
    EXPECT_EQ(OutcomeOf(list), "cancelled: TsDisk GetList: cancelled");
    done.set_value();
}

std::string TextOfFilter(const Filter& filter) {
    return filter.ListFor(APITsDisk::Attributes(), "TsDisk").ToText();
}

TEST(ClientFilter, RendersConditions) {
    const auto index = Where(APITsDisk::IndexAttribute());
    const auto name = Where(APITsDisk::NameAttribute());
    const std::pair<Filter, const char*> cases[] = {
        {Filter(), ""},
        {index >= 2 && index < 9 && index <= int64_t{7}, "and Index >= 2-Index < 9-Index <= 7-"},
        {name == "a-b" || name > " c" || name.IsPartOf("d e"), "or Name = a&hy&b-Name >  c-Name iqin d e-"},
        {Where(APITsDisk::SpareAttribute()) == true, "and Spare = True-"},
        {Where(APITsDisk::StatusAttribute()) == 2, "and Status = Down-"},
        {Where(APITsDisk::StatusAttribute()) == "down", "and Status = Down-"},
        {Where(APITsDisk::SizeAttribute()) > SIZEValue{.count = 5}, "and Size > 5-"},
        {Where(APITsDisk::EstimatedWearDateAttribute()) < "02/29/2016-00:00:59",
         "and EstimatedWearDate < 02/29/2016 12:00:59 AM-"},
        {AllOf(std::vector<Condition>()), ""},
    };
    for (const auto& [filter, expected] : cases)
        EXPECT_EQ(TextOfFilter(filter), expected);
    EXPECT_EQ((Where(APITsControllerVoltageSensor::CurrentVoltageAttribute()) > -1234567.25).GetValue(),
              "-1234567.25");
}

TEST(ClientFilter, RejectsConditionsThatTheArrayWouldIgnoreOrMisread) {
    const auto name = Where(APITsDisk::NameAttribute());
    const std::pair<std::function<Filter()>, const char*> cases[] = {
        {[&] { return name == ""; }, "is blank"},
        {[&] { return name.Contains(" \n"); }, "is blank"},
        {[&] { return name == "a "; }, "ends in whitespace"},
        {[&] { return name == "a&hy&b"; }, "contains '&hy&'"},
        {[&] { return name == "a\tb"; }, "contains a control character"},
        {[&] { return Where(APITsDisk::StatusAttribute()) == "Dwon"; },
         "invalid Status: invalid value 'Dwon' for Status; expected one of Up, Down, Degraded"},
        {[&] { return Where(APITsDisk::StatusAttribute()) == 99; }, "invalid value '99' for Status"},
        {[&] { return Where(APITsDisk::IndexAttribute()) > UINT64_MAX; }, "expected an integer, at least 0"},
        {[&] { return AnyOf(std::vector<Condition>()); }, "at least one condition"},
        {[&] { return Where(APITessera::LocationAttribute()) == "x"; }, "TsDisk has no attribute Location"},
    };
    for (const auto& [make, expected] : cases)
        EXPECT_THAT(OutcomeOf([&] { TextOfFilter(make()); }), HasSubstr(expected));
}

/** Descriptors read a part of each, or replace it by another value. */
TEST(ClientValue, RejectsValuesThatDescriptorsWouldMisread) {
    const std::pair<const BASEApiAttribute&, std::vector<const char*>> rows[] = {
        {APITsControllerTemperatureSensor::CurrentTemperatureAttribute(),
         {"1000C", "45.5 C", "45 K", "45 C F", "C", "45 C/116 F", "1 C/2 C/3 C", "45 C/", "99999999999 C"}},
        {APITsController::VersionAttribute(), {"newest", "6..3", "6.3.", "-6.3", "6.100", "1.2.3.4.5.6"}},
        {APITsControllerVoltageSensor::CurrentVoltageAttribute(), {"0x1p3", "nan", "inf", "1e999", "5 V"}},
        {APITsDisk::SizeAttribute(), {"0x10", "nan", "inf TB", "-1", "1 TB x", "1e300", "17000000 PB"}},
        {APITsDisk::EstimatedWearDateAttribute(),
         {"02/31/2016 01:02:03 PM", "02/29/2015-01:02:03", "10/31/2016 01:02:03 PM CET", "10/31/2016",
          "10/31/2016-23:59:60", "10/31/16 01:02:03 PM", "01/01/1970-12:00:00"}},
        {APITessera::ManagementIpAttribute(), {"10.0.0", "a.b.c.d", "999.1.1.1"}},
        {APITessera::IPv6ManagementIPAttribute(), {"1.2.3.4", "fe80:::1"}},
        {APITsDisk::DiskFolderAttribute(), {"64702.1 TsDiskFolder"}},
    };
    for (const auto& [attribute, values] : rows) {
        for (const char* value : values)
            EXPECT_EQ(ReadValue(attribute, value), std::nullopt) << attribute.GetXmlName() << ' ' << value;
    }
}

using MapToVolume = APITsServer::APITsServerMapToVolumeMethod;

TEST(ClientCall, IsCheckedBeforeItIsSent) {
    using Modify = APITsController::APITsControllerModifyMethod;
    const auto with = [](auto call, const auto& change) {
        call->SetInstanceId("1");
        change(*call);
        return OutcomeOf([&] { PrepareCall(*call); });
    };
    const auto modified = [&](const auto& change) { return with(std::make_unique<Modify>(), change); };
    EXPECT_EQ(modified([](Modify& call) { Set(call, APITsController::ConfigureViaAttribute(), 2); }),
              "nothing");
    EXPECT_EQ(
        modified([](Modify& call) { call.SetIPv6Eth0IPPrefix(129); }),
        "invalid IPv6Eth0IPPrefix: invalid value '129' for IPv6Eth0IPPrefix; expected an integer, 0 to 128");
    EXPECT_EQ(modified([](Modify& call) { call.SetName("<x>"); }),
              "invalid Name: invalid value '<x>' for Name; expected a string of 1 to 64 bytes without < > &");
    EXPECT_EQ(modified([](Modify& call) { call.SetAttribute("Colour", "blue"); }),
              "invalid Colour: TsController Modify has no argument Colour");
    EXPECT_EQ(modified([](Modify& call) { call.SetAttribute("IndicatorOn", "maybe"); }),
              "invalid IndicatorOn: invalid value 'maybe' for IndicatorOn; expected True or False");

    const auto mapped = [&](const auto& change) { return with(std::make_unique<MapToVolume>(), change); };
    EXPECT_EQ(mapped([](MapToVolume&) {}), "invalid Volume: TsServer MapToVolume needs Volume");
    const auto with_advanced = [&](const std::string& fields) {
        return mapped([&](MapToVolume& call) {
            call.SetAttribute("Volume", "2 TsVolume v");
            call.SetAttribute("Advanced", "<TsAdvancedMapping>" + fields + "</TsAdvancedMapping>");
        });
    };
    EXPECT_EQ(with_advanced("<ReadOnly>yes</ReadOnly>"), "nothing");
    EXPECT_EQ(with_advanced("<PreferredLun>5000</PreferredLun>"),
              "invalid Advanced.PreferredLun: invalid value '5000' for Advanced.PreferredLun; expected an "
              "integer, 1 to 4095");
    EXPECT_EQ(with_advanced("<Lun>5</Lun>"), "invalid Advanced.Lun: TsAdvancedMapping has no field Lun");
    for (const char* malformed : {"<ReadOnly>", "<ReadOnly><a/></ReadOnly>"})
        EXPECT_EQ(with_advanced(malformed),
                  "invalid Advanced: the structured argument Advanced is not well-formed");
}

TEST(ClientCall, SetsArgumentsStrictly) {
    APITessera::APITesseraModifyMethod modify;
    EXPECT_EQ(OutcomeOf([&] { Set(modify, APITessera::ManagementIpAttribute(), "10.0.0"); }),
              "invalid ManagementIp: invalid value '10.0.0' for ManagementIp; expected an IPv4 address");
    EXPECT_THAT(OutcomeOf([&] { Set(modify, APITessera::OperationModeAttribute(), 99); }),
                HasSubstr("invalid value '99' for OperationMode; expected one of Normal"));
    EXPECT_EQ(OutcomeOf([&] { Set(modify, APITsDisk::IndexAttribute(), 1); }),
              "invalid Index: Tessera has no attribute Index");
    EXPECT_FALSE(modify.HasAttribute("ManagementIp"));
    Set(modify, APITessera::OperationModeAttribute(), 2);
    Set(modify, APITessera::LocationAttribute(), "a < b & 'c'");
    modify.SetInstanceId("64702");
    EXPECT_THAT(PrepareCall(modify)->GenerateXml(false, true),
                HasSubstr("<Location>a &lt; b &amp; &apos;c&apos;</Location><OperationMode>Maintenance<"));
}

TEST(ClientCall, CarriesAnyStringInAStructuredArgument) {
    using History = APITsDisk::APITsDiskGetHistoricalIoUsageMethod;
    const std::string text = "a < b & \"&lt;\"";
    APIHistoricalFilter filter;
    Set(filter, APIHistoricalFilter::FilterTimeAttribute(), text);
    History call;
    call.SetInstanceId("1");
    call.SetHistoricalFilter(&filter);
    const std::string argument = call.GetAttribute("HistoricalFilter");
    EXPECT_THAT(PrepareCall(call)->GenerateXml(false, true), HasSubstr(argument));
    const auto values = StructuresOf<APIHistoricalFilter>(call, History::HistoricalFilterAttribute());
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(values[0].GetFilterTime(), text);
}

}  // namespace
