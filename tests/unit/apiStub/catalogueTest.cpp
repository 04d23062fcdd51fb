#include <gmock/gmock.h>
#include <unistd.h>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiMethodObjects.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTessera.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

namespace {

using Objects = APIObjectFactory<BASEApiObject>;
using Methods = APIObjectFactory<BASEApiMethod>;
using MethodObjects = APIObjectFactory<BASEApiMethodObject>;
using testing::IsEmpty;

std::string NamesOf(const ATTRIBUTEList& list) {
    std::string names;
    for (const BASEApiAttribute* attribute : list)
        names += (names.empty() ? "" : " ") + attribute->GetXmlName();
    return names;
}

// Constructed before everything that is created on first use, so it is destroyed after that.
struct LastReader {
    ~LastReader() {
        if (!expected.empty() && NamesOf(APITsController::Attributes()) != expected)
            _exit(1);
    }
    std::string expected;
} last_reader;

TEST(Catalogue, FactoriesMakeEachClassUnderItsOwnName) {
    for (const auto& [key, create] : Objects::Instance().GetCreators()) {
        const std::unique_ptr<BASEApiObject> object(create());
        EXPECT_EQ(object->GetObjectName(), key);
        EXPECT_EQ(object->GetObjectType(), key);
        if (key == "ApiMethodReturn")
            continue;
        const auto* with_status = dynamic_cast<const TSStatusBaseApiObject*>(object.get());
        EXPECT_EQ(object->GetAttribute("Status"), with_status ? "Up" : "") << key;
        const std::string inherited =
            NamesOf(with_status ? TSStatusBaseApiObject::Attributes() : TSBaseApiObject::Attributes());
        EXPECT_THAT(NamesOf(object->GetAttributeList()), testing::EndsWith(" " + inherited)) << key;
    }
    for (const auto& [key, create] : Methods::Instance().GetCreators()) {
        const std::unique_ptr<BASEApiMethod> method(create());
        EXPECT_EQ("API" + method->GetObjectName() + method->GetCommandName() + "Method", key);
        const bool is_list = method->GetCommandName() == "GetList";
        EXPECT_EQ(dynamic_cast<const GETLISTApiMethod*>(method.get()) != nullptr, is_list) << key;
        if (is_list || method->GetCommandName() == "Get") {
            EXPECT_FALSE(method->ChangesState()) << key;
            EXPECT_EQ(method->GetRequiredPrivilege(), USER_PRIVILEGE_REPORTER) << key;
        }
    }
    for (const auto& [key, create] : MethodObjects::Instance().GetCreators())
        EXPECT_EQ(std::unique_ptr<BASEApiMethodObject>(create())->GetObjectName(), key);
    for (const ASSOCIATIONEntry& entry : GetAssociations()) {
        const auto association = CreateAssociation(entry.object, entry.relation);
        ASSERT_NE(association, nullptr) << entry.object << " " << entry.relation;
        EXPECT_EQ(association->GetObjectName(), entry.object);
        EXPECT_EQ(association->GetCommandName(), entry.relation);
    }
    EXPECT_EQ(CreateAssociation("TsDisk", "enclosure"), nullptr);
    EXPECT_EQ(CreateAssociation("TsVolume", "Enclosure"), nullptr);
}

TEST(Catalogue, StoresTheDescriptionOfAnEnumerationsRow) {
    APITsDisk disk;
    disk.SetIoPortType(8);
    EXPECT_EQ(disk.GetIoPortType(), "Sas");
    disk.SetIoPortType(3);  // an ID between two rows
    EXPECT_TRUE(disk.HasAttribute("IoPortType"));
    EXPECT_EQ(disk.GetIoPortType(), "");
    disk.SetUnassignedReason(0);
    EXPECT_EQ(disk.GetUnassignedReason(), "Unknown");

    APITsController::APITsControllerModifyMethod modify;
    modify.SetConfigureVia(2);
    EXPECT_EQ(modify.GetConfigureVia(), "DHCP");

    // Without a table, the description itself is returned.
    APIHistoricalFilter filter;
    filter.SetFilterTime("LastDay");
    EXPECT_EQ(filter.GetAttribute("FilterTime"), "LastDay");
}

TEST(Catalogue, CarriesStructuredArgumentsAsElements) {
    APIHistoricalFilter filter;
    filter.SetMaxCountReturn(5);
    filter.SetUseCurrent(true);
    APITsDisk::APITsDiskGetHistoricalIoUsageMethod history;
    history.SetHistoricalFilter(&filter);
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

TEST(Catalogue, KnowsWhichCallsChangeTheArray) {
    const APITsDisk disk;
    EXPECT_TRUE(disk.IsMethodChangingState("TsDisk", "ReleaseDisk"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "Get"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "NoSuchCommand"));
    EXPECT_TRUE(disk.IsMethodChangingState("Tessera", "GetLatestIoUsage"));
    // The factories do not contain associations.
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "Enclosure"));
}

TEST(Catalogue, IsThereUntilTheProcessHasEnded) {
    EXPECT_EXIT(
        {
            last_reader.expected = NamesOf(APITsController::Attributes());
            exit(0);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
