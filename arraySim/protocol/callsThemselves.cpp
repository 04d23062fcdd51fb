#include <algorithm>
#include <cstdlib>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/folderDisks.h"
#include "arraySim/model/population.h"
#include "arraySim/protocol/callContext.h"

// Commands that data/calls.def leaves to themselves.

namespace arraysim {

namespace {

int64_t BlocksIn(std::string_view text) {
    return std::atoll(std::string(text).c_str());
}

// ---- Disks and folders ----

Answer ReleaseDisks(CallContext& context) {
    for (Object* disk : Referred(context, "ReleasedDisks")) {
        MoveDisk(context.model, *disk, nullptr);
    }
    return ObjectAnswer(context, nullptr);
}

/** They are the array's again, and in no folder yet. */
Answer RevertDisks(CallContext& context) {
    for (Object* disk : Referred(context, "RevertedDisks")) {
        disk->Put("Managed", "True");
        disk->Put("ControlType", "Managed");
    }
    return ObjectAnswer(context, nullptr);
}

Answer AddDisks(CallContext& context) {
    Object& folder = SubjectOf(context);
    for (Object* disk : Referred(context, "Disks")) {
        MoveDisk(context.model, *disk, &folder);
    }
    return ObjectAnswer(context, nullptr);
}

Answer RemoveDisks(CallContext& context) {
    const Object& folder = SubjectOf(context);
    const std::vector<Object*> disks = Referred(context, "Disks");
    for (const Object* disk : disks) {
        if (disk->Number("DiskFolderIndex") != folder.index) {
            throw ApiFailure("TesseraError", "TsDisk " + disk->GetInstanceId() + " is not in folder " +
                                                 folder.GetInstanceId());
        }
    }
    for (Object* disk : disks) {
        MoveDisk(context.model, *disk, nullptr);
    }
    return ObjectAnswer(context, nullptr);
}

Answer CreateFolder(CallContext& context) {
    const Kind& kind = context.model.catalogue().KindOf("TsDiskFolder");
    if (context.model.Objects(*kind.list).size() >= kind.list->Capacity()) {
        throw ApiFailure("TesseraError", "The array has no room for one more TsDiskFolder");
    }
    GivenValues values;
    if (context.call->HasAttribute("Name")) {
        values.emplace_back("Name", context.call->GetAttribute("Name"));
    }
    Object& folder = AddObject(context.model, kind, context.model.NextIndex(*kind.list), values);
    for (Object* disk : Referred(context, "DiskList")) {
        MoveDisk(context.model, *disk, &folder);
    }
    return ObjectAnswer(context, &folder);
}

// ---- Volumes ----

/** The volumes that a command for many names by their indexes. */
std::vector<Object*> ManyVolumes(const CallContext& context) {
    if (context.call->GetAttribute("TsSerialNumber") != std::to_string(context.model.serial())) {
        throw ApiFailure("InvalidTessera",
                         "Array " + context.call->GetAttribute("TsSerialNumber") + " is not known");
    }
    const auto& indexes =
        dynamic_cast<const INTARRAYApiAttribute&>(*context.call->FindAttribute("VolumeIndexes"));
    std::vector<Object*> volumes;
    for (const int64_t index : indexes.FromText(context.call->GetAttribute("VolumeIndexes"))) {
        volumes.push_back(&ObjectNamed(context.model, context.selection,
                                       std::to_string(context.model.serial()) + "." + std::to_string(index)));
    }
    return volumes;
}

/** From the last to the first, so that those still to go stay where they are. */
Answer DeleteMany(CallContext& context) {
    std::vector<Object*> volumes = ManyVolumes(context);
    std::sort(volumes.begin(), volumes.end(), std::greater<>());
    volumes.erase(std::unique(volumes.begin(), volumes.end()), volumes.end());
    for (const Object* volume : volumes) {
        if (volume->Text("DeleteAllowed") == "False") {
            throw ApiFailure("TesseraError", "TsVolume " + volume->GetInstanceId() + " may not be deleted");
        }
    }
    for (const Object* volume : volumes) {
        RemoveObject(context.model, *volume);
    }
    return ObjectAnswer(context, nullptr);
}

Answer RecycleMany(CallContext& context) {
    for (Object* volume : ManyVolumes(context)) {
        volume->Put("InRecycleBin", "True");
        volume->Put("Active", "False");
    }
    return ObjectAnswer(context, nullptr);
}

Answer SetSize(CallContext& context, Object& volume, int64_t blocks) {
    if (blocks <= BlocksIn(volume.Text("ConfiguredSize"))) {
        throw ApiFailure("InvalidValue", "TsVolume " + volume.GetInstanceId() + " can only become larger");
    }
    volume.Put("ConfiguredSize", std::to_string(blocks));
    return ObjectAnswer(context, nullptr);
}

Answer Expand(CallContext& context) {
    Object& volume = SubjectOf(context);
    return SetSize(
        context, volume,
        BlocksIn(volume.Text("ConfiguredSize")) + BlocksIn(context.call->GetAttribute("ExpandAmount")));
}

Answer ExpandToSize(CallContext& context) {
    Object& volume = SubjectOf(context);
    return SetSize(context, volume, BlocksIn(context.call->GetAttribute("NewSize")));
}

// ---- The array ----

Answer SupportedLanguages(CallContext& context) {
    std::string rows;
    for (const ENUMRow& row : APIApiMethodReturn::LocaleAttribute().GetTable()) {
        rows += "<Row><Value>" + std::to_string(row.Value) + "</Value><Description>" +
                EscapeXml(std::string(row.Description), false) + "</Description><UiString>" +
                EscapeXml(std::string(row.UiString), false) + "</UiString></Row>";
    }
    Answer answer;
    answer.objects = 1;
    answer.result = std::make_unique<ENUMMaskMethodReturn>(rows, context.call.release());
    return answer;
}

struct SpecialCall {
    const char* object;
    const char* command;
    Answer (*answer)(CallContext& context);
};
constexpr SpecialCall kSpecialCalls[] = {
    {"Tessera", "GetSupportedLanguages", SupportedLanguages},
    {"TsDisk", "ReleaseDisk", ReleaseDisks},
    {"TsDisk", "RevertToManaged", RevertDisks},
    {"TsDiskFolder", "AddDisks", AddDisks},
    {"TsDiskFolder", "Create", CreateFolder},
    {"TsDiskFolder", "RemoveDisks", RemoveDisks},
    {"TsVolume", "DeleteMany", DeleteMany},
    {"TsVolume", "Expand", Expand},
    {"TsVolume", "ExpandToSize", ExpandToSize},
    {"TsVolume", "RecycleMany", RecycleMany},
};

}  // namespace

Answer AnswerItself(CallContext& context) {
    for (const SpecialCall& each : kSpecialCalls) {
        if (context.call->GetObjectName() == each.object && context.call->GetCommandName() == each.command) {
            return each.answer(context);
        }
    }
    throw CatalogueError("no command carries itself out as " + context.call->GetObjectName() + " " +
                         context.call->GetCommandName());
}

}  // namespace arraysim
