#include <gmock/gmock.h>

#include <memory>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiDaemonMethods.h"

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

struct DaemonMethod {
    std::unique_ptr<BASEApiMethod> method;
    std::string class_name;
    std::string command;
};

#define METHOD(object, command)                                                                         \
    {                                                                                                   \
        std::make_unique<API##object::API##object##command##Method>(), "API" #object #command "Method", \
            #command                                                                                    \
    }

TEST(ApiMethod, EveryClassOfTheDaemonSaysWhatItsNameSays) {
    const DaemonMethod methods[] = {METHOD(TsController, GetList),
                                    METHOD(TsEnclosure, GetList),
                                    METHOD(TsDiskFolder, GetList),
                                    METHOD(TsRemoteTessera, GetList),
                                    METHOD(TsControllerCacheCard, GetList),
                                    METHOD(TsControllerFanSensor, GetList),
                                    METHOD(TsControllerPowerSupply, GetList),
                                    METHOD(TsControllerVoltageSensor, GetList),
                                    METHOD(TsControllerTemperatureSensor, GetList),
                                    METHOD(TsEnclosureCoolingFanSensor, GetList),
                                    METHOD(TsEnclosurePowerSupply, GetList),
                                    METHOD(TsEnclosureIoModule, GetList),
                                    METHOD(TsEnclosureTemperatureSensor, GetList),
                                    METHOD(TsEnclosureAudibleAlarm, GetList),
                                    METHOD(Tessera, GetList),
                                    METHOD(TsUps, GetList),
                                    METHOD(TsObjectCount, GetList),
                                    METHOD(TsDisk, GetList),
                                    METHOD(TsDiskConfiguration, GetList),
                                    METHOD(TsAlert, GetList),
                                    METHOD(TsVolume, GetList),
                                    METHOD(TsServer, GetList),
                                    METHOD(TsDisk, Get),
                                    METHOD(TsDiskConfiguration, Get),
                                    METHOD(TsDiskFolder, Get),
                                    METHOD(TsAlert, Get),
                                    METHOD(TsVolume, Get),
                                    METHOD(TsServer, Get),
                                    METHOD(TsDiskFolderStorageUsage, Get),
                                    METHOD(Tessera, Modify)};
    for (const auto& [method, class_name, command] : methods) {
        EXPECT_EQ("API" + method->GetObjectName() + method->GetCommandName() + "Method", class_name);
        EXPECT_EQ(method->GetCommandName(), command);
        EXPECT_EQ(method->ChangesState(), command == "Modify") << class_name;
        EXPECT_EQ(method->GetRequiredPrivilege(), command == "Modify" ? 1 : 3) << class_name;
        EXPECT_EQ(dynamic_cast<GETLISTApiMethod*>(method.get()) != nullptr, command == "GetList")
            << class_name;
    }
}

}  // namespace
