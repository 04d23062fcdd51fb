#include "arraySim/model/model.h"

#include <algorithm>
#include <charconv>

namespace arraysim {

/** Clears the library's default attributes, because the rules of the kind define which exist. */
Object::Object(const Kind& of_kind) : BASEApiObject(of_kind.class_name), kind(&of_kind) {
    ClearAttributes();
}

std::optional<std::string_view> Object::Value(std::string_view attribute) const {
    return GetAttributes().Find(attribute);
}

std::string_view Object::Text(std::string_view attribute) const {
    return Value(attribute).value_or(std::string_view());
}

uint32_t Object::Number(std::string_view attribute) const {
    const std::string_view text = Text(attribute);
    uint32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

uint32_t Object::ParentIndex() const {
    return kind->parent ? Number(kind->attributes[*kind->parent].name()) : 0;
}

void Object::Put(std::string_view attribute, std::string_view value) {
    if (FindAttributeIn(kind->whole, attribute) != nullptr) {
        SetAttribute(attribute, value);
    }
}

bool Object::operator==(const Object& other) const {
    return kind == other.kind && index == other.index &&
           std::equal(GetAttributes().begin(), GetAttributes().end(), other.GetAttributes().begin(),
                      other.GetAttributes().end());
}

Model::Model(const Catalogue& catalogue, uint32_t serial)
    : catalogue_(&catalogue), serial_(serial), lists_(catalogue.lists().size()) {}

size_t Model::Count(const Selection& selection) const {
    const std::vector<Object>& objects = Objects(*selection.list);
    return static_cast<size_t>(std::count_if(objects.begin(), objects.end(), [&](const Object& object) {
        return selection.Matches(*object.kind);
    }));
}

/** Indexes usually ascend within a list, so a binary search comes first. In a list that was loaded from a
    file, or to which an object was added again, they can have any order. */
const Object* Model::Find(const Selection& selection, uint32_t index) const {
    const std::vector<Object>& objects = Objects(*selection.list);
    const auto is_wanted = [&](const Object& object) {
        return object.index == index && selection.Matches(*object.kind);
    };
    auto found = std::partition_point(objects.begin(), objects.end(),
                                      [&](const Object& object) { return object.index < index; });
    if (found == objects.end() || !is_wanted(*found)) {
        found = std::find_if(objects.begin(), objects.end(), is_wanted);
    }
    return found == objects.end() ? nullptr : &*found;
}

Object* Model::Find(const Selection& selection, uint32_t index) {
    return const_cast<Object*>(static_cast<const Model*>(this)->Find(selection, index));
}

Object* Model::Array() {
    std::vector<Object>& arrays = Objects(*catalogue_->KindOf("Tessera").list);
    return arrays.empty() ? nullptr : &arrays.front();
}

std::string Model::ArrayName() const {
    const std::vector<Object>& arrays = Objects(*catalogue_->KindOf("Tessera").list);
    return arrays.empty() ? "tessera" : std::string(arrays.front().Text("Name"));
}

Object& Model::Append(Object object) {
    return lists_[object.kind->list->position].emplace_back(std::move(object));
}

bool Model::Remove(const Selection& selection, uint32_t index) {
    const Object* object = Find(selection, index);
    if (object == nullptr) {
        return false;
    }
    std::vector<Object>& objects = Objects(*selection.list);
    objects.erase(objects.begin() + (object - objects.data()));
    return true;
}

uint32_t Model::NextIndex(const ObjectList& list) const {
    uint32_t next = 1;
    for (const Object& object : Objects(list)) {
        next = std::max(next, object.index + 1);
    }
    return next;
}

size_t Model::CountFor(const ValueRule& rule) const {
    const Selection counted = *catalogue_->Find(rule.text);
    if (rule.choices.empty()) {
        return Count(counted);
    }
    const std::vector<Object>& objects = Objects(*counted.list);
    return static_cast<size_t>(std::count_if(objects.begin(), objects.end(), [&](const Object& object) {
        for (size_t i = 0; i + 1 < rule.choices.size(); i += 2) {
            if (object.Text(rule.choices[i]) == rule.choices[i + 1]) {
                return true;
            }
        }
        return false;
    }));
}

void Model::UpdateCounts() {
    for (std::vector<Object>& objects : lists_) {
        for (Object& object : objects) {
            if (object.kind->list->table->rows > 1) {
                break;  // only single objects count others
            }
            for (const Attribute& attribute : object.kind->attributes) {
                if (attribute.rule.verb == ValueRule::Verb::kCount) {
                    object.Put(attribute.name(), std::to_string(CountFor(attribute.rule)));
                }
            }
        }
    }
}

bool Model::operator==(const Model& other) const {
    return serial_ == other.serial_ && lists_ == other.lists_;
}

}  // namespace arraysim
