#include <gmock/gmock.h>

#include <memory>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

using Return = std::unique_ptr<BASEApiMethodReturn>;

protoIPCMsg::GPBIPCMsg ResponseWith(const std::string& document) {
    protoIPCMsg::GPBIPCMsg response;
    response.set_msgtype(protoIPCMsg::APIResp);
    response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
    response.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
    return response;
}

Return Decode(const std::string& document) {
    return Return(sample::DiskGetList().DecodeResponse(ResponseWith(document)));
}

/** Returns the response to a successful call, with this after its status. */
Return DecodeResult(const std::string& result) {
    return Decode("<lumapi><ApiMethodReturn><Successful>1</Successful></ApiMethodReturn>" + result +
                  "</lumapi>");
}

template <class Kind>
std::unique_ptr<Kind> As(Return answer) {
    auto* kind = dynamic_cast<Kind*>(answer.get());
    if (kind != nullptr)
        answer.release();
    return std::unique_ptr<Kind>(kind);
}

/** Returns "null", "ok", or the error: state|error|localised|detail. */
std::string Describe(const Return& answer) {
    if (!answer)
        return "null";
    EXPECT_EQ(answer->GetMethod(), nullptr);
    if (answer->GetSuccessful())
        return "ok";
    return std::to_string(answer->GetErrorState()) + "|" + answer->GetError() + "|" +
           answer->GetLocalizedError() + "|" + answer->GetErrorDetail();
}

TEST(Decode, RefusesAForeignEnvelope) {
    const std::string begin = "4|Invalid content in response message|Invalid content in response message|";
    const std::string no_response = begin + "Message type invalid or missing from response";
    const std::string no_command = begin + "Command type invalid or missing from response";
    const auto describe = [](const protoIPCMsg::GPBIPCMsg& response) {
        return Describe(Return(sample::DiskGetList().DecodeResponse(response)));
    };
    const auto good = ResponseWith("<lumapi/>");

    EXPECT_EQ(describe({}), no_response);
    auto bad = good;
    bad.set_msgtype(protoIPCMsg::CAResp);
    EXPECT_EQ(describe(bad), no_response);
    bad = good;
    bad.clear_apirespmsg();
    EXPECT_EQ(describe(bad), no_response);
    bad = good;
    bad.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Ping);
    EXPECT_EQ(describe(bad), no_command);
    bad = good;
    bad.mutable_apirespmsg()->clear_cmd();
    EXPECT_EQ(describe(bad), no_command);
}

TEST(Decode, RefusesWhatIsNoDocument) {
    const std::string object =
        "<lumapi><ApiMethodReturn><Successful>1</Successful></ApiMethodReturn><ReturnObject><TsDisk>";
    for (const std::string& document : {std::string(), object})
        EXPECT_EQ(
            Describe(Decode(document)),
            "4|Invalid content in response message|Invalid content in response message|Failed to parse XML "
            "response data")
            << document.substr(0, 80);
}

TEST(Decode, WantsOneStatus) {
    const auto wrong_count = [](const char* count) {
        return std::string(
                   "4|Invalid response in return XML|Invalid response in return XML|Incorrect number of "
                   "APIMethodReturn elements.  Expected 1, found [") +
               count + "].";
    };
    const std::string status = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";
    EXPECT_EQ(Describe(Decode("<lumapi></lumapi>")), wrong_count("0"));
    EXPECT_EQ(Describe(Decode("<lumapi><apimethodreturn/><x>" + status + "</x></lumapi>")), wrong_count("0"));
    EXPECT_EQ(Describe(Decode("<lumapi>" + status + status + "</lumapi>")), wrong_count("2"));
    EXPECT_EQ(Describe(Decode("<Lumapi>" + status + status + "</Lumapi>")), "null");
    EXPECT_EQ(Describe(Decode("<lumapi>" + status + "</lumapi>")), "null");
    EXPECT_EQ(Describe(Decode("<lumapi>" + status + "<Other>1</Other></lumapi>")), "null");
    EXPECT_EQ(Describe(Decode("<lumapi><ReturnBool>1</ReturnBool>" + status + "</lumapi>")), "ok");
}

TEST(Decode, ReadsTheStatus) {
    const auto describe = [](const std::string& status) {
        return Describe(Decode("<lumapi><ApiMethodReturn>" + status +
                               "</ApiMethodReturn><ReturnBool>True</ReturnBool></lumapi>"));
    };
    for (const char* yes : {"1", "True", "tRUE"})
        EXPECT_EQ(describe("<Successful>" + std::string(yes) + "</Successful><ErrorCode>4</ErrorCode>"), "ok")
            << yes;
    for (const char* no : {"", "yes", "0", "2"})
        EXPECT_EQ(describe("<Successful>" + std::string(no) + "</Successful>"), "1|||") << no;
    EXPECT_EQ(describe(""), "1|||");
    EXPECT_EQ(
        describe("<Error>a &lt; b</Error><LocalizedError>l</LocalizedError><ErrorDetail>d</ErrorDetail>"),
        "1|a < b|l|d");

    const std::pair<const char*, int> codes[] = {{"", 1},           {"parsingerror", 4}, {" 25 ", 25},
                                                 {"Nonsense", 999}, {"-4", 999},         {" None", 999},
                                                 {"46", 46}};
    for (const auto& [code, state] : codes)
        EXPECT_EQ(describe("<ErrorCode>" + std::string(code) + "</ErrorCode><Error>e</Error>"),
                  std::to_string(state) + "|e||")
            << code;
}

TEST(Decode, ReadsPlainResults) {
    EXPECT_TRUE(As<BOOLMethodReturn>(DecodeResult("<ReturnBool>true</ReturnBool>"))->value);
    EXPECT_FALSE(As<BOOLMethodReturn>(DecodeResult("<ReturnBool/>"))->value);
    for (const auto& [text, value] : std::map<std::string, int>{{"", 0},
                                                                {"-7", -7},
                                                                {"12x", 12},
                                                                {"x", 0},
                                                                {"9999999999", INT32_MAX},
                                                                {"-9999999999", INT32_MIN}})
        EXPECT_EQ(As<INTMethodReturn>(DecodeResult("<ReturnInt>" + text + "</ReturnInt>"))->value, value)
            << text;
    EXPECT_EQ(As<STRINGMethodReturn>(DecodeResult("<ReturnString> a &amp; b </ReturnString>"))->value,
              " a & b ");
    EXPECT_EQ(As<STRINGMethodReturn>(DecodeResult("<ReturnString><b>x</b></ReturnString>"))->value,
              "<b>x</b>");
    EXPECT_EQ(As<ENUMMethodReturn>(DecodeResult("<ReturnEnum>Up</ReturnEnum>"))->value, "Up");
    const auto mask = As<ENUMMaskMethodReturn>(DecodeResult(
        "<ReturnEnumMask><Row><Value>2</Value><Description>I&amp;S</Description></Row></ReturnEnumMask>"));
    EXPECT_EQ(mask->value, "<Row><Value>2</Value><Description>I&amp;S</Description></Row>");
    EXPECT_EQ(mask->GetRows().at(0).Description, "I&S");
}

TEST(Decode, TakesTheFirstResultOfItsOwnOrder) {
    // In the document, the order is reversed.
    const char* const order[] = {"ReturnBool",
                                 "ReturnInt",
                                 "ReturnString",
                                 "ReturnObject",
                                 "ReturnObjectArray",
                                 "ReturnMethodObject",
                                 "ReturnMethodObjectArray",
                                 "ReturnEnumMask",
                                 "ReturnEnum"};
    std::string document;
    for (auto tag = std::rbegin(order); tag != std::rend(order); ++tag) {
        document += "<" + std::string(*tag) + "/>";
        const Return answer = DecodeResult(document);
        // The type of the result: encoded again, it begins with the tag. An empty object yields nothing.
        const std::string written = answer->ReturnXml(1);
        EXPECT_TRUE(written.empty() || written.starts_with("<" + std::string(*tag)))
            << *tag << " " << written;
    }
    EXPECT_EQ(As<INTMethodReturn>(DecodeResult("<ReturnInt>1</ReturnInt><ReturnInt>2</ReturnInt>"))->value,
              1);
}

TEST(Decode, ReadsObjects) {
    const auto list = As<COMPObjectMethodReturn>(
        DecodeResult("<ReturnObjectArray><TsDisk><Index>1</Index><Name>a &amp; b</Name><Status>Down</Status>"
                     "<More><X>1</X></More><Undescribed>u</Undescribed></TsDisk>"
                     "<TsUnknown><Index>9</Index></TsUnknown><tsDisk><Index>9</Index></tsDisk>"
                     "<TsDisk><ObjectType>Other</ObjectType><Index>2</Index><Index>3</Index><Empty/></TsDisk>"
                     "</ReturnObjectArray>"));
    ASSERT_TRUE(list->isArray);
    ASSERT_EQ(list->GetObjects().size(), 2u);
    const BASEApiObject& first = *list->GetObjects()[0];
    EXPECT_EQ(first.GetAttribute("Name"), "a & b");
    EXPECT_EQ(first.GetAttribute("Status"), "Down");
    EXPECT_EQ(first.GetAttribute("More"), "<X>1</X>");
    EXPECT_EQ(first.GetAttribute("Undescribed"), "u");
    EXPECT_EQ(first.GetObjectType(), "TsDisk");
    const BASEApiObject& second = *list->GetObjects()[1];
    EXPECT_EQ(second.GetObjectType(), "Other");
    EXPECT_EQ(second.GetAttribute("Index"), "3");
    EXPECT_TRUE(second.HasAttribute("Empty"));

    EXPECT_TRUE(As<COMPObjectMethodReturn>(DecodeResult("<ReturnObjectArray />"))->GetObjects().empty());

    const auto one = As<COMPObjectMethodReturn>(
        DecodeResult("<ReturnObject><TsUnknown/><TsDisk><Index>1</Index></TsDisk><TsDisk/></ReturnObject>"));
    ASSERT_NE(one->GetObject(), nullptr);
    EXPECT_EQ(one->GetObjects().size(), 1u);
    EXPECT_EQ(one->GetObject()->GetAttribute("Index"), "1");
    EXPECT_EQ(As<COMPObjectMethodReturn>(DecodeResult("<ReturnObject>text</ReturnObject>"))->GetObject(),
              nullptr);
}

TEST(Decode, ReadsWhatAReturnWrites) {
    COMPObjectMethodReturn written(true);
    for (int i = 1; i <= 300; ++i) {
        auto* disk = new sample::Disk;
        disk->SetIndex(i);
        disk->SetName("<" + std::string(static_cast<size_t>(i), '&') + ">");
        disk->SetStatus(i % 4);
        written.AddObject(disk, false);
    }
    const auto read = As<COMPObjectMethodReturn>(Decode(written.GenerateResponseXml(object_encoding::kXml)));
    EXPECT_EQ(read->ReturnXml(object_encoding::kXml), written.ReturnXml(object_encoding::kXml));
    EXPECT_EQ(read->GetObjects().size(), 300u);

    BASEApiMethodReturn failure(false, 25, "a<b", "l\"", "d&", nullptr);
    EXPECT_EQ(Describe(Decode(failure.GenerateResponseXml(1))), "25|a<b|l\"|d&");
}

}  // namespace
