#include "arraySim/control/commandRunner.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/population.h"

namespace arraysim {

namespace {

std::string NameOf(const Selection& selection, uint32_t index) {
    return selection.Name() + " " + std::to_string(index);
}

Object& ObjectOf(Model& model, const Command& command) {
    Object* object = model.Find(command.selection, *command.index);
    if (object == nullptr) {
        throw CommandError("there is no " + NameOf(command.selection, *command.index));
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

/** An object with an attribute that may be changed. */
Object& ChangeableObject(Model& model, const Command& command) {
    Object& object = ObjectOf(model, command);
    const size_t position = AttributeOf(object, command);
    if (object.kind->key == position) {
        throw CommandError(command.attribute +
                           " is what the object is known by; the fault no-index leaves it out");
    }
    if (object.kind->attributes[position].rule.verb == Rule::Verb::kCount) {
        throw CommandError(command.attribute + " follows the model and cannot be set");
    }
    return object;
}

std::string Set(Model& model, const Command& command) {
    ChangeableObject(model, command).Put(command.attribute, command.text);
    model.UpdateCounts();
    return {};
}

std::string Unset(Model& model, const Command& command) {
    ChangeableObject(model, command).RemoveAttribute(command.attribute);
    model.UpdateCounts();
    return {};
}

std::string Add(Model& model, const Command& command) {
    const Kind& kind = *command.selection.kind;
    uint32_t index = 1;
    if (kind.key) {
        index = command.index ? *command.index : model.NextIndex(*kind.list);
    }
    const Selection list{kind.list, nullptr};
    if (model.Find(list, index) != nullptr) {
        throw CommandError("there is a " + NameOf(list, index) + " already");
    }
    AddObject(model, kind, index, command.values);
    return std::to_string(index) + "\n";
}

std::string Remove(Model& model, const Command& command) {
    RemoveObject(model, ObjectOf(model, command));
    return {};
}

std::string Get(const Model& model, const Command& command) {
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

std::string Expect(Model& model, const Command& command) {
    const std::optional<std::string> value = ValueOf(model, command);
    if (value != command.text) {
        throw CommandError(NameOf(command.selection, *command.index) + " " + command.attribute +
                           ": expected '" + command.text + "', found " +
                           (value ? "'" + *value + "'" : "nothing"));
    }
    return {};
}

std::string List(const Model& model) {
    std::string text;
    for (const Kind& kind : model.catalogue().kinds()) {
        text += FormatString("%-30s %6zu\n", kind.name.c_str(), model.Count({kind.list, &kind}));
    }
    return text;
}

std::string Dump(const Model& model, const std::string& path) {
    if (path.empty()) {
        return WriteModel(model);
    }
    WriteModelFile(model, path);
    return {};
}

std::string Clear(FaultList& faults, const std::string& name) {
    const size_t cleared = faults.Clear(name);
    return std::to_string(cleared) + (cleared == 1 ? " fault" : " faults") + " cleared\n";
}

/** Where every kind of the list has a status, an object has one too. */
std::string Fail(Model& model, const Command& command) {
    FailObject(model, ObjectOf(model, command), command.condition);
    model.UpdateCounts();
    return {};
}

std::string Recover(Model& model, const Command& command) {
    RecoverObject(model, ObjectOf(model, command));
    return {};
}

std::string Run(CommandWorld& world, const Command& command) {
    switch (command.verb) {
        case Verb::kSet:
            return Set(world.model, command);
        case Verb::kUnset:
            return Unset(world.model, command);
        case Verb::kFail:
            return Fail(world.model, command);
        case Verb::kRecover:
            return Recover(world.model, command);
        case Verb::kAdd:
            return Add(world.model, command);
        case Verb::kRemove:
            return Remove(world.model, command);
        case Verb::kGet:
            if (!command.index) {
                return Get(world.model, command);
            }
            return command.attribute.empty() ? GetObject(ObjectOf(world.model, command))
                                             : GetValue(world.model, command);
        case Verb::kExpect:
            return Expect(world.model, command);
        case Verb::kList:
            return List(world.model);
        case Verb::kDump:
            return Dump(world.model, command.text);
        case Verb::kLoad:
            world.model = ReadModelFile(world.model.catalogue(), command.text);
            return {};
        case Verb::kFault:
            world.faults.Add(command.fault);
            return {};
        case Verb::kFaults:
            return world.faults.Describe();
        case Verb::kClear:
            return Clear(world.faults, command.text);
        case Verb::kStats:
            return world.statistics.Describe();
        case Verb::kHelp:
            return HelpText();
        case Verb::kEvent:
        case Verb::kMisc:
        case Verb::kScsi:
        case Verb::kSay:
        case Verb::kQuit:
            break;
    }
    return {};
}

}  // namespace

std::string RunCommand(CommandWorld& world, const Command& command) {
    try {
        return Run(world, command);
    } catch (const ModelFileError& error) {
        throw CommandError(error.what());
    }
}

}  // namespace arraysim
