#include "arraySim/model/catalogue.h"

#include <strings.h>

#include "arraySim/model/catalogueReader.h"
#include "arraySim/model/dataFiles.h"

namespace arraysim {

namespace {

constexpr size_t kControllers = 2;
constexpr size_t kEnclosures = 100;

bool SameNoCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace

std::optional<size_t> Kind::FindAttribute(std::string_view attribute) const {
    for (size_t i = 0; i < attributes.size(); ++i) {
        if (SameNoCase(attributes[i].name(), attribute)) {
            return i;
        }
    }
    return std::nullopt;
}

std::string_view Kind::ParentKind() const {
    if (!parent) {
        return {};
    }
    return attributes[*parent].name() == "ControllerIndex" ? "TsController" : "TsEnclosure";
}

size_t ObjectList::Capacity() const {
    switch (per) {
        case ParentKind::kController:
            return rows * kControllers;
        case ParentKind::kEnclosure:
            return rows * kEnclosures;
        case ParentKind::kNone:
            break;
    }
    return rows;
}

Catalogue::Catalogue(std::string_view text) {
    CatalogueReader(*this).Read(text);
}

const Catalogue& Catalogue::Builtin() {
    static const Catalogue catalogue(kObjectsDef);
    return catalogue;
}

std::optional<Selection> Catalogue::Find(std::string_view name) const {
    for (const Kind& kind : kinds_) {
        if (SameNoCase(kind.name, name)) {
            return Selection{kind.list, &kind};
        }
    }
    for (const ObjectList& list : lists_) {
        if (SameNoCase(list.name, name)) {
            return Selection{&list, nullptr};
        }
    }
    return std::nullopt;
}

const Kind& Catalogue::KindOf(std::string_view name) const {
    const std::optional<Selection> selection = Find(name);
    if (!selection || selection->kind == nullptr) {
        throw CatalogueError("no kind of object is named " + std::string(name));
    }
    return *selection->kind;
}

bool Catalogue::IsRequestable(const Selection& selection) {
    return selection.kind == nullptr || selection.kind->HasClass();
}

std::optional<Selection> Catalogue::FindRequestable(std::string_view name) const {
    std::optional<Selection> selection = Find(name);
    if (!selection || selection->Name() != name || !IsRequestable(*selection)) {
        return std::nullopt;
    }
    return selection;
}

}  // namespace arraysim
