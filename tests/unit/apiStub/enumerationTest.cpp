#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

using E = APIEnumsIDStrList;

// Names and row counts as clients of the API know them, kept apart from the data.
constexpr const char* kRowCounts = R"(
AlertCategory 7  AlertStatus 9  AlertType 2  AsyncTaskState 7  CacheCardBatteryStatus 5  CacheCardModel 7
ChargebackAssignCostBy 2  ChargebackCostType 4  ChargebackRunSchedule 4  CmmPriority 3  CmmState 5
CmmType 3  Connectivity 3  ControllerPortNetwork 3  ControllerPortPurpose 7  ControllerPortUsage 4
CriticalTone 2  DataPageSize 4  TierDriftRunTime 9  TierDriftTier 3  DayOfWeek 7  DefaultView 7
DiskControlType 3  DiskFolderType 4  DiskHealth 13  DiskReportType 4  DiskTier 3  DiskTrack 2
DualRedundantProfile 9  FleetDatabaseType 3  FleetEventSeverity 4  FleetEventType 15  EmailFormat 2
EnclosureType 7  ErrorState 39  ExportReportFileType 6  FanSpeed 5  FilterTime 4  FrontEndTransportType 4
HistoricalFilterRange 4  HourOfDay 24  IoReportType 3  IpmiAlertType 11  IpmiHardwareType 5
IpmiPowerState 2  IscsiConnectionTimeout 38  IscsiConnectionWindowSize 128  IscsiNetworkType 4
TwinVolumePeerState 3  TwinVolumeSwapRoleState 3  Locale 20  LogLevel 8  MappedVia 2  MonthOfYear 12
Mpio 3  Muted 2  NonRedundantProfile 3  ObjectReturnEncode 2  SignalBackFrequency 3
CarryVolumeDiskEraseType 3  CarryVolumeDiskManagementType 3  CarryVolumeDiskState 4  CarryVolumeNodeType 5
CarryVolumeOperation 1  CarryVolumePriority 4  CarryVolumePurpose 2  CarryVolumeFreezepointState 7
CarryVolumeState 12  Provider 2  QosBandwidthLimit 14  Raid5StripeWidth 2  Raid6StripeWidth 2  RaidLevel 7
RaidRebalanceAction 5  RaidRebalanceState 4  Redundancy 3  RedundantProfile 9  FreezepointProfileType 3
FreezepointSource 9  ReplicationRestorePointState 15  ReplicationState 7  ReplicationType 4
ReportFrequency 3  ReportGatheringFrequency 5  RestorePointFrequency 4  SaServerType 3
SaVmWareDatastoreMaxFileSize 4  SaWindowsVolumeAllocationSize 9  SaWindowsVolumeFormatType 2
TsObjectType 10  ScheduleType 4  ServerReportType 2  ServerType 5  ServiceType 3  SnmpTrapType 3
SpaceRecoverySchedule 3  SshFailedState 3  SshProxyType 3  SshRunningState 3  SshStatus 3
SshTerminalState 3  Status 3  TesseraOperationMode 4  TesseraTransportMode 2  StorageProfileRaidType 3
StorageTypeStatus 3  StorageUnitsFormatting 4  StorageUsageReportFrequency 4  SysLogFacility 18
ThresholdAlertDefinitionObjectLinkLevel 4  ThresholdAlertDefinitionType 18  ThresholdAlertLevel 4
ThresholdAlertObjectType 12  ThresholdAlertType 3  TimeZone 602  TimeZoneRegion 19  TransportType 6
UpsStatus 10  UpsType 2  UserPrivilege 3  UserSecurityMode 2  VirtualMachinePowerState 4
VirtualServerMapping 3  VolumeReportType 3  WeekOfMonth 5  DrTaskType 3  AutomatedReportType 4
AutomatedSubReportType 20  SrmSelectableFreezepoint 4  DataCollectorType 2  DrReplicationTaskState 13
ThresholdAlertQueryStartTimeType 4  ChartAlertObjectType 5  ChartType 3  ManagementApplication 4
TesseraControllerModel 15  SyncReplicationMode 3  SyncReplicationDataStatus 3  TaRecommendReason 4
DirectoryServiceType 2  DirectoryServiceStatus 6  DirectoryServiceProtocol 2  UserTypeFilter 5
IpAddressFilter 3  LocalPortCondition 3  AutomatedReportFrequency 4  AutomatedReportVisualType 2
AutomatedReportSubject 2  AutomatedReportObjectType 13  SessionTimeout 10  DiskBypass 3
BmcIpAddressSource 3  PrepareToDeleteState 3  SignalBackInformation 1  SoftwareUpdateMode 4
IscsiConnectionTiming 25  IscsiMtu 14  TsInitialConfigurationTasks 13  ControllerPortCardModel 39
DiskEraseCapability 5  SecureDataState 4  TsSecureDataKeyManagementProtocol 2  EnclosureModel 15
CareBridgeFrequency 3  CareBridgeInformation 1  LanguageLocale 6  IoPortSide 2  ExternalDeviceImportType 2
CareBridgeLanguage 28  UpdateStatus 10  InstallServiceImpact 2  UpdatableComponentStatus 5  WizardStyle 3
CareBridgeContactMethod 5  CareBridgeCountry 251  FleetDiscoveredTsInitialConfigStepStatus 6
UtcTimeZone 40  MappingOperationalState 6  AuthenticationMethod 2  ControllerPortOptionType 4
FruTicketStatus 4  TesseraSeries 4  DiskUnassignedReason 9  FleetDiscoveredTesseraStatus 5
TsPeerControllerConfigurationTask 2  RemotePortConnectionRole 3  TsFailoverState 5
FleetDiscoveredTsInitialConfigStatus 4  TsTwinVolumeRole 3  RemoteIscsiConnectionStatus 3
CareBridgeDataSentStatus 5  BackgroundProcessState 10  EnclosureProduct 19
)";

std::map<std::string, size_t> RowCounts() {
    std::map<std::string, size_t> counts;
    std::istringstream text(kRowCounts);
    std::string name;
    for (size_t count = 0; text >> name >> count;) {
        counts[name] = count;
    }
    return counts;
}

const ENUMTable* Find(std::string_view name) {
    const auto* found = std::ranges::find(E::gAllEnumTables, name, &ENUMNamedTable::name);
    return found == std::end(E::gAllEnumTables) ? nullptr : &found->rows;
}

bool DoublesUpTo(const ENUMTable& table, int32_t last) {
    int32_t expected = table.begin()->Value;
    for (const ENUMRow& row : table) {
        if (row.Value > last) {
            break;
        }
        if (row.Value != expected) {
            return false;
        }
        expected *= 2;
    }
    return true;
}

TEST(Enumerations, AreAllThereWithAllTheirRows) {
    const std::map<std::string, size_t> counts = RowCounts();
    size_t rows = 0;
    for (const ENUMNamedTable& table : E::gAllEnumTables) {
        const auto expected = counts.find(std::string(table.name));
        ASSERT_NE(expected, counts.end()) << table.name;
        EXPECT_EQ(table.rows.size(), expected->second) << table.name;
        rows += table.rows.size();
    }
    EXPECT_EQ(counts.size(), 193U);
    EXPECT_EQ(std::size(E::gAllEnumTables), counts.size());
    EXPECT_EQ(rows, 2179U);
}

TEST(Enumerations, MasksCountInPowersOfTwo) {
    constexpr std::string_view kMasks[] = {
        "DayOfWeek",
        "MonthOfYear",
        "HourOfDay",
        "WeekOfMonth",
        "RedundantProfile",
        "NonRedundantProfile",
        "DiskReportType",
        "IoReportType",
        "VolumeReportType",
        "DualRedundantProfile",
        "ReportFrequency",
        "TaRecommendReason",
        "ChartType",
        "UpsStatus",
        "ChartAlertObjectType",
        "FrontEndTransportType",
    };
    for (const std::string_view name : kMasks) {
        ASSERT_NE(Find(name), nullptr) << name;
        EXPECT_EQ(Find(name)->begin()->Value, 1) << name;
        EXPECT_TRUE(DoublesUpTo(*Find(name), INT32_MAX)) << name;
    }
    EXPECT_EQ(ENUMTable(E::gDayOfWeekEnumIdStrList).FindDescription("Wednesday")->Value, 8);
    EXPECT_EQ(ENUMTable(E::gHourOfDayEnumIdStrList).FindDescription("Hour_23")->Value, 1 << 23);
}

std::vector<int32_t> ValuesAbove(const ENUMTable& table, int32_t value) {
    std::vector<int32_t> values;
    for (const ENUMRow& row : table) {
        if (row.Value > value) {
            values.push_back(row.Value);
        }
    }
    return values;
}

TEST(Enumerations, MasksThatGoOnByOne) {
    const ENUMTable tasks(E::gTsInitialConfigurationTasksEnumIdStrList);
    EXPECT_EQ(tasks.begin()->Value, 2);
    EXPECT_TRUE(DoublesUpTo(tasks, 512));
    EXPECT_THAT(ValuesAbove(tasks, 512), testing::ElementsAre(513, 514, 515, 516));

    const ENUMTable health(E::gDiskHealthEnumIdStrList);
    EXPECT_TRUE(DoublesUpTo(health, 1024));
    EXPECT_THAT(ValuesAbove(health, 1024), testing::ElementsAre(1025, 1026));

    const ENUMTable transport(E::gTransportTypeEnumIdStrList);
    EXPECT_TRUE(DoublesUpTo(transport, 8));
    EXPECT_THAT(ValuesAbove(transport, 8), testing::ElementsAre(9, 10));
}

// All other tables count by one, from 1 or 0; these leave ids out.
TEST(Enumerations, IdsThatNoRowHas) {
    const std::map<std::string_view, std::vector<int32_t>> kMissing = {
        {"ErrorState", {16, 19, 20, 21, 32, 33, 36}},
        {"FleetEventType", {14, 16, 17, 18}},
        {"UpdateStatus", {2, 6}},
        {"DiskUnassignedReason", {2}},
        {"ManagementApplication", {3}},
    };
    for (const auto& [name, ids] : kMissing) {
        const ENUMTable& table = *Find(name);
        for (int32_t id = table.begin()->Value; id < (table.end() - 1)->Value; ++id) {
            const bool is_missing = std::ranges::find(ids, id) != ids.end();
            EXPECT_EQ(table.FindValue(id) == nullptr, is_missing) << name << " " << id;
        }
    }
}

TEST(Enumerations, WindowSizesGoBy16KilobytesExcept128) {
    const ENUMTable table(E::gIscsiConnectionWindowSizeEnumIdStrList);
    for (int32_t id = 1; id <= 127; ++id) {
        const std::string size = std::to_string(id <= 7 ? 16 * id : 16 * (id + 1));
        EXPECT_EQ(table.FindValue(id)->Description, (id == 109 ? "Kb" : "KB_") + size);
        EXPECT_EQ(table.FindValue(id)->UiString, size + " KB");
    }
    EXPECT_EQ(table.FindValue(8)->UiString, "144 KB");
    EXPECT_EQ(table.FindValue(127)->UiString, "2048 KB");
    EXPECT_EQ(table.FindDescription("KB_128")->Value, 128);
    EXPECT_EQ(table.FindValue(128)->UiString, "128 KB");
}

std::string TimeZoneIdentifier(int32_t id, std::string name) {
    if (id == 594) {
        return "America_North_DakotaBeulah";
    }
    if (id >= 588 && id <= 601) {
        ReplaceAll(name, "/", "_");
        ReplaceAll(name, "-", "_");
        return name;
    }
    ReplaceAll(name, "/", "__");
    ReplaceAll(name, "GMT+", "GMT_PLUS_");
    ReplaceAll(name, "GMT-", "GMT_MINUS_");
    ReplaceAll(name, "-", id == 573 ? "_" : "");
    return name;
}

TEST(Enumerations, TimeZonesAreDerivedFromTheirNames) {
    const ENUMTable table(E::gTimeZoneEnumIdStrList);
    for (const ENUMRow& row : table) {
        EXPECT_EQ(row.Description, TimeZoneIdentifier(row.Value, std::string(row.UiString))) << row.Value;
    }
    const std::map<int32_t, std::string_view> kPlaces = {
        {1, "CET"},
        {13, "GMT+0"},
        {45, "W-SU"},
        {48, "Africa/Abidjan"},
        {573, "America/Blanc-Sablon"},
        {588, "Africa/Juba"},
        {589, "America/Blanc-Sablon"},
        {594, "America/North_Dakota/Beulah"},
        {602, "Antarctica/Troll"},
    };
    for (const auto& [id, name] : kPlaces) {
        EXPECT_EQ(table.FindValue(id)->UiString, name);
    }
    const auto* first = std::ranges::find(table, "America/Blanc-Sablon", &ENUMRow::UiString);
    EXPECT_EQ(first->Value, 573);
    EXPECT_EQ(table.FindDescription("America__PortauPrince")->UiString, "America/Port-au-Prince");
    EXPECT_EQ(table.FindDescription("Etc__GMT_MINUS_14")->UiString, "Etc/GMT-14");
}

// Letters and digits only, so that a name and its identifier can be held against each other.
std::string Letters(std::string_view text) {
    std::string letters;
    std::ranges::copy_if(text, std::back_inserter(letters),
                         [](unsigned char c) { return std::isalnum(c) != 0; });
    return ToLower(letters);
}

TEST(Enumerations, CountriesAreNamedAfterTheirIdentifiers) {
    const ENUMTable table(E::gCareBridgeCountryEnumIdStrList);
    const std::map<int32_t, std::string_view> kOtherLetters = {
        {1, "\305land Islands"}, {53, "C\364te d'Ivoire"},     {56, "Cura\347ao"},
        {178, "R\351union"},     {182, "Saint Barth\351lemy"},
    };
    int32_t id = 0;
    for (const ENUMRow& row : table) {
        EXPECT_EQ(row.Value, id++);
        const auto other = kOtherLetters.find(row.Value);
        if (other != kOtherLetters.end()) {
            EXPECT_EQ(row.UiString, other->second);
            continue;
        }
        const std::string_view code = row.Description.substr(row.Description.size() - 4);
        EXPECT_EQ(code[0], '_') << row.Description;
        EXPECT_EQ(Letters(row.UiString) + "_" + std::string(code.substr(1)),
                  Letters(row.Description.substr(0, row.Description.size() - 4)) + std::string(code));
    }
    const std::map<std::string_view, std::string_view> kNames = {
        {"AntiguaAndBarabuda_ATG", "Antigua and Barabuda"},
        {"CocosKeelingIslands_CCK", "Cocos (Keeling) Islands"},
        {"HeardIslandAndMcDonaldIslands_HMD", "Heard Island and McDonald Islands"},
        {"IsleOfMan_IMN", "Isle of Man"},
        {"LaoPeoplesDemocraticRepublic_LAO", "Lao People's Democratic Republic"},
        {"SaintVincentAndTheGrenadines_VCT", "Saint Vincent and the Grenadines"},
        {"VirginIslandsUS_VIR", "Virgin Islands, U.S."},
        {"WallisandFutuna_WLF", "Wallis and Futuna"},
        {"Zimbabwe_ZWE", "Zimbabwe"},
    };
    for (const auto& [description, name] : kNames) {
        EXPECT_EQ(table.FindDescription(description)->UiString, name);
    }
}

struct KnownRow {
    ENUMTable table;
    int32_t value;
    std::string_view description;
    std::string_view ui_string;
};

TEST(Enumerations, RowsThatAreEasilyMistaken) {
    const KnownRow kRows[] = {
        {E::gSecureDataStateEnumIdStrList, 1, "NotSecured", "Not  Secured"},
        {E::gErrorStateEnumIdStrList, 28, "RemoteDataCollectorError", "Remote Data  Collector Error"},
        {E::gErrorStateEnumIdStrList, 42, "AuthorizationError", "Authorization Error "},
        {E::gErrorStateEnumIdStrList, 46, "ConnectionRefused", "Connection Refused"},
        {E::gDirectoryServiceStatusEnumIdStrList, 3, "NotConnected", "Joined but not connected "},
        {E::gDirectoryServiceStatusEnumIdStrList, 4, "Running", "Joined and connected "},
        {E::gDirectoryServiceStatusEnumIdStrList, 6, "JoinFailed", "Join Failed "},
        {E::gCmmStateEnumIdStrList, 4, "Errored", "Erred"},
        {E::gFleetEventTypeEnumIdStrList, 4, "DataCollectorExecption", "Data Collector Exception"},
        {E::gReplicationRestorePointStateEnumIdStrList, 10, "SourceAndDesinationTesseraDown",
         "Source and Destination Tesseras Down"},
        {E::gQosBandwidthLimitEnumIdStrList, 11, "Percent_10", "10%"},
        {E::gQosBandwidthLimitEnumIdStrList, 13, "Percent_25", "25 %"},
        {E::gEnclosureTypeEnumIdStrList, 4, "FC_SBOD_4G", "4G FC SBOD"},
        {E::gEnclosureTypeEnumIdStrList, 7, "SasEbod12g", "12G SAS EBOD"},
        {E::gUpdateStatusEnumIdStrList, 0, "NoUpdateAvailable", "Up to date"},
        {E::gReportGatheringFrequencyEnumIdStrList, 5, "Min_1", "1 minute"},
        {E::gIscsiConnectionTimeoutEnumIdStrList, 7, "SECONDS_90", "90 Seconds"},
        {E::gUtcTimeZoneEnumIdStrList, 24, "UTC_Plus_0545", "UTC+05:45"},
        {E::gDefaultViewEnumIdStrList, 3, "Replications", "Replications & Twin Volumes"},
        {E::gManagementApplicationEnumIdStrList, 5, "OTHER", "Other"},
        {E::gFilterTimeEnumIdStrList, 0, "Other", "Other"},
        {E::gStatusEnumIdStrList, 3, "Degraded", "Degraded"},
    };
    for (const KnownRow& expected : kRows) {
        const ENUMRow* row = expected.table.FindValue(expected.value);
        ASSERT_NE(row, nullptr) << expected.description;
        EXPECT_EQ(row->Description, expected.description);
        EXPECT_EQ(row->UiString, expected.ui_string);
    }
}

TEST(Enumerations, AreSearchedInRowOrder) {
    const ENUMTable states(E::gErrorStateEnumIdStrList);
    EXPECT_EQ(states.FindDescription("parsingerror")->Value, 4);
    EXPECT_EQ(states.FindDescription("Parsing Error"), nullptr);
    EXPECT_EQ(states.FindValue(999), nullptr);
    EXPECT_EQ(states.DescriptionOf(8), "IllegalSessionKey");
    EXPECT_EQ(states.DescriptionOf(16), "");
    EXPECT_EQ(ENUMTable().FindDescription(""), nullptr);
}

// The common layer knows the number alone.
TEST(Enumerations, HoldTheStateOfAnArraysErrors) {
    const APIMethodError error(TSResponseStatus{}, "file", 1);
    EXPECT_EQ(ENUMTable(E::gErrorStateEnumIdStrList).DescriptionOf(error.GetErrorState()), "TesseraError");
}

// Tables are used by the constructors of static objects: an initialiser that runs before main would come too
// late.
const std::string_view kBeforeMain = E::gStatusEnumIdStrList[0].Description;

TEST(Enumerations, AreThereBeforeMain) {
    EXPECT_EQ(kBeforeMain, "Up");
}

}  // namespace
