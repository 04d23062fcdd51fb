#include <algorithm>
#include <charconv>

#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"
#include "arraySim/model/incidents.h"
#include "arraySim/model/population.h"
#include "arraySim/protocol/callContext.h"

// Calls that change the array: Modify, and the steps of data/calls.def.

namespace arraysim {

namespace {

using What = Clause::What;

std::string NameOf(const CallContext& context, const Object& object) {
    return context.selection.Name() + " " + std::string(object.Text("InstanceId"));
}

/** A locked instance is changed only by the application that has locked it. */
void CheckLock(const CallContext& context, const Object& subject) {
    const std::string_view owner = subject.Text("ManagementApplication");
    if (context.call->ChangesState() && !owner.empty() &&
        context.call->GetAttribute("ManagementApplication") != owner) {
        throw ApiFailure("TesseraError",
                         NameOf(context, subject) + " is locked by '" + std::string(owner) + "'");
    }
}

void CheckUnless(const CallContext& context, const Object& subject, const Assignments& conditions) {
    for (const auto& [attribute, value] : conditions) {
        if (subject.Text(attribute) == ValueFor(context, subject, value)) {
            throw ApiFailure("TesseraError", subject.kind->name + " " +
                                                 std::string(subject.Text("InstanceId")) + " refuses: its " +
                                                 attribute + " is " + std::string(subject.Text(attribute)));
        }
    }
}

void CountUp(Object& subject, const std::string& attribute, int64_t step) {
    const int64_t count = int64_t{subject.Number(attribute)} + step;
    subject.Put(attribute, std::to_string(std::max<int64_t>(count, 0)));
}

/** Every argument that is one of the attributes, and what the step says itself. */
GivenValues ValuesToCreate(const CallContext& context, const Object& subject, const Kind& kind,
                           const Assignments& assignments) {
    GivenValues values;
    for (const Attribute& attribute : kind.attributes) {
        const std::string& name = attribute.name();
        if (context.call->HasAttribute(name) && name != "InstanceId" && name != "ManagementApplication") {
            values.emplace_back(name, context.call->GetAttribute(name));
        }
    }
    for (const auto& [attribute, value] : assignments) {
        const std::string text = ValueFor(context, subject, value);
        if (!text.empty()) {
            values.emplace_back(attribute, text);
        }
    }
    return values;
}

Answer Create(CallContext& context, const Object& subject, const Clause& clause) {
    const Kind& kind = context.model.catalogue().KindOf(clause.word);
    if (context.model.Objects(*kind.list).size() >= kind.list->Capacity()) {
        throw ApiFailure("TesseraError", "The array has no room for one more " + kind.name);
    }
    const uint32_t index = context.model.NextIndex(*kind.list);
    return ObjectAnswer(context, &AddObject(context.model, kind, index,
                                            ValuesToCreate(context, subject, kind, clause.assignments)));
}

Answer Say(CallContext& context, const std::string& text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    Answer answer;
    answer.objects = 1;
    if (text == "True" || text == "False") {
        answer.result = std::make_unique<BOOLMethodReturn>(text == "True", context.call.release());
    } else if (error == std::errc() && end == text.data() + text.size()) {
        answer.result = std::make_unique<INTMethodReturn>(number, context.call.release());
    } else {
        answer.result = std::make_unique<STRINGMethodReturn>(text, context.call.release());
    }
    return answer;
}

/** Steps that change the subject and do not end the command. */
void Change(const CallContext& context, Object& subject, const Clause& clause) {
    switch (clause.what) {
        case What::kUnless:
            CheckUnless(context, subject, clause.assignments);
            break;
        case What::kSet:
            for (const auto& [attribute, value] : clause.assignments) {
                subject.Put(attribute, ValueFor(context, subject, value));
            }
            break;
        case What::kMore:
            CountUp(subject, clause.word, 1);
            break;
        case What::kLess:
            CountUp(subject, clause.word, -1);
            break;
        case What::kUp:
            RecoverObject(context.model, subject);
            break;
        case What::kDown:
            FailObject(context.model, subject, Condition::kDown);
            break;
        case What::kRefuse:
            throw ApiFailure(clause.word, clause.text);
        default:
            break;
    }
}

bool AsksForRecords(const std::string& command) {
    return command.starts_with("GetHistorical") || command.starts_with("GetLatest");
}

/** Every object carries the array's name. */
void SpreadArrayName(Model& model, const std::string& name) {
    for (const ObjectList& list : model.catalogue().lists()) {
        for (Object& object : model.Objects(list)) {
            object.Put("TsName", name);
        }
    }
}

bool IsNamedByName(const Kind& kind) {
    const std::optional<size_t> position = kind.FindAttribute("InstanceName");
    return position && kind.attributes[*position].rule.text == "Name";
}

}  // namespace

void ChangeAttribute(Model& model, Object& object, const std::string& attribute, const std::string& value) {
    object.Put(attribute, value);
    if (attribute == "Name" && IsNamedByName(*object.kind)) {
        object.Put("InstanceName", value);
    }
    if (attribute == "Name" && &object == model.Array()) {
        SpreadArrayName(model, value);
    }
    // A reference has its index beside it: `Folder` and `FolderIndex`.
    const auto* reference =
        dynamic_cast<const OBJECTApiAttribute*>(FindAttributeIn(object.kind->whole, attribute));
    if (reference != nullptr) {
        const std::unique_ptr<APIObjectInstance> instance = reference->FromText(value);
        const std::string id = instance ? instance->instanceId : std::string();
        const size_t dot = id.find('.');
        object.Put(attribute + "Index", dot == std::string::npos ? "0" : id.substr(dot + 1));
    }
}

/** All attributes have been checked before the first is changed. */
Answer AnswerModify(CallContext& context) {
    Object& subject = SubjectOf(context);
    CheckLock(context, subject);
    size_t changes = 0;
    for (const Attribute& attribute : subject.kind->attributes) {
        const std::string& name = attribute.name();
        if (name != "InstanceId" && name != "ManagementApplication" && context.call->HasAttribute(name)) {
            ChangeAttribute(context.model, subject, name, context.call->GetAttribute(name));
            ++changes;
        }
    }
    if (changes == 0) {
        throw ApiFailure("InvalidArguments", "Nothing to modify was given");
    }
    return ObjectAnswer(context, nullptr);
}

Answer AnswerEffect(CallContext& context) {
    const std::string command = context.call->GetCommandName();
    Object& subject = SubjectOf(context);
    CheckLock(context, subject);
    const std::vector<Clause>* effect = CallTable::Builtin().FindEffect(context.selection.Name(), command);
    if (effect == nullptr && AsksForRecords(command)) {
        return ListAnswer(context, {});
    }
    if (effect == nullptr) {
        throw ApiFailure("MethodNotAvailable",
                         context.selection.Name() + " " + command + " is not carried out by this array");
    }
    for (const Clause& clause : *effect) {
        switch (clause.what) {
            case What::kCreate:
                return Create(context, subject, clause);
            case What::kSays:
                return Say(context, ValueFor(context, subject, clause.word));
            case What::kHistory:
                return ListAnswer(context,
                                  ObjectsWith(context, subject, *context.model.catalogue().Find(clause.word),
                                              clause.assignments));
            case What::kItself:
                return AnswerItself(context);
            case What::kRemove:
                RemoveObject(context.model, subject);
                return ObjectAnswer(context, nullptr);
            default:
                Change(context, subject, clause);
        }
    }
    context.model.UpdateCounts();
    return ObjectAnswer(context, nullptr);
}

}  // namespace arraysim
