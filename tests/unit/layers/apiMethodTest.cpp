#include <gmock/gmock.h>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTessera.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsEnclosure.h"

namespace {

using Arguments = std::map<std::string, std::string>;

const std::string kDiskGetHead =
    "<ApiMethod><CommandType>Method</CommandType><Object>TsDisk</Object><Command>Get</Command>"
    "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>";

/** An association, the other kind of call. */
class FanSensorList : public BASEApiMethod {
  public:
    explicit FanSensorList(const Arguments& initial) : BASEApiMethod(true, initial) {}
    const std::string& GetCommandName() const override {
        static const std::string name = "FanSensorList";
        return name;
    }
    const std::string& GetObjectName() const override {
        static const std::string name = "TsController";
        return name;
    }
};

TEST(ApiMethod, RendersTheDocumentsOfTheDaemon) {
    EXPECT_EQ(
        APITsController::APITsControllerGetListMethod().GenerateXml(false, true),
        "<ApiMethod><CommandType>Method</CommandType><Object>TsController</Object><Command>GetList</Command>"
        "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType></ApiMethod>");

    APITsEnclosure::APITsEnclosureGetListMethod enclosures;
    enclosures.SetLiteObj();
    EXPECT_EQ(
        enclosures.GenerateXml(false, true),
        "<ApiMethod><CommandType>Method</CommandType><Object>TsEnclosure</Object><Command>GetList</Command>"
        "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>"
        "<Attributes><LiteObj>1</LiteObj></Attributes></ApiMethod>");

    APITsDisk::APITsDiskGetMethod disk(Arguments{{"InstanceId", "64702.17"}});
    disk.SetLiteObj();
    EXPECT_EQ(
        disk.GenerateXml(false, true),
        kDiskGetHead +
            "<Attributes><InstanceId>64702.17</InstanceId><LiteObj>1</LiteObj></Attributes></ApiMethod>");

    EXPECT_EQ(APITessera::APITesseraModifyMethod(Arguments{{"Location", "rack 4"}, {"InstanceId", "64702"}})
                  .GenerateXml(false, true),
              "<ApiMethod><CommandType>Method</CommandType><Object>Tessera</Object><Command>Modify</Command>"
              "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType><Attributes>"
              "<InstanceId>64702</InstanceId><Location>rack 4</Location></Attributes></ApiMethod>");

    EXPECT_EQ(FanSensorList(Arguments{{"InstanceId", "64702.1"}}).GenerateXml(false, true),
              "<ApiMethod><CommandType>Association</CommandType><Object>TsController</Object>"
              "<Command>FanSensorList</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>"
              "<Attributes><InstanceId>64702.1</InstanceId></Attributes></ApiMethod>");

    EXPECT_THAT(disk.GenerateXml(true, false),
                testing::HasSubstr("<Async>true</Async><ObjectEncodeType>csv</ObjectEncodeType>"));
}

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
