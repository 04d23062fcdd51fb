#include <gmock/gmock.h>

#include <functional>

#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

using Arguments = std::map<std::string, std::string>;

/** Returns state, code and summary of the exception, or "nothing". */
std::string ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const APIMethodError& error) {
        return std::to_string(error.GetErrorState()) + " " + std::to_string(error.GetErrorCode()) + " " +
               error.GetSummary();
    }
    return "nothing";
}

std::string MissingIn(const BASEApiMethod& method) {
    return ErrorOf([&] { method.CheckRequiredAttributes(); });
}

TEST(Method, NamesTheFirstMissingArgument) {
    EXPECT_EQ(MissingIn(sample::DiskModify()), "25 10009 Required attribute InstanceId not set");
    EXPECT_EQ(MissingIn(sample::DiskModify(Arguments{{"InstanceId", ""}})),
              "25 10009 Required attribute Name not set");
    EXPECT_EQ(MissingIn(sample::DiskModify(Arguments{{"InstanceId", ""}, {"Name", ""}})), "nothing");
    EXPECT_EQ(MissingIn(sample::DiskModify(Arguments{{"instanceid", "1"}, {"Name", "a"}})),
              "25 10009 Required attribute InstanceId not set");

    // Filters are optional.
    EXPECT_EQ(MissingIn(sample::DiskGetList()), "nothing");

    EXPECT_EQ(MissingIn(sample::DiskEnclosure()),
              "25 10009 InstanceID not specified for association [TsDisk::Enclosure]");
    EXPECT_EQ(MissingIn(sample::DiskEnclosure("64702.1")), "nothing");
}

TEST(Method, ValidatesWhatIsDescribedInTheOrderOfTheNames) {
    const auto error_of = [](const Arguments& arguments) {
        const sample::DiskModify method(arguments);
        return ErrorOf([&] { method.ValidateAttributes(); });
    };
    EXPECT_EQ(error_of({{"InstanceId", "1"}, {"Name", "a"}, {"Index", "5"}}), "nothing");
    EXPECT_EQ(error_of({{"InstanceId", "1"}, {"Name", "<"}, {"Index", "0"}}),
              "4 10761 Attribute \"Index\" was 0, but must be greater than or equal to 1");
    EXPECT_EQ(error_of({{"InstanceId", "1"}, {"Name", "<"}}),
              "4 10011 Attribute \"Name\" was \"<\", but cannot contain these characters: <>&");
    EXPECT_EQ(error_of({{"Name", "<"}}), "25 10009 Required attribute InstanceId not set");
    EXPECT_EQ(error_of({{"InstanceId", ""}, {"Name", "a"}, {"LiteObj", "<"}, {"Undescribed", "<>&"}}),
              "nothing");

    const sample::DiskModify method(Arguments{{"InstanceId", "1"}, {"Name", ""}});
    EXPECT_THROW(method.ValidateAttributes(), APIMethodError);
    EXPECT_EQ(method.state_checks, 1);
    EXPECT_EQ(method.GetAttribute("Name"), "");
}

TEST(Method, AListTakesAFilter) {
    sample::DiskGetList method;
    EXPECT_EQ(method.GetFilter(), nullptr);
    FILTERList filter;
    filter.joinType = filter_join::kAnd;
    filter.Add("Name", filter_operator::kEqual, "a-b");
    filter.Add("Index", filter_operator::kGreater, "2");
    method.SetFilter(&filter);
    EXPECT_EQ(method.GetAttribute("Filter"), "and Name = a&hy&b-Index > 2-");
    const std::unique_ptr<FILTERList> read(method.GetFilter());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->ToText(), filter.ToText());
    EXPECT_THAT(method.GenerateXml(false, true),
                testing::HasSubstr("<Attributes><Filter>and Name = a&hy&b-Index > 2-</Filter></Attributes>"));
    method.SetFilter(nullptr);
    EXPECT_TRUE(method.HasAttribute("Filter"));
    EXPECT_EQ(method.GetAttribute("Filter"), "");
    EXPECT_EQ(method.GetFilter(), nullptr);
}

// ---- Requests ----

const std::string kGetList =
    "<ApiMethod><CommandType>Method</CommandType><Object>TsDisk</Object><Command>GetList</Command>"
    "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType></ApiMethod>";

protoIPCMsg::GPBIPCMsg RequestOf(const ConnectionRecord* connection, const std::string& key,
                                 const std::string& locale) {
    protoIPCMsg::GPBIPCMsg request;
    sample::DiskGetList().BuildRequest(request, connection, key, nullptr, locale);
    return request;
}

TEST(Request, CarriesASession) {
    const auto request = RequestOf(nullptr, "KEY", "en_US");
    EXPECT_EQ(request.msgtype(), protoIPCMsg::APIRequest);
    EXPECT_FALSE(request.has_sequencenum());
    EXPECT_EQ(request.apireqmsg().cmdtype(), protoIPCMsg::Command);
    EXPECT_EQ(request.apireqmsg().sourceip(), "127.0.0.1");
    EXPECT_FALSE(request.apireqmsg().cmd().has_hccheader());
    EXPECT_EQ(request.apireqmsg().cmd().cmddata(),
              "<lumapi><ApiConnection><sessionkey>KEY</sessionkey><locale>en_US</locale></ApiConnection>" +
                  kGetList + "</lumapi>");
    for (const char* locale : {"", "en_U", "en_US.", "de"})
        EXPECT_EQ(
            RequestOf(nullptr, "KEY", locale).apireqmsg().cmd().cmddata(),
            "<lumapi><ApiConnection><sessionkey>KEY</sessionkey></ApiConnection>" + kGetList + "</lumapi>")
            << locale;
}

TEST(Request, CarriesAForwardedConnectionInItsPlace) {
    const ConnectionRecord connection = {"1.0", "user:pass", "token", "id", "10.0.0.9"};
    const auto request = RequestOf(&connection, "KEY", "en_US");
    EXPECT_EQ(request.apireqmsg().sourceip(), "10.0.0.9");
    EXPECT_EQ(request.apireqmsg().cmd().cmddata(), "<lumapi>" + kGetList + "</lumapi>");
    const auto& header = request.apireqmsg().cmd().hccheader();
    EXPECT_EQ(header.version() + "|" + header.userpass() + "|" + header.authtoken() + "|" + header.hccid(),
              "1.0|user:pass|token|id");
    EXPECT_EQ(RequestOf(&connection, "", "").SerializeAsString(), request.SerializeAsString());
    EXPECT_TRUE(request.IsInitialized());
}

TEST(Request, CarriesBlobsThatHoldSomething) {
    protoIPCMsg::GPBIPCMsg request;
    const std::map<std::string, std::string> blobs = {
        {"b", std::string("\0\xff", 2)}, {"a", "x"}, {"empty", ""}, {"", "nameless"}};
    sample::DiskGetList().BuildRequest(request, nullptr, "KEY", &blobs, "");
    std::string seen;
    for (const auto& blob : request.apireqmsg().cmd().binaryblob())
        seen += blob.name() + "=" + blob.data() + "/" + std::to_string(blob.length()) + " ";
    EXPECT_EQ(seen, "=nameless/8 a=x/1 b=" + std::string("\0\xff", 2) + "/2 ");
}

TEST(Request, IsLeftAloneWithoutASession) {
    protoIPCMsg::GPBIPCMsg request;
    EXPECT_EQ(ErrorOf([&] { sample::DiskGetList().BuildRequest(request, nullptr, "", nullptr, "en_US"); }),
              "8 10001 Unable to create GPB request. Session identifier not specified");
    EXPECT_FALSE(request.has_msgtype() || request.has_apireqmsg());
}

}  // namespace
