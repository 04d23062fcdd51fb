#include <gmock/gmock.h>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"

namespace {

using Arguments = std::map<std::string, std::string>;

const std::string kDiskGetHead =
    "<ApiMethod><CommandType>Method</CommandType><Object>TsDisk</Object><Command>Get</Command>"
    "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>";

TEST(ApiMethod, WritesAttributesInByteOrderAndValuesAsTheyStand) {
    APITsDisk::APITsDiskGetMethod method(
        Arguments{{"", "no name"}, {"b", ""}, {"Ab", "<x>&</x>"}, {"A", "1"}});
    method.SetAttribute("", "no name either");
    method.SetAttribute("\xc3\x84", "2");  // bytes above 127 come last
    method.SetAttribute("A", "3 > 2");
    EXPECT_EQ(method.GenerateXml(false, true),
              kDiskGetHead +
                  "<Attributes><A>3 > "
                  "2</A><Ab><x>&</x></Ab><b></b><\xc3\x84>2</\xc3\x84></Attributes></ApiMethod>");
    EXPECT_FALSE(method.HasAttribute(""));

    // A map that holds nothing but an empty name is an empty one: no element at all.
    EXPECT_EQ(APITsDisk::APITsDiskGetMethod(Arguments{{"", "x"}}).GenerateXml(false, true),
              kDiskGetHead + "</ApiMethod>");
    EXPECT_THAT(method.GenerateXml(true, false),
                testing::HasSubstr("<Async>true</Async><ObjectEncodeType>csv</ObjectEncodeType>"));
}

TEST(ApiMethod, ReadsLiteObjAsABool) {
    APITsDisk::APITsDiskGetMethod method;
    EXPECT_FALSE(method.IsLiteObj());
    for (const auto& [text, lite] : std::map<std::string, bool>{
             {"", false}, {"0", false}, {"2", false}, {"yes", false}, {"1", true}, {"tRUE", true}}) {
        method.SetAttribute("LiteObj", text);
        EXPECT_EQ(method.IsLiteObj(), lite) << text;
    }
}

}  // namespace
