#include <gmock/gmock.h>

#include <sstream>

#include "apiMgmt/common/utils/apiMethodError.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// As seen by a handler that catches the base class.
std::string Output(const GENERALError& error) {
    std::ostringstream stream;
    stream << error;
    return stream.str();
}

}  // namespace

TEST(Errors, EachFormGivesItsTexts) {
    const GENERALError two_texts("file", 5, "message", "summary");
    const GENERALError long_form("summary", "file", 5, 77, nullptr);
    const APIMethodError library("summary", 4, "file", 5, 10764, "%s", "Name");
    const APIMethodError location(8, "file", 5, "message");
    const std::tuple<const GENERALError&, const char*, const char*, const char*, int> cases[] = {
        {two_texts, "message", "summary", "summary", 0},
        {long_form, "", "summary", "summary", 77},
        {library, "", "summary", "Error state[4], Summary[summary]", 10764},
        {location, "message", "message", "Error state[8], Summary[message]", 0},
    };
    for (const auto& [error, what, summary, text, code] : cases) {
        EXPECT_STREQ(error.what(), what);
        EXPECT_EQ(error.GetSummary(), summary);
        EXPECT_EQ(Output(error), text);
        EXPECT_EQ(error.GetErrorCode(), code);
        EXPECT_EQ(error.GetSourceFile(), "file");
        EXPECT_EQ(error.GetSourceLine(), 5U);
    }
}

TEST(Errors, TheDescriptorIsCutIntoParameters) {
    const auto parameters = [](const GENERALError& error) { return error.GetParameters(); };
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%lld", "Size", 5LL)), ElementsAre("Size", "5"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%s", "a", "")), ElementsAre("a"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, "%s|%s", "", "b")), ElementsAre("", "b"));
    EXPECT_THAT(parameters(GENERALError("s", "f", 1, 2, nullptr)), IsEmpty());
    EXPECT_THAT(parameters(APIMethodError("s", 4, "f", 1, 2, "%s|%lld|%lld", "Size", -1LL, 1LL << 40)),
                ElementsAre("Size", "-1", "1099511627776"));
}

TEST(Errors, AResponseChoosesItsTexts) {
    const std::tuple<int, std::vector<std::string>, const char*, const char*, const char*> cases[] = {
        {0, {"first", "second"}, "short", "short", "short"},
        {1, {"first", "second"}, "short", "first", "short"},
        {1, {"first", "second"}, "", "first", "first"},
        {1, {}, "short", "short", "short"},
    };
    for (const auto& [error_code, messages, summary_message, what, summary] : cases) {
        TSResponseStatus status;
        status.errorCode = error_code;
        status.errorMsgs = messages;
        status.errorSummaryMsg = summary_message;
        const APIMethodError error(status, "file", 5);
        EXPECT_STREQ(error.what(), what) << error_code;
        EXPECT_EQ(error.GetSummary(), summary) << error_code;
        EXPECT_EQ(error.GetErrorState(), 10);
    }
}
