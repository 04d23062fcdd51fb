#include <gmock/gmock.h>

#include <map>
#include <memory>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiMethodObjects.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTessera.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsAlert.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsControllerCacheCard.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsControllerTemperatureSensor.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsControllerVoltageSensor.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsVolume.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(CatalogueAccess, KeepsNumbersAndWordsAsTexts) {
    APITsDisk disk;
    disk.SetHealthy(true);
    EXPECT_EQ(disk.GetAttribute("Healthy"), "True");
    EXPECT_TRUE(disk.GetHealthy());
    EXPECT_FALSE(disk.GetLocked());

    disk.SetIndex(-7);
    EXPECT_EQ(disk.GetAttribute("Index"), "-7");
    EXPECT_EQ(disk.GetIndex(), -7);
    EXPECT_EQ(disk.GetDiskClassIndex(), 0);

    disk.SetHealthMask({"ReadError", "LostContact"});
    EXPECT_EQ(disk.GetAttribute("HealthMask"), "ReadError LostContact");
    EXPECT_THAT(disk.GetHealthMask(), ElementsAre("ReadError", "LostContact"));

    APITsControllerVoltageSensor sensor;
    sensor.SetCurrentVoltage(3.25);
    EXPECT_EQ(sensor.GetAttribute("CurrentVoltage"), "3.25");
    EXPECT_EQ(sensor.GetCurrentVoltage(), 3.25);

    APITsVolume::APITsVolumeRecycleManyMethod recycle;
    recycle.SetVolumeIndexes({3, 1, 2});
    EXPECT_EQ(recycle.GetAttribute("VolumeIndexes"), "3 1 2");
    EXPECT_THAT(recycle.GetVolumeIndexes(), ElementsAre(3, 1, 2));

    APITessera::APITesseraRecommendMethod recommend;
    recommend.SetHbaWwnsOrIscsiNames({"a:b", "c"});
    EXPECT_EQ(recommend.GetAttribute("HbaWwnsOrIscsiNames"), "a-co-b:c");
    EXPECT_THAT(recommend.GetHbaWwnsOrIscsiNames(), ElementsAre("a:b", "c"));
}

TEST(CatalogueAccess, StoresTheDescriptionOfAnEnumerationsRow) {
    APITsDisk disk;
    disk.SetIoPortType(8);
    EXPECT_EQ(disk.GetIoPortType(), "Sas");
    disk.SetIoPortType(3);  // an id between two rows
    EXPECT_TRUE(disk.HasAttribute("IoPortType"));
    EXPECT_EQ(disk.GetIoPortType(), "");
    disk.SetUnassignedReason(0);
    EXPECT_EQ(disk.GetUnassignedReason(), "Unknown");

    APITsController::APITsControllerModifyMethod modify;
    modify.SetConfigureVia(2);
    EXPECT_EQ(modify.GetConfigureVia(), "DHCP");

    // Without a table the description itself is given.
    APIHistoricalFilter filter;
    filter.SetFilterTime("LastDay");
    EXPECT_EQ(filter.GetAttribute("FilterTime"), "LastDay");
}

TEST(CatalogueAccess, KeepsValuesOfOtherKindsAsTexts) {
    APITsController controller;
    controller.SetVersion(VERSIONValue::FromText("07.01.02.003"));
    EXPECT_EQ(controller.GetAttribute("Version"), "07.01.02.003");
    EXPECT_EQ(controller.GetVersion().ToText(), "07.01.02.003");
    controller.SetIpAddress("10.1.2");
    EXPECT_EQ(controller.GetIpAddress(), "0.0.0.0");
    controller.SetIPv6Gateway("fe80::1/64");
    EXPECT_EQ(controller.GetAttribute("IPv6Gateway"), "fe80::1");
    controller.SetLastBootTime(DATETIMEValue(1477875723));
    EXPECT_EQ(controller.GetLastBootTime().GetSeconds(), 1477875723u);

    APITsVolume volume;
    SIZEValue size;
    size.count = 2048;
    volume.SetConfiguredSize(size);
    EXPECT_EQ(volume.GetConfiguredSize().count, 2048u);

    APITsControllerTemperatureSensor sensor;
    const TEMPERATUREValue warm = TEMPERATUREValue::FromText("40");
    sensor.SetCurrentTemperature(warm);
    EXPECT_EQ(sensor.GetCurrentTemperature().ToText(), warm.ToText());
}

TEST(CatalogueAccess, KeepsReferencesAsTexts) {
    APITsAlert alert;
    EXPECT_EQ(alert.GetController(), nullptr);
    const APIObjectInstance top("64702.1", "TsController", "Top Controller");
    alert.SetController(&top);
    EXPECT_EQ(alert.GetAttribute("Controller"), "64702.1 TsController Top Controller");
    ASSERT_NE(alert.GetController(), nullptr);
    EXPECT_EQ(alert.GetController()->instanceName, "Top Controller");
    alert.SetController(nullptr);
    EXPECT_EQ(alert.GetAttribute("Controller"), "");

    APITsControllerCacheCard card;
    const APIObjectInstance odd("1", "Port", "a:b");
    card.SetPortList({&top, nullptr, &odd});
    EXPECT_EQ(card.GetAttribute("PortList"), "64702.1 TsController Top Controller:1 Port a-co-b");
    ASSERT_EQ(card.GetPortList().size(), 2u);
    EXPECT_EQ(card.GetPortList()[1]->instanceName, "a:b");
}

TEST(CatalogueAccess, CarriesStructuredArgumentsAsElements) {
    APIHistoricalFilter filter;
    filter.SetMaxCountReturn(5);
    filter.SetUseCurrent(true);
    APITsDisk::APITsDiskGetHistoricalIoUsageMethod history;
    history.SetInstanceId("64702.17");
    history.SetHistoricalFilter(&filter);
    EXPECT_EQ(
        history.GenerateXml(false, true),
        "<ApiMethod><CommandType>Method</CommandType><Object>TsDisk</Object>"
        "<Command>GetHistoricalIoUsage</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>"
        "<Attributes><HistoricalFilter><HistoricalFilter><MaxCountReturn>5</MaxCountReturn>"
        "<UseCurrent>True</UseCurrent></HistoricalFilter></HistoricalFilter>"
        "<InstanceId>64702.17</InstanceId></Attributes></ApiMethod>");
    EXPECT_EQ(history.GetHistoricalFilter().GetMaxCountReturn(), 5);
    EXPECT_TRUE(history.GetHistoricalFilter().GetUseCurrent());
    history.SetHistoricalFilter(nullptr);
    EXPECT_EQ(history.GetAttribute("HistoricalFilter"), "");
    EXPECT_FALSE(history.GetHistoricalFilter().HasAttribute("UseCurrent"));

    APITsIscsiConnectionNatInfo first, second;
    first.SetIpAddress("10.0.0.1");
    second.SetIScsiName("iqn.1 & 2");
    APITessera::APITesseraAddIScsiTesseraConnectionsMethod connect;
    EXPECT_THAT(connect.GetNatInfo(), IsEmpty());
    connect.SetNatInfo({&first, nullptr, &second});
    ASSERT_EQ(connect.GetNatInfo().size(), 2u);
    EXPECT_EQ(connect.GetNatInfo()[0].GetIpAddress(), "10.0.0.1");
    EXPECT_EQ(connect.GetNatInfo()[1].GetIScsiName(), "iqn.1 & 2");
    connect.SetAttribute("NatInfo", "<TsUps/><TsIscsiConnectionNatInfo/>");
    EXPECT_EQ(connect.GetNatInfo().size(), 1u);
    connect.SetAttribute("NatInfo", "<TsIscsiConnectionNatInfo>");
    EXPECT_THAT(connect.GetNatInfo(), IsEmpty());
}

TEST(CatalogueAccess, ListsCarryTheirFilter) {
    APITsDisk::APITsDiskGetListMethod list;
    FILTERList filter;
    filter.joinType = filter_join::kAnd;
    filter.Add("Name", 2, "01-02");
    list.SetFilter(&filter);
    EXPECT_THAT(list.GenerateXml(false, true),
                HasSubstr("<Attributes><Filter>and Name = 01&hy&02-</Filter></Attributes>"));
    const std::unique_ptr<FILTERList> read(list.GetFilter());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->items.at(0).name, "Name");
}

TEST(CatalogueAccess, AssociationsNameTheirRelation) {
    APITsController::APITsControllerFanSensorListAssociation fans("64702.1");
    EXPECT_EQ(fans.GenerateXml(false, true),
              "<ApiMethod><CommandType>Association</CommandType><Object>TsController</Object>"
              "<Command>FanSensorList</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>"
              "<Attributes><InstanceId>64702.1</InstanceId></Attributes></ApiMethod>");
    EXPECT_FALSE(fans.ChangesState());

    const APITsDisk::APITsDiskDiskEndurancelHistoryListAssociation empty;
    try {
        empty.CheckRequiredAttributes();
        FAIL();
    } catch (const APIMethodError& error) {
        EXPECT_EQ(error.GetSummary(),
                  "InstanceID not specified for association [TsDisk::DiskEndurancelHistoryList]");
    }
    const std::map<std::string, std::string> attributes = {{"InstanceId", "1"}};
    const APITessera::APITesseraVolumeListAssociation from_map(attributes);
    EXPECT_EQ(from_map.GetInstanceId(), "1");
}

TEST(CatalogueAccess, KnowsWhichCallsChangeTheArray) {
    const APITsDisk disk;
    EXPECT_TRUE(disk.IsMethodChangingState("TsDisk", "ReleaseDisk"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "Get"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "NoSuchCommand"));
    EXPECT_TRUE(disk.IsMethodChangingState("Tessera", "GetLatestIoUsage"));
    // Associations stand in no factory.
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "Enclosure"));
}

}  // namespace
