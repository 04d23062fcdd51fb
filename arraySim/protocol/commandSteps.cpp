#include "arraySim/protocol/commandSteps.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/failures.h"
#include "arraySim/model/folderDisks.h"
#include "arraySim/model/objectMaker.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim::step {

namespace {

void Add(Object& subject, std::string_view attribute, int64_t change) {
    const int64_t count = int64_t{subject.Number(attribute)} + change;
    subject.Put(attribute, std::to_string(std::max<int64_t>(count, 0)));
}

/** Returns the arguments that are attributes of the kind, and the value that the step sets. */
GivenValues ValuesToCreate(const CallContext& context, const Object& subject, const Kind& kind,
                           const AttributeValue& given) {
    GivenValues values;
    for (const Attribute& attribute : kind.attributes) {
        const std::string& name = attribute.name();
        if (context.call->HasAttribute(name) && name != "InstanceId" && name != "ManagementApplication") {
            values.emplace_back(name, context.call->GetAttribute(name));
        }
    }
    const std::string text = ValueFor(context, subject, given.value);
    if (!text.empty()) {
        values.emplace_back(given.attribute, text);
    }
    return values;
}

Object& AddNew(Model& model, const Kind& kind, const GivenValues& values) {
    if (model.Objects(*kind.list).size() >= kind.list->table->Capacity()) {
        throw ApiFailure("TesseraError", "The array cannot hold another " + kind.name);
    }
    return AddObject(model, kind, model.NextIndex(*kind.list), values);
}

int64_t BlocksIn(std::string_view text) {
    return std::atoll(std::string(text).c_str());
}

/** Returns the volumes that a command for several of them lists by index. */
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

Response SetSize(CallContext& context, Object& volume, int64_t blocks) {
    if (blocks <= BlocksIn(volume.Text("ConfiguredSize"))) {
        throw ApiFailure("InvalidValue", "TsVolume " + volume.GetInstanceId() + " can only be enlarged");
    }
    volume.Put("ConfiguredSize", std::to_string(blocks));
    return ObjectResponse(context, nullptr);
}

}  // namespace

Result Unless(CallContext& context, Object& subject, const Step& step) {
    const std::string_view actual = subject.Text(step.first);
    if (actual == ValueFor(context, subject, step.second)) {
        throw ApiFailure("TesseraError", subject.kind->name + " " + std::string(subject.Text("InstanceId")) +
                                             " rejects the command: " + std::string(step.first) + " is " +
                                             std::string(actual));
    }
    return std::nullopt;
}

Result Set(CallContext& context, Object& subject, const Step& step) {
    subject.Put(step.first, ValueFor(context, subject, step.second));
    return std::nullopt;
}

Result Increment(CallContext&, Object& subject, const Step& step) {
    Add(subject, step.first, 1);
    return std::nullopt;
}

Result Decrement(CallContext&, Object& subject, const Step& step) {
    Add(subject, step.first, -1);
    return std::nullopt;
}

Result Recover(CallContext& context, Object& subject, const Step&) {
    RecoverObject(context.model, subject);
    return std::nullopt;
}

Result Fail(CallContext& context, Object& subject, const Step&) {
    FailObject(context.model, subject, Condition::kDown);
    return std::nullopt;
}

Result Remove(CallContext& context, Object& subject, const Step&) {
    RemoveObject(context.model, subject);
    return ObjectResponse(context, nullptr);
}

Result Create(CallContext& context, Object& subject, const Step& step) {
    const Kind& kind = context.model.catalogue().KindOf(step.first);
    return ObjectResponse(
        context,
        &AddNew(context.model, kind, ValuesToCreate(context, subject, kind, {step.second, step.third})));
}

Result Reply(CallContext& context, Object& subject, const Step& step) {
    const std::string text = ValueFor(context, subject, step.first);
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    Response response;
    response.objects = 1;
    if (text == "True" || text == "False") {
        response.result = std::make_unique<BOOLMethodReturn>(text == "True", context.call.release());
    } else if (error == std::errc() && end == text.data() + text.size()) {
        response.result = std::make_unique<INTMethodReturn>(number, context.call.release());
    } else {
        response.result = std::make_unique<STRINGMethodReturn>(text, context.call.release());
    }
    return response;
}

Result History(CallContext& context, Object& subject, const Step& step) {
    const Selection records = *context.model.catalogue().Find(step.first);
    const AttributeValue condition = {step.second, step.third};
    return ListResponse(context, ObjectsWith(context, subject, records, {&condition, 1}));
}

Result Reject(CallContext&, Object&, const Step& step) {
    throw ApiFailure(std::string(step.first), std::string(step.second));
}

Result Nothing(CallContext&, Object&, const Step&) {
    return std::nullopt;
}

// ---- Disks and folders ----

Result ReleaseDisks(CallContext& context, Object&, const Step&) {
    for (Object* disk : ReferencedObjects(context, "ReleasedDisks")) {
        MoveDisk(context.model, *disk, nullptr);
    }
    return ObjectResponse(context, nullptr);
}

/** Makes the disks managed again, but does not assign them to a folder. */
Result RevertDisks(CallContext& context, Object&, const Step&) {
    for (Object* disk : ReferencedObjects(context, "RevertedDisks")) {
        disk->Put("Managed", "True");
        disk->Put("ControlType", "Managed");
    }
    return ObjectResponse(context, nullptr);
}

Result AddDisks(CallContext& context, Object& folder, const Step&) {
    for (Object* disk : ReferencedObjects(context, "Disks")) {
        MoveDisk(context.model, *disk, &folder);
    }
    return ObjectResponse(context, nullptr);
}

Result RemoveDisks(CallContext& context, Object& folder, const Step&) {
    const std::vector<Object*> disks = ReferencedObjects(context, "Disks");
    for (const Object* disk : disks) {
        if (disk->Number("DiskFolderIndex") != folder.index) {
            throw ApiFailure("TesseraError", "TsDisk " + disk->GetInstanceId() + " is not in folder " +
                                                 folder.GetInstanceId());
        }
    }
    for (Object* disk : disks) {
        MoveDisk(context.model, *disk, nullptr);
    }
    return ObjectResponse(context, nullptr);
}

Result CreateFolder(CallContext& context, Object&, const Step&) {
    GivenValues values;
    if (context.call->HasAttribute("Name")) {
        values.emplace_back("Name", context.call->GetAttribute("Name"));
    }
    Object& folder = AddNew(context.model, context.model.catalogue().KindOf("TsDiskFolder"), values);
    for (Object* disk : ReferencedObjects(context, "DiskList")) {
        MoveDisk(context.model, *disk, &folder);
    }
    return ObjectResponse(context, &folder);
}

// ---- Volumes ----

/** Removes the last volume first, so that the indexes of the remaining ones do not change. */
Result DeleteVolumes(CallContext& context, Object&, const Step&) {
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
    return ObjectResponse(context, nullptr);
}

Result RecycleVolumes(CallContext& context, Object&, const Step&) {
    for (Object* volume : ManyVolumes(context)) {
        volume->Put("InRecycleBin", "True");
        volume->Put("Active", "False");
    }
    return ObjectResponse(context, nullptr);
}

Result ExpandVolume(CallContext& context, Object& volume, const Step&) {
    return SetSize(
        context, volume,
        BlocksIn(volume.Text("ConfiguredSize")) + BlocksIn(context.call->GetAttribute("ExpandAmount")));
}

Result ExpandVolumeToSize(CallContext& context, Object& volume, const Step&) {
    return SetSize(context, volume, BlocksIn(context.call->GetAttribute("NewSize")));
}

// ---- The array ----

Result SupportedLanguages(CallContext& context, Object&, const Step&) {
    std::string rows;
    for (const ENUMRow& row : APIApiMethodReturn::LocaleAttribute().GetTable()) {
        rows += "<Row><Value>" + std::to_string(row.Value) + "</Value><Description>" +
                EscapeXml(std::string(row.Description), false) + "</Description><UiString>" +
                EscapeXml(std::string(row.UiString), false) + "</UiString></Row>";
    }
    Response response;
    response.objects = 1;
    response.result = std::make_unique<ENUMMaskMethodReturn>(rows, context.call.release());
    return response;
}

}  // namespace arraysim::step
