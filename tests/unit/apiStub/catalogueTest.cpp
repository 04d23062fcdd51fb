#include <gmock/gmock.h>
#include <unistd.h>

#include <map>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

using Objects = APIObjectFactory<BASEApiObject>;
using Methods = APIObjectFactory<BASEApiMethod>;
using MethodObjects = APIObjectFactory<BASEApiMethodObject>;

std::string NamesOf(const ATTRIBUTEList& list) {
    std::string names;
    for (const BASEApiAttribute* attribute : list)
        names += (names.empty() ? "" : " ") + attribute->GetXmlName();
    return names;
}

// Begins before everything that a first use makes, and so ends after it.
struct LastReader {
    ~LastReader() {
        if (!expected.empty() && NamesOf(APITsController::Attributes()) != expected)
            _exit(1);
    }
    std::string expected;
} last_reader;

template <class Kind>
bool Is(const BASEApiAttribute& attribute) {
    return typeid(attribute) == typeid(Kind);
}

#define KIND(name) \
    { #name, Is < name##ApiAttribute> }

std::string KindOf(const BASEApiAttribute& attribute) {
    static const std::map<std::string, bool (*)(const BASEApiAttribute&)> kinds = {
        KIND(BOOLEAN),    KIND(INT),         KIND(DOUBLE),       KIND(INTARRAY),          KIND(STRING),
        KIND(NAME),       KIND(STRINGARRAY), KIND(ENUM),         KIND(ENUMMASK),          KIND(INSTANCEID),
        KIND(OBJECT),     KIND(OBJECTARRAY), KIND(METHODOBJECT), KIND(METHODOBJECTARRAY), KIND(GETLISTFILTER),
        KIND(DATETIME),   KIND(SIZE),        KIND(TEMPERATURE),  KIND(VERSION),           KIND(IPV4ADDRESS),
        KIND(IPV6ADDRESS)};
    for (const auto& [name, is] : kinds) {
        if (is(attribute))
            return name;
    }
    return "?";
}

#undef KIND

template <class Properties>
std::string Bounds(const BASEApiAttribute::BASEAttributeProperties& properties) {
    const auto* bounded = dynamic_cast<const Properties*>(&properties);
    if (bounded == nullptr)
        return "";
    return " " + std::to_string(bounded->minValue) + ".." + std::to_string(bounded->maxValue);
}

/** Kind, width, mark, rules and label in one line. */
std::string Describe(const BASEApiAttribute& attribute) {
    const auto& properties = attribute.GetProperties();
    std::string text = KindOf(attribute) + " " + std::to_string(properties.displayWidth);
    if (properties.firstFlag)
        text += " first";
    if (properties.secondFlag)
        text += " second";
    text += Bounds<INTApiAttribute::INTAttributeProperties>(properties) +
            Bounds<DOUBLEApiAttribute::DOUBLEAttributeProperties>(properties) +
            Bounds<INTARRAYApiAttribute::INTARRAYAttributeProperties>(properties);
    const auto* lengths = dynamic_cast<const STRINGApiAttribute::STRINGAttributeProperties*>(&properties);
    if (lengths != nullptr)
        text += " " + std::to_string(lengths->minLength) + ".." + std::to_string(lengths->maxLength) + " [" +
                lengths->invalidChars + lengths->pattern + "]";
    return text + " " + properties.label;
}

/** The arguments that a call asks for, one after the other, until it is content. */
std::vector<std::string> AskedFor(BASEApiMethod& method) {
    const std::string begin = "Required attribute ", end = " not set";
    std::vector<std::string> names;
    for (;;) {
        try {
            method.CheckRequiredAttributes();
            return names;
        } catch (const APIMethodError& error) {
            const std::string& text = error.GetSummary();
            names.push_back(text.substr(begin.size(), text.size() - begin.size() - end.size()));
            EXPECT_EQ(error.GetSourceFile(),
                      "apiMgmt/apiStub/apiSdk/objects/tessera/src/api" + method.GetObjectName());
            if (names.size() > 10)
                return names;
            method.SetAttribute(names.back(), "");
        }
    }
}

TEST(Catalogue, FactoriesMakeEveryObjectWithItsOwnAndInheritedAttributes) {
    for (const auto& [key, create] : Objects::Instance().GetCreators()) {
        const std::unique_ptr<BASEApiObject> object(create());
        EXPECT_EQ(object->GetObjectName(), key);
        EXPECT_EQ(object->GetObjectType(), key);
        object->InitMetaData();
        if (key == "ApiMethodReturn")
            continue;
        const auto* with_status = dynamic_cast<const TSStatusBaseApiObject*>(object.get());
        EXPECT_EQ(object->GetAttribute("Status"), with_status ? "Up" : "") << key;
        const std::string inherited =
            NamesOf(with_status ? TSStatusBaseApiObject::Attributes() : TSBaseApiObject::Attributes());
        EXPECT_THAT(NamesOf(object->GetAttributeList()), testing::EndsWith(" " + inherited)) << key;
    }
    EXPECT_GT(Objects::Instance().GetCreators().size(), 20u);
}

TEST(Catalogue, FactoriesMakeEveryMethodUnderItsKey) {
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
    EXPECT_GT(Methods::Instance().GetCreators().size(), 100u);
}

TEST(Catalogue, FactoriesMakeEveryMethodObject) {
    EXPECT_GT(MethodObjects::Instance().GetCreators().size(), 5u);
    for (const auto& [name, create] : MethodObjects::Instance().GetCreators()) {
        const std::unique_ptr<BASEApiMethodObject> made(create());
        EXPECT_EQ(made->GetObjectName(), name);
        EXPECT_FALSE(made->GetAttributeList().empty()) << name;
    }
}

TEST(Catalogue, ListsKeepTheOrderOfTheData) {
    EXPECT_EQ(
        NamesOf(Objects::Instance().Create("TsControllerTemperatureSensor")->GetAttributeList()),
        "ControllerIndex CurrentTemperature Index CriticalLowerThreshold NormalMinimum WarningLowerThreshold "
        "Name Present CriticalUpperThreshold NormalMaximum WarningUpperThreshold Status ChildStatus "
        "StatusMessage TsName TsSerialNumber InstanceId InstanceName ObjectType");
    EXPECT_EQ(NamesOf(Objects::Instance().Create("TsDiskFolderStorageUsage")->GetAttributeList()),
              "AllocatedSpace FreeSpace Index SpareSpace Time TotalSpace UsedSpace TsName TsSerialNumber "
              "InstanceId InstanceName ObjectType");
}

TEST(Catalogue, DescriptorsCarryKindWidthRulesAndLabel) {
    const struct {
        const char* object;
        const char* attribute;
        const char* description;
    } rows[] = {
        {"TsController", "IPv6Eth0IPPrefix", "INT 21 0..128 IPv6 Address Prefix"},
        {"TsController", "ControllerSequenceNumber", "INT 24 1..-1 Controller Sequence Number"},
        {"TsController", "DateCreated", "STRING 20 first -1..-1 [] Date Installed"},
        {"TsController", "DateUpdated", "STRING 20 first -1..-1 [] Date Updated"},
        {"TsController", "DnsServer", "STRING 20 1..-1 [<>&] DNS Server"},
        {"TsController", "DomainName", "STRING 20 -1..-1 [<>&] Domain Name"},
        {"TsController", "Name", "STRING 20 1..64 [<>&] Name"},
        {"TsController", "Notes", "STRING 20 -1..768 [<>&] Notes"},
        {"TsController", "Version", "VERSION 16 Version"},
        {"TsController", "IPv6Gateway", "IPV6ADDRESS 45 IPv6 Gateway"},
        {"TsController", "ConfigureVia", "ENUM 20 Configure via"},
        {"TsControllerCacheCard", "PortList", "OBJECTARRAY 20 Port Link Status"},
        {"TsControllerVoltageSensor", "CurrentVoltage", "DOUBLE 20 -1..-1 Current Voltage"},
        {"TsDisk", "Endurance", "INT 20 0..100 Endurance"},
        {"TsDisk", "HealthMask", "ENUMMASK 20 Health Mask"},
        {"TsDisk", "DiskFolder", "OBJECT 20 Disk Folder"},
        {"TsObjectCount", "NumberOfDevicesInUse", "INT 20 -1..-1 # Replications/Twin Volumes"},
        {"TsUps", "IpAddress", "IPV4ADDRESS 20 IP Address"},
        {"Tessera", "PeerControllerConfigurationRequired",
         "BOOLEAN 35 Peer Controller Configuration Required"},
        {"Tessera", "TsSerialNumber", "INT 25 -1..-1 Tessera SN"},
        {"TsVolume", "ConfiguredSize", "SIZE 20 Configured Size"},
        {"TsAlert", "CreateTime", "DATETIME 26 Create Time"},
    };
    for (const auto& row : rows) {
        const auto object = Objects::Instance().Create(row.object);
        const BASEApiAttribute* attribute = FindAttributeIn(object->GetAttributeList(), row.attribute);
        ASSERT_NE(attribute, nullptr) << row.object << "." << row.attribute;
        EXPECT_EQ(Describe(*attribute), row.description) << row.object << "." << row.attribute;
    }
    const auto mapping = MethodObjects::Instance().Create("TsAdvancedMapping");
    EXPECT_EQ(Describe(*FindAttributeIn(mapping->GetAttributeList(), "PreferredLun")),
              "INT 20 1..4095 Preferred Lun");
    EXPECT_EQ(Describe(*FindAttributeIn(mapping->GetAttributeList(), "HostCachePolicy")),
              "ENUM 20 Host Cache Policy");
}

TEST(Catalogue, MethodsSayWhatTheyDoAndNeed) {
    const struct {
        const char* key;
        bool changes;
        int privilege;
        std::vector<std::string> asked_for;  ///< filters are not asked for
        const char* descriptors;
    } rows[] = {
        {"APITsControllerGetListMethod", false, 3, {}, "Filter"},
        {"APITsControllerGetHistoricalIoUsageMethod", false, 3, {"InstanceId"}, "HistoricalFilter"},
        {"APITsControllerModifyMethod",
         true,
         2,
         {"InstanceId"},
         "BmcGateway BmcIpAddress BmcNetmask ConfigureVia DnsServer DomainName IPv6Eth0IP IPv6Eth0IPPrefix "
         "IPv6Gateway IPv6GatewayPrefix IndicatorOn IpAddress IpGateway IpNetMask Name Notes "
         "SecondaryDnsServer"},
        {"APITsUpsCreateMethod",
         true,
         1,
         {"CommunityString", "IpAddress", "Tessera", "Type"},
         "CommunityString IpAddress Tessera Type"},
        {"APITsDiskFolderCreateStorageTypeMethod",
         true,
         1,
         {"InstanceId", "RedundancyLevel"},
         "RedundancyLevel DatapageSize Tier1Redundancy Tier2Redundancy Tier3Redundancy"},
        {"APITsDiskFolderStorageUsageGetFilterMethod",
         false,
         3,
         {"ObjectInstanceId"},
         "HistoricalFilter ObjectInstanceId"},
        {"APITsVolumeDeleteManyMethod",
         true,
         3,
         {"TsSerialNumber", "VolumeIndexes"},
         "TsSerialNumber VolumeIndexes"},
        {"APITsVolumeSetScsiVpdMethod",
         true,
         3,
         {"InstanceId", "ScsiVpdDeviceId", "ScsiVpdSystemId"},
         "ScsiVpdDeviceId ScsiVpdSystemId"},
        {"APITesseraGetHistoricalObjectCountMethod", true, 3, {"InstanceId"}, "HistoricalFilter"},
        {"APITesseraModifyMethod",
         true,
         1,
         {"InstanceId"},
         "Folder Location LoginBannerMessage ManagementIp IPv6ManagementIP Name Notes OperationMode"},
        {"APITesseraRestartMethod", true, 1, {"InstanceId"}, "Simultaneous"},
        {"APITesseraFactoryResetMethod",
         true,
         1,
         {"InstanceId", "FactoryResetToken", "TsAdminUserPassword", "TsAdminUsername"},
         "FactoryResetToken TsAdminUserPassword TsAdminUsername Restart"},
    };
    for (const auto& row : rows) {
        const auto method = Methods::Instance().Create(row.key);
        ASSERT_NE(method, nullptr) << row.key;
        EXPECT_EQ(method->ChangesState(), row.changes) << row.key;
        EXPECT_EQ(method->GetRequiredPrivilege(), row.privilege) << row.key;
        EXPECT_EQ(NamesOf(method->GetAttributeList()), row.descriptors) << row.key;
        EXPECT_EQ(AskedFor(*method), row.asked_for) << row.key;
    }
}

TEST(Catalogue, ArgumentsHaveTheRulesOfTheirOwnCommand) {
    const struct {
        const char* key;
        const char* attribute;
        const char* description;
    } rows[] = {
        // Of a name that the object has as well, with another rule.
        {"APITesseraAddMethod", "UserName", "STRING 20 1..-1 [] User Name"},
        {"APITesseraReconnectMethod", "UserName", "STRING 20 -1..-1 [] User Name"},
        {"APITsVolumeDeleteManyMethod", "TsSerialNumber", "INT 25 0..-1 Tessera SN"},
        {"APITsVolumeRecycleManyMethod", "VolumeIndexes", "INTARRAY 20 1..-1 Volume Indexes"},
        {"APITsVolumeAllocationMapMethod", "CheckUnitBlockCount", "INT 20 512..-1 Check Unit Block Count"},
        {"APITsVolumeCreateBootFromSanCopyMethod", "Notes", "STRING 20 -1..-1 [] Notes"},
        {"APITsVolumeModifyMethod", "Name", "STRING 30 1..64 [<>&] Name"},
        {"APITsVolumeMapToServerMethod", "Advanced", "METHODOBJECT 20 Advanced"},
        {"APITesseraAddIScsiTesseraConnectionsMethod", "NatInfo", "METHODOBJECTARRAY 20 Nat Info"},
        {"APITesseraRecommendMethod", "HbaWwnsOrIscsiNames", "STRINGARRAY 20 Hba Wwns Or Iscsi Names"},
        {"APITsUpsGetListMethod", "Filter", "GETLISTFILTER 20 Filter"},
    };
    for (const auto& row : rows) {
        const BASEApiAttribute* attribute = Methods::Instance().Create(row.key)->FindAttribute(row.attribute);
        ASSERT_NE(attribute, nullptr) << row.key;
        EXPECT_EQ(Describe(*attribute), row.description) << row.key;
    }
}

TEST(Catalogue, RelationsAreFoundByName) {
    for (const ASSOCIATIONEntry& entry : GetAssociations()) {
        const auto association = CreateAssociation(entry.object, entry.relation);
        ASSERT_NE(association, nullptr) << entry.object << " " << entry.relation;
        EXPECT_EQ(association->GetObjectName(), entry.object);
        EXPECT_EQ(association->GetCommandName(), entry.relation);
    }
    EXPECT_GT(GetAssociations().size(), 100u);
    EXPECT_EQ(CreateAssociation("TsDisk", "enclosure"), nullptr);
    EXPECT_EQ(CreateAssociation("TsVolume", "Enclosure"), nullptr);
    EXPECT_EQ(CreateAssociation("TsDisk", "Get"), nullptr);
}

TEST(Catalogue, EnumerationsKnowTheirTables) {
    const auto table_of = [](const char* object, const char* name) {
        const BASEApiAttribute* attribute =
            FindAttributeIn(Objects::Instance().Create(object)->GetAttributeList(), name);
        return dynamic_cast<const ENUMTABLEApiAttribute&>(*attribute).GetTable();
    };
    EXPECT_EQ(table_of("TsDisk", "HealthMask").size(), 13u);
    EXPECT_EQ(table_of("TsDisk", "ChildStatus").DescriptionOf(3), "Degraded");
    EXPECT_EQ(table_of("TsAlert", "Category").DescriptionOf(5), "Hardware");
    const auto mapping = MethodObjects::Instance().Create("TsAdvancedMapping");
    const BASEApiAttribute* any_word = FindAttributeIn(mapping->GetAttributeList(), "HostCachePolicy");
    EXPECT_EQ(dynamic_cast<const ENUMApiAttribute&>(*any_word).GetTable().size(), 0u);
}

TEST(Catalogue, ValidatesACallByTheRulesOfItsClass) {
    APITsController::APITsControllerModifyMethod method;
    method.SetInstanceId("64702.1");
    method.SetName(std::string(64, 'n'));
    method.SetIPv6GatewayPrefix(128);
    EXPECT_NO_THROW(method.ValidateAttributes());
    method.SetIPv6GatewayPrefix(129);
    EXPECT_THROW(method.ValidateAttributes(), APIMethodError);
    method.SetIPv6GatewayPrefix(0);
    method.SetName(std::string(65, 'n'));
    EXPECT_THROW(method.ValidateAttributes(), APIMethodError);
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
