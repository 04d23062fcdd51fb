#include "arraySim/control/commandRunner.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/faultSyntax.h"
#include "arraySim/control/words.h"
#include "arraySim/model/failures.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

std::string NameOf(const Selection& selection, uint32_t index) {
    return selection.Name() + " " + std::to_string(index);
}

Object& ObjectOf(Model& model, const Command& command) {
    Object* object = model.Find(command.selection, *command.index);
    if (object == nullptr) {
        throw CommandError(NameOf(command.selection, *command.index) + " does not exist");
    }
    return *object;
}

size_t AttributeOf(const Object& object, const Command& command) {
    const std::optional<size_t> position = object.kind->FindAttribute(command.attribute);
    if (!position) {
        throw CommandError(object.kind->name + " has no attribute '" + command.attribute + "'");
    }
    return *position;
}

/** Returns the object. Throws CommandError if the attribute must not be changed. */
Object& ChangeableObject(Model& model, const Command& command) {
    Object& object = ObjectOf(model, command);
    const size_t position = AttributeOf(object, command);
    if (object.kind->key == position) {
        throw CommandError(command.attribute + " identifies the object; the fault no-index omits it");
    }
    if (object.kind->attributes[position].rule.verb == ValueRule::Verb::kCount) {
        throw CommandError(command.attribute + " is computed from the model and cannot be set");
    }
    return object;
}

std::string Set(CommandTargets& targets, const Command& command) {
    ChangeableObject(targets.model, command).Put(command.attribute, command.text);
    targets.model.UpdateCounts();
    return {};
}

std::string Unset(CommandTargets& targets, const Command& command) {
    ChangeableObject(targets.model, command).RemoveAttribute(command.attribute);
    targets.model.UpdateCounts();
    return {};
}

std::string Add(CommandTargets& targets, const Command& command) {
    Model& model = targets.model;
    const Kind& kind = *command.selection.kind;
    uint32_t index = 1;
    if (kind.key) {
        index = command.index ? *command.index : model.NextIndex(*kind.list);
    }
    const Selection list{kind.list, nullptr};
    if (model.Find(list, index) != nullptr) {
        throw CommandError(NameOf(list, index) + " already exists");
    }
    AddObject(model, kind, index, command.values);
    return std::to_string(index) + "\n";
}

std::string Remove(CommandTargets& targets, const Command& command) {
    RemoveObject(targets.model, ObjectOf(targets.model, command));
    return {};
}

std::string GetSummary(const Model& model, const Command& command) {
    std::string text;
    for (const Object& object : model.Objects(*command.selection.list)) {
        if (command.selection.Matches(*object.kind)) {
            text += FormatString("%-10u %-9s %s\n", object.index, std::string(object.Text("Status")).c_str(),
                                 std::string(object.Text("InstanceName")).c_str());
        }
    }
    return text;
}

std::string GetObject(const Object& object) {
    std::string text;
    for (const Attribute& attribute : object.kind->attributes) {
        if (const std::optional<std::string_view> value = object.Value(attribute.name())) {
            text += FormatString("%-36s %s\n", attribute.name().c_str(), std::string(*value).c_str());
        }
    }
    return text;
}

std::optional<std::string> ValueOf(Model& model, const Command& command) {
    const Object& object = ObjectOf(model, command);
    AttributeOf(object, command);
    return std::optional<std::string>(object.Value(command.attribute));
}

std::string GetValue(Model& model, const Command& command) {
    const std::optional<std::string> value = ValueOf(model, command);
    if (!value) {
        throw CommandError(NameOf(command.selection, *command.index) + " has no value for " +
                           command.attribute);
    }
    return *value + "\n";
}

std::string Get(CommandTargets& targets, const Command& command) {
    if (!command.index) {
        return GetSummary(targets.model, command);
    }
    return command.attribute.empty() ? GetObject(ObjectOf(targets.model, command))
                                     : GetValue(targets.model, command);
}

std::string Expect(CommandTargets& targets, const Command& command) {
    const std::optional<std::string> value = ValueOf(targets.model, command);
    if (value != command.text) {
        throw CommandError(NameOf(command.selection, *command.index) + " " + command.attribute +
                           ": expected '" + command.text + "', found " +
                           (value ? "'" + *value + "'" : "nothing"));
    }
    return {};
}

std::string List(CommandTargets& targets, const Command&) {
    const Model& model = targets.model;
    std::string text;
    for (const Kind& kind : model.catalogue().kinds()) {
        text += FormatString("%-30s %6zu\n", kind.name.c_str(), model.Count({kind.list, &kind}));
    }
    return text;
}

std::string Dump(CommandTargets& targets, const Command& command) {
    if (command.text.empty()) {
        return WriteModel(targets.model);
    }
    WriteModelFile(targets.model, command.text);
    return {};
}

std::string Load(CommandTargets& targets, const Command& command) {
    targets.model = ReadModelFile(targets.model.catalogue(), command.text);
    return {};
}

std::string AddFault(CommandTargets& targets, const Command& command) {
    targets.faults.Add(command.fault);
    return {};
}

std::string ListFaults(CommandTargets& targets, const Command&) {
    std::string text;
    for (const Fault& fault : targets.faults.faults()) {
        text += FaultCommand(fault) + '\n';
    }
    return text;
}

std::string ClearFaults(CommandTargets& targets, const Command& command) {
    const size_t cleared = targets.faults.Clear(command.text);
    return std::to_string(cleared) + (cleared == 1 ? " fault" : " faults") + " cleared\n";
}

std::string Fail(CommandTargets& targets, const Command& command) {
    FailObject(targets.model, ObjectOf(targets.model, command), command.condition);
    targets.model.UpdateCounts();
    return {};
}

std::string Recover(CommandTargets& targets, const Command& command) {
    RecoverObject(targets.model, ObjectOf(targets.model, command));
    return {};
}

std::string Stats(CommandTargets& targets, const Command&) {
    return targets.statistics.Describe();
}

std::string Help(CommandTargets&, const Command&) {
    return HelpText();
}

/** A command that acts on the CommandTargets. */
struct VerbAction {
    Verb verb;
    std::string (*run)(CommandTargets& targets, const Command& command);
};
constexpr VerbAction kActions[] = {
    {Verb::kSet, Set},           {Verb::kUnset, Unset},       {Verb::kFail, Fail},
    {Verb::kRecover, Recover},   {Verb::kAdd, Add},           {Verb::kRemove, Remove},
    {Verb::kGet, Get},           {Verb::kExpect, Expect},     {Verb::kList, List},
    {Verb::kDump, Dump},         {Verb::kLoad, Load},         {Verb::kFault, AddFault},
    {Verb::kFaults, ListFaults}, {Verb::kClear, ClearFaults}, {Verb::kStats, Stats},
    {Verb::kHelp, Help},
};

}  // namespace

std::string RunCommand(CommandTargets& targets, const Command& command) {
    const auto* action = std::find_if(std::begin(kActions), std::end(kActions),
                                      [&](const VerbAction& each) { return each.verb == command.verb; });
    try {
        return action == std::end(kActions) ? std::string() : action->run(targets, command);
    } catch (const ModelFileError& error) {
        throw CommandError(error.what());
    }
}

}  // namespace arraysim
