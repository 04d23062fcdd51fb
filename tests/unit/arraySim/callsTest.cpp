#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "arraySim/model/presets.h"
#include "tests/unit/arraySim/libraryChannel.h"
#include "tests/unit/arraySim/requests.h"

using namespace arraysim;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Arguments = std::vector<std::pair<std::string, std::string>>;
using Return = std::unique_ptr<BASEApiMethodReturn>;

/** The commands and associations of the API, asked by way of the library. */
class Calls : public testing::Test {
  protected:
    Return Send(BASEApiMethod& call, const Arguments& arguments) {
        for (const auto& [name, text] : arguments) {
            call.SetAttribute(name, text);
        }
        call.SetChannel(&channel_);
        return Return(call.ExecuteWithSession(kTestKey, nullptr, ""));
    }

    Return Ask(const std::string& object, const std::string& command, const Arguments& arguments) {
        const auto call =
            APIObjectFactory<BASEApiMethod>::Instance().Create("API" + object + command + "Method");
        return Send(*call, arguments);
    }

    /** "ok", or the error state and its text. */
    std::string Do(const std::string& object, const std::string& command, const Arguments& arguments) {
        const Return answer = Ask(object, command, arguments);
        return answer == nullptr || answer->GetSuccessful()
                   ? "ok"
                   : answer->GetErrorCode() + ": " + answer->GetError();
    }

    /** The ids of the objects that a relation leads to, or the error. */
    std::vector<std::string> Related(const std::string& object, const std::string& relation,
                                     const std::string& id) {
        const Return answer = Send(*CreateAssociation(object, relation), {{"InstanceId", id}});
        if (!answer->GetSuccessful()) {
            return {answer->GetErrorCode() + ": " + answer->GetError()};
        }
        std::vector<std::string> ids;
        for (const BASEApiObject* related :
             dynamic_cast<const COMPObjectMethodReturn&>(*answer).GetObjects()) {
            ids.push_back(related->GetInstanceId());
        }
        return ids;
    }

    std::string Value(const std::string& object) {
        const Reply reply = simulator_.Execute("get " + object);
        return reply.good ? reply.text.substr(0, reply.text.size() - 1) : reply.text;
    }

    void Tell(const std::string& command) { ASSERT_TRUE(simulator_.Execute(command).good) << command; }

    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    ChannelToSimulator channel_{simulator_};
};

/** A value that every rule of the catalogue lets pass. */
std::string SampleFor(const BASEApiAttribute& attribute) {
    if (const auto* word = dynamic_cast<const ENUMApiAttribute*>(&attribute)) {
        return std::string(word->GetTable().begin()->Description);
    }
    if (dynamic_cast<const OBJECTApiAttribute*>(&attribute) != nullptr) {
        return "64702 Tessera tessera-lab";
    }
    if (dynamic_cast<const METHODOBJECTApiAttribute*>(&attribute) != nullptr) {
        return "<HistoricalFilter><UseCurrent>True</UseCurrent></HistoricalFilter>";
    }
    if (dynamic_cast<const IPV4ADDRESSApiAttribute*>(&attribute) != nullptr) {
        return "192.0.2.99";
    }
    if (dynamic_cast<const IPV6ADDRESSApiAttribute*>(&attribute) != nullptr) {
        return "2001:db8::99";
    }
    if (dynamic_cast<const DATETIMEApiAttribute*>(&attribute) != nullptr) {
        return "07/01/2026 01:00:00 PM";
    }
    if (dynamic_cast<const STRINGApiAttribute*>(&attribute) != nullptr) {
        return "sample";
    }
    if (dynamic_cast<const OBJECTARRAYApiAttribute*>(&attribute) != nullptr ||
        dynamic_cast<const METHODOBJECTARRAYApiAttribute*>(&attribute) != nullptr ||
        dynamic_cast<const GETLISTFILTERApiAttribute*>(&attribute) != nullptr) {
        return "";
    }
    const auto* bounds =
        dynamic_cast<const INTApiAttribute::INTAttributeProperties*>(&attribute.GetProperties());
    if (bounds != nullptr && bounds->maxValue >= 0) {
        return std::to_string(bounds->maxValue);
    }
    return dynamic_cast<const BOOLEANApiAttribute*>(&attribute) != nullptr ? "True" : "64702";
}

/** With everything that it could ask for. */
void FillIn(BASEApiMethod& call, const std::string& instance_id) {
    for (const BASEApiAttribute* attribute : call.GetAttributeList()) {
        call.SetAttribute(attribute->GetXmlName(), SampleFor(*attribute));
    }
    if (call.HasAttribute("ObjectInstanceId")) {
        call.SetAttribute("ObjectInstanceId", instance_id);
    }
    try {
        call.CheckRequiredAttributes();
    } catch (const APIMethodError&) {
        call.SetAttribute("InstanceId", instance_id);
    }
    if (call.HasAttribute("VolumeIndexes")) {
        call.SetAttribute("VolumeIndexes", "3");
    }
}

TEST_F(Calls, EveryCommandOfTheCatalogueIsCarriedOutOrRefusedForAReason) {
    std::set<std::string> refused;
    for (const auto& [key, create] : APIObjectFactory<BASEApiMethod>::Instance().GetCreators()) {
        const std::unique_ptr<BASEApiMethod> call(create());
        Simulator simulator(BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey},
                            Spelling::kApi);
        ChannelToSimulator channel(simulator);
        const Selection selection = *Catalogue::Builtin().FindRequestable(call->GetObjectName());
        const Reply list = simulator.Execute("get " + selection.Name());
        const std::string index = list.text.substr(0, list.text.find(' '));
        const bool is_array = selection.Name() == "Tessera";
        FillIn(*call, is_array ? "64702" : "64702." + index);
        call->SetChannel(&channel);
        const Return answer(call->ExecuteWithSession(kTestKey, nullptr, ""));
        if (answer != nullptr && !answer->GetSuccessful()) {
            refused.insert(call->GetObjectName() + " " + call->GetCommandName() + " " +
                           answer->GetErrorCode());
        }
    }
    EXPECT_THAT(refused, ElementsAre("Tessera Add TesseraError", "Tessera AddController TesseraError",
                                     "Tessera ChangeExpiredPassword TesseraError",
                                     "Tessera FactoryReset AuthorizationError",
                                     "Tessera GetCarryVolumeEncryptionSecurityKey CarryVolumeNodeError",
                                     "Tessera Recommend ObjectNotAvailable", "Tessera Remove TesseraError",
                                     "TsDisk Delete TesseraError", "TsDiskFolder Delete TesseraError",
                                     "TsDiskFolder StopRebalance TesseraError",
                                     "TsEnclosure Delete TesseraError", "TsVolume AllocationMap TesseraError",
                                     "TsVolume ExpandToSize InvalidValue", "TsVolume Restore TesseraError"));
}

TEST_F(Calls, EveryRelationLeadsToObjectsOrSaysThatThereAreNone) {
    size_t leading = 0;
    for (const ASSOCIATIONEntry& entry : GetAssociations()) {
        const std::string object(entry.object);
        const Reply list = simulator_.Execute("get " + object);
        const std::string index = list.text.substr(0, list.text.find(' '));
        const std::vector<std::string> ids =
            Related(object, std::string(entry.relation), object == "Tessera" ? "64702" : "64702." + index);
        const bool is_list = entry.relation.ends_with("List");
        if (!ids.empty() && ids.front().starts_with("64702")) {
            ++leading;
        } else if (is_list) {
            EXPECT_THAT(ids, IsEmpty()) << object << " " << entry.relation;
        } else {
            ASSERT_EQ(ids.size(), 1u) << object << " " << entry.relation;
            EXPECT_THAT(ids.front(), testing::StartsWith("ObjectNotAvailable: ")) << object;
        }
        if (entry.relation == "Tessera") {
            EXPECT_THAT(ids, ElementsAre("64702")) << object;
        }
    }
    EXPECT_GT(leading, 75u);
}

TEST_F(Calls, RelationsFollowTheModel) {
    EXPECT_THAT(Related("TsDisk", "Enclosure", "64702.3"), ElementsAre("64702.2"));
    EXPECT_THAT(Related("TsEnclosure", "IoModuleList", "64702.2"), ElementsAre("64702.3", "64702.4"));
    EXPECT_THAT(Related("TsController", "CacheCard", "64702.3"), ElementsAre("64702.3"));
    EXPECT_THAT(Related("TsControllerFanSensor", "Controller", "64702.9"), ElementsAre("64702.3"));
    EXPECT_THAT(Related("Tessera", "RemoteTesseraList", "64702"), testing::SizeIs(1));
    EXPECT_THAT(Related("Tessera", "ServerList", "64702"), testing::SizeIs(5));
    EXPECT_THAT(Related("TsDisk", "FruTicket", "64702.3"),
                ElementsAre("ObjectNotAvailable: TsDisk 64702.3 has no FruTicket"));
    EXPECT_THAT(Related("TsDisk", "Enclosure", "64702.99"),
                ElementsAre("ObjectNotAvailable: TsDisk 64702.99 does not exist"));
    EXPECT_THAT(Related("TsDisk", "Enclosure", "1.3"), ElementsAre("InvalidTessera: Array 1 is not known"));
    Tell("remove TsEnclosure 2");
    EXPECT_THAT(Related("TsDisk", "Enclosure", "64702.3"),
                ElementsAre("ObjectNotAvailable: TsDisk 64702.3 has no Enclosure"));
}

TEST_F(Calls, CommandsHaveTheEffectThatTheyName) {
    const Arguments volume = {{"InstanceId", "64702.3"}};
    EXPECT_EQ(Do("TsDiskConfiguration", "RequestIndicatorOn", volume), "ok");
    EXPECT_EQ(Value("TsDiskConfiguration 3 IndicatorOn"), "True");
    EXPECT_EQ(Do("TsDiskConfiguration", "Modify", {{"InstanceId", "64702.3"}, {"PathAlert", "1"}}), "ok");
    EXPECT_EQ(Value("TsDiskConfiguration 3 PathAlert"), "True");

    EXPECT_EQ(Do("TsVolume", "Recycle", volume), "ok");
    EXPECT_EQ(Value("TsVolume 3 Active"), "False");
    EXPECT_EQ(Do("TsVolume", "Recycle", volume),
              "TesseraError: TsVolume 64702.3 rejects the command: InRecycleBin is True");
    EXPECT_EQ(Do("TsVolume", "Restore", volume), "ok");
    Tell("set TsVolume 3 ConfiguredSize 1000");
    EXPECT_EQ(Do("TsVolume", "Expand", {{"InstanceId", "64702.3"}, {"ExpandAmount", "1 GB"}}), "ok");
    EXPECT_EQ(Value("TsVolume 3 ConfiguredSize"), "2098152");
    EXPECT_EQ(Do("TsVolume", "ExpandToSize", {{"InstanceId", "64702.3"}, {"NewSize", "1 GB"}}),
              "InvalidValue: TsVolume 64702.3 can only be enlarged");
    EXPECT_EQ(
        Do("TsVolume", "Modify",
           {{"InstanceId", "64702.3"}, {"Name", "archive"}, {"VolumeFolder", "64702.8 TsVolumeFolder Old"}}),
        "ok");
    EXPECT_EQ(Value("TsVolume 3 InstanceName"), "archive");
    EXPECT_EQ(Value("TsVolume 3 VolumeFolderIndex"), "8");

    EXPECT_EQ(Do("TsDiskFolder", "RaidRebalance", {{"Tessera", "64702 Tessera tessera-lab"}}), "ok");
    EXPECT_EQ(Do("TsDiskFolder", "RaidRebalance", {{"Tessera", "64702 Tessera tessera-lab"}}),
              "TesseraError: Tessera 64702 rejects the command: RaidRebalanceRunning is True");
    EXPECT_EQ(Do("TsController", "Shutdown", {{"InstanceId", "64702.3"}}), "ok");
    EXPECT_EQ(Value("TsController 3 Status"), "Down");
    EXPECT_EQ(Do("TsController", "Restart", {{"InstanceId", "64702.3"}}), "ok");
    EXPECT_EQ(Value("TsController 3 Status"), "Up");
    EXPECT_EQ(Value("TsController 3 LastBootTime"), "07/01/2025 12:00:00 AM");
    EXPECT_EQ(Do("TsEnclosureTemperatureSensor", "RequestMinMaxClear", {{"InstanceId", "64702.7"}}), "ok");
    EXPECT_EQ(Value("TsEnclosureTemperatureSensor 7 MaximumTemperature"),
              Value("TsEnclosureTemperatureSensor 7 Temperature"));
}

TEST_F(Calls, ALockedVolumeObeysItsApplicationOnly) {
    const auto by = [](const std::string& application) {
        return Arguments{{"InstanceId", "64702.3"}, {"ManagementApplication", application}};
    };
    EXPECT_EQ(Do("TsVolume", "AddManagementLock", by("mover")), "ok");
    const std::string locked = "TesseraError: TsVolume 64702.3 is locked by 'mover'";
    EXPECT_EQ(Do("TsVolume", "Unmap", {{"InstanceId", "64702.3"}}), locked);
    EXPECT_EQ(Do("TsVolume", "Delete", by("other")), locked);
    EXPECT_EQ(Do("TsVolume", "RemoveManagementLock", by("other")), locked);
    EXPECT_EQ(Do("TsVolume", "Unmap", by("mover")), "ok");
    EXPECT_EQ(Do("TsVolume", "RemoveManagementLock", by("mover")), "ok");
    EXPECT_EQ(Do("TsVolume", "Delete", {{"InstanceId", "64702.3"}}), "ok");
    EXPECT_EQ(Value("TsVolume 3"), "TsVolume 3 does not exist");
    EXPECT_EQ(Value("TsObjectCount 1 NumberOfVolumes"), "5");
}

TEST_F(Calls, ObjectsAreMadeFromTheArguments) {
    const Return answer =
        Ask("TsVolume", "Create",
            {{"Name", "fresh"}, {"Size", "2 GB"}, {"Tessera", "64702 Tessera tessera-lab"}});
    const auto* made = dynamic_cast<const COMPObjectMethodReturn*>(answer.get());
    ASSERT_NE(made, nullptr);
    ASSERT_NE(made->GetObject(), nullptr);
    EXPECT_EQ(made->GetObject()->GetAttribute("InstanceName"), "fresh");
    EXPECT_EQ(made->GetObject()->GetAttribute("ConfiguredSize"), "4194304");
    EXPECT_EQ(Value("TsObjectCount 1 NumberOfVolumes"), "7");

    const Arguments ups = {{"CommunityString", "secret"},
                           {"IpAddress", "192.0.2.77"},
                           {"Tessera", "64702 Tessera tessera-lab"},
                           {"Type", "liebert"}};
    EXPECT_EQ(Do("TsUps", "Create", ups), "ok");
    EXPECT_EQ(Value("TsUps 3 Type"), "Liebert");
    EXPECT_EQ(Do("Tessera", "AddController", {{"InstanceId", "64702"}}),
              "TesseraError: The array cannot hold another TsController");
}

TEST_F(Calls, DisksMoveBetweenFolders) {
    const std::string disks = Related("TsDiskFolder", "DiskList", "64702.3").front() + " TsDisk d";
    const std::string before = Value("TsDiskFolder 3 DiskCount");
    const Return answer =
        Ask("TsDiskFolder", "Create",
            {{"Name", "new"}, {"DiskList", disks}, {"Tessera", "64702 Tessera tessera-lab"}});
    const auto* made = dynamic_cast<const COMPObjectMethodReturn*>(answer.get());
    ASSERT_NE(made, nullptr);
    const std::string id = made->GetObject()->GetInstanceId();
    const std::string index = id.substr(id.find('.') + 1);
    EXPECT_EQ(made->GetObject()->GetAttribute("DiskCount"), "1");
    EXPECT_EQ(std::stoi(Value("TsDiskFolder 3 DiskCount")) + 1, std::stoi(before));
    EXPECT_THAT(Related("TsDiskFolder", "StorageUsage", id), testing::SizeIs(1));
    EXPECT_NE(Value("TsDiskFolderStorageUsage " + index + " TotalSpace"), "0");

    EXPECT_EQ(Do("TsDiskFolder", "Delete", {{"InstanceId", id}}),
              "TesseraError: TsDiskFolder " + id + " rejects the command: OkToDelete is False");
    EXPECT_EQ(Do("TsDiskFolder", "RemoveDisks", {{"InstanceId", "64702.3"}, {"Disks", disks}}),
              "TesseraError: TsDisk " + disks.substr(0, disks.find(' ')) + " is not in folder 64702.3");
    EXPECT_EQ(Do("TsDiskFolder", "RemoveDisks", {{"InstanceId", id}, {"Disks", disks}}), "ok");
    EXPECT_THAT(Related("Tessera", "UnassignedDiskList", "64702"),
                ElementsAre(disks.substr(0, disks.find(' '))));
    EXPECT_EQ(Do("TsDiskFolder", "Delete", {{"InstanceId", id}}), "ok");
    EXPECT_THAT(Value("TsDiskFolderStorageUsage " + index), testing::EndsWith(" does not exist"));
}

TEST_F(Calls, AnswersHaveTheFormOfTheirKind) {
    const Return languages = Ask("Tessera", "GetSupportedLanguages", {{"InstanceId", "64702"}});
    ASSERT_NE(dynamic_cast<const ENUMMaskMethodReturn*>(languages.get()), nullptr);
    EXPECT_EQ(dynamic_cast<const ENUMMaskMethodReturn&>(*languages).GetRows().size(), 6u);
    const Return initial = Ask("Tessera", "RequiresInitialConfiguration", {{"InstanceId", "64702"}});
    ASSERT_NE(dynamic_cast<const BOOLMethodReturn*>(initial.get()), nullptr);
    EXPECT_FALSE(dynamic_cast<const BOOLMethodReturn&>(*initial).value);
    const Return number = Ask("Tessera", "GetScsiVpd", {{"InstanceId", "64702"}});
    ASSERT_NE(dynamic_cast<const INTMethodReturn*>(number.get()), nullptr);
    EXPECT_EQ(dynamic_cast<const INTMethodReturn&>(*number).value, 64702);
    const Return usage = Ask("TsDiskFolder", "GetHistoricalStorageUsage", {{"InstanceId", "64702.3"}});
    ASSERT_NE(dynamic_cast<const COMPObjectMethodReturn*>(usage.get()), nullptr);
    EXPECT_EQ(dynamic_cast<const COMPObjectMethodReturn&>(*usage).GetObjects().size(), 1u);
    EXPECT_EQ(Ask("TsAlert", "Acknowledge", {{"InstanceId", "64702.2"}}), nullptr);
}

TEST_F(Calls, APrivilegeAllowsWhatTheCatalogueAsksFor) {
    struct Case {
        UserPrivilege privilege;
        const char *object, *command;
        bool allowed;
    };
    const Case cases[] = {
        {USER_PRIVILEGE_REPORTER, "TsVolume", "Get", true},
        {USER_PRIVILEGE_REPORTER, "TsVolume", "Recycle", false},
        {USER_PRIVILEGE_VOLUME_MANAGER, "TsVolume", "Recycle", true},
        {USER_PRIVILEGE_VOLUME_MANAGER, "TsDisk", "Restore", false},
        {USER_PRIVILEGE_ADMIN, "TsDisk", "Restore", true},
    };
    for (const Case& each : cases) {
        Simulator simulator(BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702),
                            {kTestKey, each.privilege}, Spelling::kApi);
        const std::string answer = simulator
                                       .Handle(CommandMessage(RequestDocument(each.object, each.command,
                                                                              {{"InstanceId", "64702.3"}})))
                                       .response.apirespmsg()
                                       .cmd()
                                       .respdata();
        if (each.allowed) {
            EXPECT_THAT(answer, HasSubstr("<Successful>True")) << each.object << " " << each.command;
        } else {
            EXPECT_THAT(answer, HasSubstr("<ErrorCode>UserPrivilegeError<")) << each.object;
        }
    }
}

TEST_F(Calls, WhatACommandChangesIsReported) {
    std::vector<std::string> events;
    SimulatorHooks hooks;
    hooks.send_event = [&events](std::string text) { events.push_back(std::move(text)); };
    simulator_.SetHooks(std::move(hooks));
    EXPECT_EQ(Do("TsController", "Shutdown", {{"InstanceId", "64702.3"}}), "ok");
    EXPECT_THAT(events,
                ElementsAre("37 4 8 203 3 0 0 0 64702.3 TsController@@@Controller 'Controller B' is down"));
    EXPECT_EQ(Do("TsVolume", "Delete", {{"InstanceId", "64702.3"}}), "ok");
    EXPECT_EQ(events.size(), 1u);
}

}  // namespace
