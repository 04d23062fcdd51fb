#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "arraySim/model/catalogueReader.h"
#include "arraySim/model/ruleParser.h"

// What a kind has before the first line about it, and what must hold after the last.

namespace arraysim {

namespace {

/** What names an object or its parent, and how it is, is never left out of a reduced object. */
bool IsAlwaysReduced(const std::string& attribute) {
    return attribute == "Index" || attribute == "ControllerIndex" || attribute == "EnclosureIndex" ||
           attribute == "DiskIndex" || attribute == "Status";
}

/** Null when the catalogue knows no such object. */
std::unique_ptr<BASEApiObject> NewApiObject(const std::string& name) {
    return APIObjectFactory<BASEApiObject>::Instance().Create(name);
}

}  // namespace

void CatalogueReader::TakeAttributes(Kind& kind) const {
    std::unique_ptr<BASEApiObject> object = NewApiObject(kind.name);
    if (!object) {
        object = NewApiObject(kind.list->name);
    }
    if (!object) {
        Fail("the API has no object '" + kind.name + "'");
    }
    kind.class_name = object->GetObjectName();
    kind.element_name = kind.name;
    if (kind.name.starts_with("Ts")) {
        kind.element_name[0] = 't';
    }
    for (const BASEApiAttribute* descriptor : object->GetAttributeList()) {
        kind.attributes.push_back({descriptor, {}, IsAlwaysReduced(descriptor->GetXmlName())});
    }
    for (Attribute& attribute : kind.attributes) {
        attribute.rule = DefaultRule(kind, *attribute.descriptor);
    }
}

void CatalogueReader::CheckEvent(const Kind& kind) const {
    const std::optional<EventRule>& event = kind.list->event;
    if (!event) {
        return;
    }
    if (!kind.HasAttribute(event->attribute)) {
        Fail(kind.name + ": its event watches '" + event->attribute + "', which it has not");
    }
    for (const EventArgument& argument : event->arguments) {
        const bool of_parent = argument.what == EventArgument::What::kParentIndex ||
                               argument.what == EventArgument::What::kParentRow;
        if (of_parent && !kind.parent) {
            Fail(kind.name + ": its event speaks of a parent, which it has not");
        }
    }
}

void CatalogueReader::FinishKind(Kind& kind) {
    const std::string key = keys_.count(kind.name) > 0 ? keys_[kind.name] : "Index";
    if (key != "nothing") {
        kind.key = kind.FindAttribute(key);
        if (!kind.key) {
            Fail(kind.name + " has no attribute '" + key + "' to be keyed by");
        }
    }
    for (size_t i = 0; i < kind.attributes.size(); ++i) {
        const Attribute& attribute = kind.attributes[i];
        const Rule& rule = attribute.rule;
        kind.whole.push_back(attribute.descriptor);
        if (attribute.in_reduced) {
            kind.reduced.push_back(attribute.descriptor);
        }
        if (rule.verb == Rule::Verb::kParent) {
            kind.parent = i;
        }
        const std::optional<size_t> source = kind.FindAttribute(rule.text);
        if (rule.verb == Rule::Verb::kSame && (!source || *source >= i)) {
            Fail(kind.name + ": '" + rule.text + "' does not stand above " + attribute.name());
        }
        if (rule.verb == Rule::Verb::kCount && !catalogue_.Find(rule.text)) {
            Fail(kind.name + ": nothing to count is named '" + rule.text + "'");
        }
    }
}

}  // namespace arraysim
