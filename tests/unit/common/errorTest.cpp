#include <gmock/gmock.h>

#include <sstream>

#include "apiMgmt/common/utils/apiMethodError.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// As a catcher sees it that knows the base only.
std::string Output(const GENERALError& error) {
    std::ostringstream stream;
    stream << error;
    return stream.str();
}

}  // namespace

TEST(Errors, EachFormGivesItsTexts) {
    const GENERALError plain("file", 5, "message");
    const GENERALError two_texts("file", 5, "message", "summary");
    const GENERALError long_form("summary", "file", 5, 77, nullptr);
    const APIMethodError library("summary", 4, "file", 5, 10764, "%s", "Name");
    const APIMethodError location(8, "file", 5, "message");
    const APIMethodError location_summary(8, "file", 5, "message", "summary");
    const struct {
        const GENERALError& error;
        const char *what, *summary, *text;
        int code;
    } cases[] = {
        {plain, "message", "message", "message", 0},
        {two_texts, "message", "summary", "summary", 0},
        {long_form, "", "summary", "summary", 77},
        {library, "", "summary", "Error state[4], Summary[summary]", 10764},
        {location, "message", "message", "Error state[8], Summary[message]", 0},
        {location_summary, "message", "summary", "Error state[8], Summary[summary]", 0},
    };
    for (const auto& c : cases) {
        EXPECT_STREQ(c.error.what(), c.what);
        EXPECT_EQ(c.error.GetSummary(), c.summary);
        EXPECT_EQ(Output(c.error), c.text);
        EXPECT_EQ(c.error.GetErrorCode(), c.code);
        EXPECT_EQ(c.error.GetSourceFile(), "file");
        EXPECT_EQ(c.error.GetSourceLine(), 5U);
    }
}

TEST(Errors, TheDescriptorIsCutIntoParameters) {
    const auto parameters = [](const GENERALError& error) { return error.GetParameters(); };
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%lld", "Size", 5LL)), ElementsAre("Size", "5"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s", "Size")), ElementsAre("Size"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%s", "a", "")), ElementsAre("a"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%s", "", "b")), ElementsAre("", "b"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s", "")), IsEmpty());
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, nullptr)), IsEmpty());
    EXPECT_THAT(parameters(APIMethodError("s", 4, "f", 1, 2, "%s|%lld|%lld", "Size", -1LL, 1LL << 40)),
                ElementsAre("Size", "-1", "1099511627776"));
    EXPECT_THAT(parameters(APIMethodError("s", 4, "f", 1, 2, nullptr)), IsEmpty());
}

TEST(Errors, AResponseChoosesItsTexts) {
    const struct {
        int error_code;
        std::vector<std::string> messages;
        const char *summary_message, *what, *summary;
    } cases[] = {
        {0, {"first", "second"}, "short", "short", "short"},
        {0, {"first"}, "", "", ""},
        {-1, {"first"}, "short", "short", "short"},
        {1, {"first", "second"}, "short", "first", "short"},
        {1, {"first", "second"}, "", "first", "first"},
        {1, {}, "short", "short", "short"},
        {1, {}, "", "", ""},
        {1, {""}, "short", "", "short"},
    };
    for (const auto& c : cases) {
        TSResponseStatus status;
        status.errorCode = c.error_code;
        status.errorMsgs = c.messages;
        status.errorSummaryMsg = c.summary_message;
        const APIMethodError error(status, "file", 5);
        EXPECT_STREQ(error.what(), c.what) << c.error_code;
        EXPECT_EQ(error.GetSummary(), c.summary) << c.error_code;
        EXPECT_EQ(error.GetErrorState(), 10);
    }
}

TEST(Errors, OnlyAPositiveResponseCodeGivesTheCodeForm) {
    TSResponseStatus status;
    status.extErrorCode = -9;
    status.subsystemId = 4000000000;
    status.errorSummaryMsg = "short";
    status.errorCauseMsg = "cause";
    EXPECT_EQ(Output(APIMethodError(status, "file", 5)), "Error state[10], Summary[short]");
    status.errorCode = 1;
    const APIMethodError error(status, "file", 5);
    EXPECT_EQ(Output(error), "Error code[1], extErrorCode[4000000000:-9], Summary[short]");
    EXPECT_EQ(error.GetCauseText(), "cause");
}
