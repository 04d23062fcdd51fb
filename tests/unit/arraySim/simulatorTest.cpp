// The simulated array without sockets: commands of a user, calls of the API, and the events of changes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <set>
#include <sstream>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/simulator.h"
#include "arraySim/model/events.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/presets.h"
#include "tests/unit/arraySim/requests.h"
#include "tests/unit/layers/temporaryFolder.h"

using namespace arraysim;

namespace {

std::string Between(const std::string& text, const std::string& begin, const std::string& end) {
    const size_t from = text.find(begin);
    return from == std::string::npos ? ""
                                     : text.substr(from + begin.size(), text.find(end) - from - begin.size());
}

/** Formats elements as "NAME:TEXT", separated by spaces. */
std::string Compact(const std::string& elements) {
    std::string compact;
    for (size_t at = 0; at < elements.size(); ++at) {
        if (elements[at] != '<') {
            compact += elements[at];
            continue;
        }
        const size_t end = elements.find('>', at);
        if (elements[at + 1] != '/') {
            compact += (compact.empty() ? "" : " ") + elements.substr(at + 1, end - at - 1) + ":";
        }
        at = end;
    }
    return compact;
}

/** Returns "ok" or the elements after the status; for a failure, "CODE: ERROR" (and a detail). */
std::string Summary(const std::string& document, bool shows_result) {
    if (document.find("<Successful>True<") != std::string::npos) {
        return shows_result ? Compact(Between(document, "</ApiMethodReturn>", "</lumapi>")) : "ok";
    }
    const std::string detail = Between(document, "<ErrorDetail>", "</ErrorDetail>");
    return Between(document, "<ErrorCode>", "</ErrorCode>") + ": " +
           UnescapeXml(Between(document, "<Error>", "</Error>"), false) +
           (detail.empty() ? "" : " (" + detail + ")");
}

class ChannelToSimulator : public APIChannel {
  public:
    explicit ChannelToSimulator(Simulator& simulator) : simulator_(simulator) {}
    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override {
        response = simulator_.Handle(request).response;
    }

  private:
    Simulator& simulator_;
};

/** A simulator that is controlled by lines of text. */
class Script : public testing::Test {
  protected:
    Script() { Use(BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702)); }

    void Use(Model model, Session session = {kTestKey}) {
        simulator_.emplace(std::move(model), session, Spelling::kApi);
        simulator_->SetHooks({.send_event = [this](const std::string& text) { events_.push_back(text); },
                              .describe_events = [] { return std::string("counts of the sender\n"); }});
    }

    /** Executes lines "INPUT => OUTPUT"; without "=> OUTPUT" there must be none. An indented line continues
       the previous one. Output lines are joined by " | ". */
    void Play(const std::string& script) {
        std::vector<std::string> lines;
        std::istringstream all(script);
        for (std::string line; std::getline(all, line);) {
            if (line.starts_with("    ")) {
                lines.back() += line.substr(3);
            } else if (!line.empty()) {
                lines.push_back(line);
            }
        }
        for (const std::string& line : lines) {
            const size_t arrow = line.find(" => ");
            EXPECT_EQ(Run(line.substr(0, arrow)), arrow == std::string::npos ? "" : line.substr(arrow + 4))
                << line;
        }
    }

    /** Executes an input and returns its output:
          call OBJECT COMMAND [NAME=VALUE; ...]   "ok" or the error of an API call
          read OBJECT COMMAND [NAME=VALUE; ...]   the result or error of an API call
          related OBJECT RELATION ID              the IDs of the related objects, or the error
        Anything else is a command of the simulator; "? " precedes its error. The numbers of events follow. */
    std::string Run(const std::string& input) {
        events_.clear();
        std::istringstream words(input);
        std::string verb, object, name, rest;
        words >> verb >> object >> name;
        std::getline(words >> std::ws, rest);
        std::string output;
        if (verb == "call" || verb == "read") {
            output = Summary(Respond(RequestDocument(object, name, Arguments(rest))), verb == "read");
        } else if (verb == "related") {
            output = Related(object, name, rest);
        } else {
            const Reply reply = simulator_->Execute(input);
            output = (reply.good ? "" : "? ") + reply.text;
        }
        Trim(output);
        for (std::string event : events_) {
            size_t end = 0;
            for (int field = 0; field < 8; ++field) {
                end = event.find(' ', end + 1);
            }
            output += (output.empty() ? "" : "\n") + event.substr(0, end);
        }
        ReplaceAll(output, "\n", " | ");
        return output;
    }

    std::string Respond(const std::string& document) {
        return simulator_->Handle(CommandMessage(document)).response.apirespmsg().cmd().respdata();
    }

    static RequestAttributes Arguments(const std::string& text) {
        RequestAttributes arguments;
        std::vector<std::string> parts;
        Split(text, "; ", parts);
        for (const std::string& part : parts) {
            arguments.emplace_back(part.substr(0, part.find('=')),
                                   EscapeXml(part.substr(part.find('=') + 1), false));
        }
        return arguments;
    }

    std::string Related(const std::string& object, const std::string& relation, const std::string& id) {
        const auto call = CreateAssociation(object, relation);
        call->SetAttribute("InstanceId", id);
        ChannelToSimulator channel(*simulator_);
        call->SetChannel(&channel);
        const std::unique_ptr<BASEApiMethodReturn> response(call->ExecuteWithSession(kTestKey, nullptr, ""));
        if (!response->GetSuccessful()) {
            return response->GetErrorCode() + ": " + response->GetError();
        }
        std::string ids;
        for (const BASEApiObject* each :
             dynamic_cast<const COMPObjectMethodReturn&>(*response).GetObjects()) {
            ids += each->GetInstanceId() + " ";
        }
        return ids;
    }

    std::optional<Simulator> simulator_;
    std::vector<std::string> events_;
};

// ---- commands ----

TEST_F(Script, ReportsErrorsAndChangesNothing) {
    const std::string model = Run("dump");
    Play(R"(
explode => ? unknown command 'explode'; `help` prints all
set => ? missing argument; usage: set KIND INDEX ATTR VALUE
set TsMoon 1 Name x => ? unknown kind 'TsMoon'; `list` prints all
set TsDisk -5 Name y => ? '-5' is not an API index
set TsDisk 5 Colour red => ? TsDisk has no attribute 'Colour'
set TsDisk 8 Name x => ? TsDisk 8 does not exist
set TsDisk 5 Index 6 => ? Index identifies the object; the fault no-index omits it
set TsObjectCount 1 NumberOfDisks 5 => ? NumberOfDisks is computed from the model and cannot be set
set TsDisk 5 Name "open => ? missing closing quote
set TsDisk 5 Name "\x" => ? unknown escape sequence \x
unset TsDisk 5 Name y => ? unexpected 'y'; usage: unset KIND INDEX ATTR
fail TsDisk 5 Up => ? unexpected 'Up'; expected Down or Degraded
fail TsAlert 2 => ? TsAlert has no status
add TsServer => ? TsServer contains several kinds; name one of them
add TsDisk Name => ? unexpected 'Name'; expected ATTR=VALUE; usage: add KIND [ATTR=VALUE...]
add TsVirtualServer Index=5 => ? TsServer 5 already exists
dump /nonexistent/folder/x => ? cannot write /nonexistent/folder/x: No such file or directory
load /tmp => ? cannot read /tmp: Is a directory
scsi -1 2 => ? '-1' is not a type; expected 0 to 2147483647
fault nonsense => ? unknown fault 'nonsense'; `help` prints all
fault delay 0 => ? '0' is not a number from 1 to 3600000; usage: fault delay MS [on KIND] [for N]
fault hang 5 => ? unexpected '5'; usage: fault hang [on KIND] [for N]
fault hang on TsVirtualServer => ? TsVirtualServer is never requested; use its list TsServer
fault refuse on TsDisk => ? this fault acts before a request is read, so it cannot depend on the
    kind; usage: fault refuse [on KIND] [for N]
fault stop-listening for 2 => ? this fault lasts until it is cleared; usage: fault stop-listening [on KIND]
    [for N]
fault truncated on Ping => ? this fault affects commands, not pings; usage: fault truncated [on KIND] [for N]
fault missing Colour => ? no kind has an attribute 'Colour'
faults
)");
    EXPECT_EQ(Run("set TsDisk 5 Name \xff"), "? the string is not valid UTF-8");
    EXPECT_EQ(Run("dump"), model);
}

TEST_F(Script, UpdatesDependentObjects) {
    Play(R"(
set tsDisk 5 name   two  words 
get TSDISK 5 Name => two words
set TsDisk 5 Name "two  words \"quoted\" \\ ö"
get TsDisk 5 Name => two  words "quoted" \ ö
unset TsDisk 5 Name
expect TsDisk 5 Name x => ? TsDisk 5 Name: expected 'x', found nothing
expect TsObjectCount 1 NumberOfDisks 12
add TsDisk Status=Down "Name=new disk" EnclosureIndex=2 => 17
expect TsDisk 17 Name new disk
expect TsDisk 17 InstanceId 64702.17
expect TsDiskConfiguration 17 DiskIndex 17
expect TsObjectCount 1 NumberOfDisks 13
remove TsDisk 17
get TsDiskConfiguration 17 => ? TsDiskConfiguration 17 does not exist
add TsDiskFolder Index=40 => 40
remove TsDiskFolder 40
get TsDiskFolderStorageUsage 40 => ? TsDiskFolderStorageUsage 40 does not exist
add TsControllerFanSensor ControllerIndex=3 => 11
expect TsControllerFanSensor 11 Name Controller B Fan 4
fault hang on TsDisk for 2
fault tear 6 on Ping
fault error InvalidValue "on and for" on Tessera
fault nesting for 3 on tsalert
faults => fault hang on TsDisk for 2 | fault tear 6 on Ping
    | fault error InvalidValue "on and for" on Tessera | fault nesting 100000 on TsAlert for 3
clear tear => 1 fault cleared
clear => 3 faults cleared
)");
    const TemporaryFolder folder;
    const std::string model = Run("dump");
    Run("dump " + folder.Path("model"));
    Run("fail TsDisk 5");
    EXPECT_NE(Run("dump"), model);
    Run("load " + folder.Path("model"));
    EXPECT_EQ(Run("dump"), model);
}

// ---- calls ----

TEST_F(Script, RespondsWithTheObjectsOfTheModel) {
    Use(ReadModel(Catalogue::Builtin(), R"({"serial": 64702, "objects": {
"TsDisk": [
  {"Index": "5", "Status": "Up", "Name": "01-01", "EnclosureIndex": "3", "Locked": "False",
   "StatusMessage": ""},
  {"Index": "9", "Status": "Down", "Name": "a<b>&'\"\tö", "Healthy": "False"}],
"TsServer": [
  {"kind": "TsVirtualServer", "Index": "4", "Name": "web"},
  {"kind": "TsRemoteTessera", "Index": "2", "Name": "far", "TsCreated": "True"},
  {"kind": "TsPhysicalServer", "Index": "7", "Name": "db"}],
"TsDiskFolderStorageUsage": [{"Index": "6", "TotalSpace": "1953125", "UsedSpace": "0"}],
"Tessera": [{"Name": "lab", "Location": "rack 4", "Contact": "desk", "InstanceName": "lab"}]}})"));
    Play(R"(
read TsDisk Get InstanceId=64702.5 => ReturnObject: tsDisk: EnclosureIndex:3 Index:5 Locked:False Name:01-01
    Status:Up StatusMessage:
read TsDisk Get InstanceId=64702.5; LiteObj=1 => ReturnObject: tsDisk: EnclosureIndex:3 Index:5 Name:01-01
    Status:Up StatusMessage:
read TsDisk GetList Filter=and Status = down-Index > 5- => ReturnObjectArray: tsDisk: Healthy:False Index:9
    Name:a&lt;b&gt;&amp;&apos;&quot;&#x0a;ö Status:Down
read TsServer GetList LiteObj=1 => ReturnObjectArray: tsVirtualServer: Index:4 Name:web
    tsRemoteTessera: Index:2 Name:far tsPhysicalServer: Index:7 Name:db
read TsServer GetList Filter=or Name iqs ar-Index = 7- => ReturnObjectArray:
    tsRemoteTessera: TsCreated:True Index:2 Name:far tsPhysicalServer: Index:7 Name:db
read TsServer Get InstanceId=64702.7 => ReturnObject: tsPhysicalServer: Index:7 Name:db
read TsDiskFolderStorageUsage Get InstanceId=64702.6 => ReturnObject: tsDiskFolderStorageUsage: Index:6
    TotalSpace:1953125 UsedSpace:0
read TsVolume GetList => ReturnObjectArray /:
read TsUps GetList => ObjectNotAvailable: No UPS is monitored
call Tessera Modify InstanceId=64702; Location=Hall <2> & 3 => ok
read Tessera GetList => ReturnObjectArray: Tessera: Contact:desk Location:Hall &lt;2&gt; &amp; 3 Name:lab
    InstanceName:lab
)");
    std::string csv = RequestDocument("TsDisk", "GetList", {{"LiteObj", "1"}});
    ReplaceAll(csv, ">xml<", ">csv<");
    EXPECT_EQ(Summary(Respond(csv), true),
              "ReturnObjectArray: Header:EnclosureIndex,Healthy,Index,Name,Status,StatusMessage "
              "Data:3,,5,01-01,Up,:,False,9,a&lt;b&gt;&amp;&apos;&quot;&#x0a;ö,Down,:");
}

TEST_F(Script, RejectsCallsWithAReasonAndChangesNothing) {
    const std::string model = Run("dump");
    Play(R"(
call TsMoon GetList => ObjectNotAvailable: Object 'TsMoon' is not known
call TsDisk Explode => MethodNotAvailable: TsDisk has no command 'Explode'
call TsDisk Get => InvalidValue: Required attribute InstanceId not set (Code 10009)
call TsDisk Get InstanceId=64702.99 => ObjectNotAvailable: TsDisk 64702.99 does not exist
call TsDisk Get InstanceId=64703.5 => InvalidTessera: Array 64703 is not known
call TsDisk GetList Filter=Name = a- => InvalidArguments: 'Name = a-' is not a valid filter
call Tessera Modify InstanceId=64702 => InvalidArguments: Missing attributes to modify
call Tessera Modify InstanceId=64702; Name=x; Status=Up => InvalidArguments: Tessera Modify does not
    accept the attribute 'Status'
call Tessera Modify InstanceId=64702; Location=x; Name= => ParsingError: Attribute "Name" was ""
    [0 characters long], but must be a string at least 1 characters (Code 10763: Name, 1)
call Tessera Modify InstanceId=64702; Location=x; OperationMode=Sleepy => InvalidValue: Attribute
    "OperationMode" was "Sleepy", but must be in its enumeration
call Tessera Modify InstanceId=64702; Location=x; ManagementIp=1.2.3 => InvalidValue: Attribute
    "ManagementIp" was "1.2.3", but must be an address
call TsVolume MapToServer InstanceId=64702.3; Server=64702.4 => InvalidValue: Attribute "Server" was
    "64702.4", but must be a reference: ID, type and name of an object
call TsDiskFolder Create DiskList=64702.5 TsDisk a:64702.99 TsDisk b; Tessera=64702 Tessera lab =>
    ObjectNotAvailable: TsDisk 64702.99 does not exist
)");
    const std::string good = RequestDocument("TsDisk", "GetList");
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {kTestKey, "TEST+KEY", "IllegalSessionKey"},
        {">Method<", ">Rumour<", "MethodNotAvailable"},
        {"<Async>false<", "<Async>true<", "InvalidArguments"},
        {">xml<", ">json<", "InvalidArguments"},
        {"lumapi>", "lumapy>", "ParsingError"},
        {"ApiMethod>", "Other>", "ParsingError"},
        {"<lumapi>", "<!DOCTYPE lumapi><lumapi>", "ParsingError"},
    };
    for (const auto& [old_text, new_text, code] : rows) {
        std::string document = good;
        ReplaceAll(document, old_text, new_text);
        EXPECT_THAT(Summary(Respond(document), false), testing::StartsWith(std::string(code) + ": "))
            << document;
    }
    EXPECT_EQ(Run("dump"), model);
}

TEST_F(Script, ExecutesCommandsOfTheApi) {
    Play(R"(
call TsDiskConfiguration RequestIndicatorOn InstanceId=64702.3 => ok
expect TsDiskConfiguration 3 IndicatorOn True
call TsVolume Recycle InstanceId=64702.3 => ok
expect TsVolume 3 Active False
call TsVolume Recycle InstanceId=64702.3 => TesseraError: TsVolume 64702.3 rejects the command: InRecycleBin is True
call TsVolume Restore InstanceId=64702.3 => ok
set TsVolume 3 ConfiguredSize 1000
call TsVolume Expand InstanceId=64702.3; ExpandAmount=1 GB => ok
expect TsVolume 3 ConfiguredSize 2098152
call TsVolume ExpandToSize InstanceId=64702.3; NewSize=1 GB => InvalidValue: TsVolume 64702.3 can only be
    enlarged
call TsVolume Modify InstanceId=64702.3; Name=archive; VolumeFolder=64702.8 TsVolumeFolder Old => ok
expect TsVolume 3 VolumeFolderIndex 8
call TsDiskFolder RaidRebalance Tessera=64702 Tessera tessera-lab => ok
call TsDiskFolder RaidRebalance Tessera=64702 Tessera tessera-lab => TesseraError: Tessera 64702 rejects the
    command: RaidRebalanceRunning is True
call TsController Shutdown InstanceId=64702.3 => ok | 37 4 8 203 3 0 0 0
expect TsController 3 Status Down
call TsController Restart InstanceId=64702.3 => ok | 37 4 8 203 3 0 0 5
expect TsController 3 LastBootTime 07/01/2025 12:00:00 AM
call TsVolume AddManagementLock InstanceId=64702.3; ManagementApplication=mover => ok
call TsVolume Delete InstanceId=64702.3; ManagementApplication=other => TesseraError: TsVolume 64702.3 is
    locked by 'mover'
call TsVolume RemoveManagementLock InstanceId=64702.3; ManagementApplication=mover => ok
call TsVolume Delete InstanceId=64702.3 => ok
expect TsObjectCount 1 NumberOfVolumes 5
call TsUps Create CommunityString=secret; IpAddress=192.0.2.77; Tessera=64702 Tessera lab; Type=liebert => ok
expect TsUps 3 Type Liebert
call Tessera AddController InstanceId=64702 => TesseraError: The array cannot hold another TsController
expect TsDiskFolder 3 DiskCount 6
call TsDiskFolder Create Name=new; DiskList=64702.2 TsDisk d; Tessera=64702 Tessera tessera-lab => ok
expect TsDiskFolder 3 DiskCount 5
expect TsDiskFolder 4 DiskCount 1
call TsDiskFolder Delete InstanceId=64702.4 => TesseraError: TsDiskFolder 64702.4 rejects the command:
    OkToDelete is False
call TsDiskFolder RemoveDisks InstanceId=64702.3; Disks=64702.2 TsDisk d => TesseraError: TsDisk 64702.2 is
    not in folder 64702.3
call TsDiskFolder RemoveDisks InstanceId=64702.4; Disks=64702.2 TsDisk d => ok
related Tessera UnassignedDiskList 64702 => 64702.2
call TsDiskFolder Delete InstanceId=64702.4 => ok
get TsDiskFolderStorageUsage 4 => ? TsDiskFolderStorageUsage 4 does not exist
read Tessera RequiresInitialConfiguration InstanceId=64702 => ReturnBool:False
read Tessera GetScsiVpd InstanceId=64702 => ReturnInt:64702
read TsAlert Acknowledge InstanceId=64702.2
)");
}

TEST_F(Script, EnforcesThePrivilegeOfTheSession) {
    const std::tuple<UserPrivilege, const char*, const char*> rows[] = {
        {USER_PRIVILEGE_REPORTER, "TsVolume Get", "ok"},
        {USER_PRIVILEGE_REPORTER, "TsVolume Recycle", "UserPrivilegeError"},
        {USER_PRIVILEGE_VOLUME_MANAGER, "TsVolume Recycle", "ok"},
        {USER_PRIVILEGE_VOLUME_MANAGER, "TsDisk Restore", "UserPrivilegeError"},
        {USER_PRIVILEGE_ADMIN, "TsDisk Restore", "ok"},
    };
    for (const auto& [privilege, call, outcome] : rows) {
        Use(BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey, privilege});
        EXPECT_THAT(Run("call " + std::string(call) + " InstanceId=64702.3"), testing::StartsWith(outcome))
            << call;
    }
}

/** Returns a value that the rules of the catalogue accept. */
std::string SampleFor(const BASEApiAttribute& attribute) {
    const auto* bounds =
        dynamic_cast<const INTApiAttribute::INTAttributeProperties*>(&attribute.GetProperties());
    if (bounds != nullptr || dynamic_cast<const SIZEApiAttribute*>(&attribute) != nullptr) {
        return bounds != nullptr && bounds->maxValue >= 0 ? std::to_string(bounds->maxValue) : "64702";
    }
    if (dynamic_cast<const BOOLEANApiAttribute*>(&attribute) != nullptr) {
        return "True";
    }
    if (dynamic_cast<const OBJECTApiAttribute*>(&attribute) != nullptr) {
        return "64702 Tessera tessera-lab";
    }
    return dynamic_cast<const STRINGApiAttribute*>(&attribute) != nullptr ? "sample" : "";
}

/** Sets every argument of a call. */
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

TEST_F(Script, ExecutesOrRejectsEveryCommandOfTheCatalogue) {
    std::set<std::string> rejected;
    for (const auto& [key, create] : APIObjectFactory<BASEApiMethod>::Instance().GetCreators()) {
        Use(BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702));
        const std::unique_ptr<BASEApiMethod> call(create());
        const Selection selection = *Catalogue::Builtin().FindRequestable(call->GetObjectName());
        const std::string list = Run("get " + selection.Name());
        FillIn(*call, selection.Name() == "Tessera" ? "64702" : "64702." + list.substr(0, list.find(' ')));
        ChannelToSimulator channel(*simulator_);
        call->SetChannel(&channel);
        const std::unique_ptr<BASEApiMethodReturn> response(call->ExecuteWithSession(kTestKey, nullptr, ""));
        if (response != nullptr && !response->GetSuccessful()) {
            rejected.insert(call->GetObjectName() + " " + call->GetCommandName() + " " +
                            response->GetErrorCode());
        }
    }
    EXPECT_THAT(rejected,
                testing::ElementsAre("Tessera Add TesseraError", "Tessera AddController TesseraError",
                                     "Tessera ChangeExpiredPassword TesseraError",
                                     "Tessera FactoryReset AuthorizationError",
                                     "Tessera GetCarryVolumeEncryptionSecurityKey CarryVolumeNodeError",
                                     "Tessera Recommend ObjectNotAvailable", "Tessera Remove TesseraError",
                                     "TsDisk Delete TesseraError", "TsDiskFolder Delete TesseraError",
                                     "TsDiskFolder StopRebalance TesseraError",
                                     "TsEnclosure Delete TesseraError", "TsVolume AllocationMap TesseraError",
                                     "TsVolume ExpandToSize InvalidValue", "TsVolume Restore TesseraError"));
}

TEST_F(Script, RelationsReturnObjectsOrAnError) {
    size_t leading = 0;
    for (const ASSOCIATIONEntry& entry : GetAssociations()) {
        const std::string object(entry.object), relation(entry.relation);
        const std::string list = Run("get " + object);
        const std::string ids = Related(
            object, relation, object == "Tessera" ? "64702" : "64702." + list.substr(0, list.find(' ')));
        leading += ids.starts_with("64702") ? 1 : 0;
        EXPECT_TRUE(ids.starts_with(relation == "Tessera" ? "64702 " : "64702") ||
                    ids.starts_with(relation.ends_with("List") ? "" : "ObjectNotAvailable: "))
            << object << " " << relation << " " << ids;
    }
    EXPECT_GT(leading, 75u);
    Play(R"(
related TsDisk Enclosure 64702.3 => 64702.2
related TsEnclosure IoModuleList 64702.2 => 64702.3 64702.4
related TsController CacheCard 64702.3 => 64702.3
related TsControllerFanSensor Controller 64702.9 => 64702.3
related TsDisk FruTicket 64702.3 => ObjectNotAvailable: TsDisk 64702.3 has no FruTicket
related TsDisk Enclosure 64702.99 => ObjectNotAvailable: TsDisk 64702.99 does not exist
remove TsEnclosure 2
related TsDisk Enclosure 64702.3 => ObjectNotAvailable: TsDisk 64702.3 has no Enclosure
)");
}

// ---- failures and events ----

/** The indexes of the preset differ from its rows, so that confusing them causes failures. */
TEST_F(Script, ReportsChangesOfStatus) {
    Play(R"(
fail TsController 3 Degraded => 37 4 8 203 3 0 0 0
fail TsController 3 Degraded
recover TsController 3 => 37 4 8 203 3 0 0 5
fail TsControllerCacheCard 3 => 29 1 47 210 2 0 0 0
fail TsControllerFanSensor 9 => 29 1 98 204 2 1 8 0
recover TsControllerFanSensor 3 => 29 1 98 204 1 1 2 5
fail TsControllerPowerSupply 8 => 29 1 43 204 2 2 2 0
fail TsEnclosureCoolingFanSensor 3 => 12 5 28 206 2 1 2 0
fail TsDisk 5 => 13 1 37 202 5 0 0 0 | 18 24 14 207 1 0 0 0
fail TsDisk 3 => 13 1 37 202 3 0 0 0
recover TsDisk 5 => 13 1 37 202 5 0 0 5
recover TsDisk 3 => 13 1 37 202 3 0 0 5 | 18 24 14 207 1 0 0 5
fail TsServerCluster 6 => 23 1 301 209 6 0 0 0
set Tessera 1 PortsBalanced False => 7 7 7 211 1 0 0 0
set Tessera 1 PortsBalanced True => 7 7 7 211 1 0 0 5
set TsVolume 3 Status Sideways => 15 1 60 208 3 0 0 0
set TsVolume 3 Name other
unset TsVolume 3 Status
remove TsEnclosure 2
fail TsEnclosureIoModule 3
)");
}

TEST_F(Script, AFailureAffectsEverythingThatContainsTheObject) {
    Use(BuildPreset(Catalogue::Builtin(), *FindPreset("typical"), 1, 64702));
    for (const char* command :
         {"recover TsDisk 11", "recover TsEnclosureCoolingFanSensor 4", "fail TsDisk 2"}) {
        Run(command);
    }
    Play(R"(
expect TsDisk 2 Healthy False
expect TsDisk 2 StatusMessage Contact with the disk was lost
expect TsEnclosure 2 Status Up
expect TsEnclosure 2 ChildStatus Down
expect TsEnclosure 2 StatusDescription Attention: 1 of its parts are not Up
expect TsDiskFolder 3 UnhealthyCount 1
expect TsDiskFolder 3 Status Degraded
expect Tessera 1 Status Degraded
)");
    const std::string alerts = Run("get TsAlert");
    const std::string latest = alerts.substr(alerts.rfind(" | ") + 3);
    const std::string alert = "expect TsAlert " + latest.substr(0, latest.find(' '));
    EXPECT_EQ(Run(alert + " Message Disk '02-01' is down"), "");
    EXPECT_EQ(Run(alert + " Active True"), "");
    Run("recover TsDisk 2");
    EXPECT_EQ(Run(alert + " Active False"), "");
    Play("expect TsEnclosure 2 ChildStatus Up\nexpect TsDiskFolder 3 UnhealthyCount 0\n");

    for (const auto& [command, status] : {std::pair{"fail TsController 2", "Degraded"},
                                          {"fail TsController 3", "Down"},
                                          {"recover TsController 2", "Degraded"}}) {
        Run(command);
        EXPECT_EQ(Run(std::string("expect Tessera 1 Status ") + status), "") << command;
    }
}

TEST_F(Script, AnEventIsOneLineThatTheDaemonReadsCompletely) {
    const auto event_of = [this](const std::string& command) {
        Run(command);
        return events_.empty() ? "none" : events_.back();
    };
    EXPECT_EQ(event_of("fail TsDisk 3"),
              "18 24 14 207 1 0 0 0 64702.1 TsDiskFolder@@@Disk folder 'Größe & Übung 2' is degraded");
    Run("set TsVolume 6 InstanceName \"two\\nlines\"");
    EXPECT_EQ(event_of("fail TsVolume 6"),
              "15 1 60 208 6 0 0 0 64702.6 TsVolume@@@Volume 'two lines' is down");

    // The limit of 500 bytes is within the last character.
    const std::string head = "15 1 60 208 7 0 0 0 64702.7 TsVolume@@@Volume '";
    std::string name(kMaximumTrapCommand - head.size() - 1, 'x');
    Run("set TsVolume 7 InstanceName " + name + "ö");
    EXPECT_EQ(event_of("fail TsVolume 7"), head + name);

    EXPECT_EQ(event_of("event \"4 4 4 1 0 0 0 0 \""), "4 4 4 1 0 0 0 0 ");
    EXPECT_EQ(event_of("misc the clock was set"), "0 0 0 201 0 0 0 0 64702@@@the clock was set");
    EXPECT_EQ(event_of("scsi 3 4 12"),
              "0 0 0 213 12 3 4 0 64702@@@SCSI initiator device of type 3 has status 4");
    EXPECT_THAT(Run("stats"), testing::EndsWith("counts of the sender"));
}

}  // namespace
