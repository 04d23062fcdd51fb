#include "tools/arraySim/model.h"

#include <algorithm>

namespace arraysim {

std::string_view Object::Text(std::string_view attribute) const {
    const std::optional<size_t> position = kind->FindAttribute(attribute);
    if (!position || !values[*position]) {
        return {};
    }
    return *values[*position];
}

void Object::Put(std::string_view attribute, std::string value) {
    if (const std::optional<size_t> position = kind->FindAttribute(attribute)) {
        values[*position] = std::move(value);
    }
}

Model::Model(const Catalogue& catalogue, uint32_t serial)
    : catalogue_(&catalogue), serial_(serial), lists_(catalogue.lists().size()) {}

size_t Model::Count(const Selection& selection) const {
    const std::vector<Object>& objects = Objects(*selection.list);
    return static_cast<size_t>(std::count_if(objects.begin(), objects.end(), [&](const Object& object) {
        return selection.Matches(*object.kind);
    }));
}

const Object* Model::Find(const Selection& selection, uint32_t index) const {
    for (const Object& object : Objects(*selection.list)) {
        if (object.index == index && selection.Matches(*object.kind)) {
            return &object;
        }
    }
    return nullptr;
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

size_t Model::CountFor(const Rule& rule) const {
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
            if (object.kind->list->rows > 1) {
                break;  // only single objects count others
            }
            for (size_t i = 0; i < object.values.size(); ++i) {
                const Rule& rule = object.kind->attributes[i].rule;
                if (rule.verb == Rule::Verb::kCount) {
                    object.values[i] = std::to_string(CountFor(rule));
                }
            }
        }
    }
}

bool Model::operator==(const Model& other) const {
    return serial_ == other.serial_ &&
           std::equal(lists_.begin(), lists_.end(), other.lists_.begin(), other.lists_.end(),
                      [](const std::vector<Object>& left, const std::vector<Object>& right) {
                          return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                                            [](const Object& one, const Object& two) {
                                                return one.kind == two.kind && one.index == two.index &&
                                                       one.values == two.values;
                                            });
                      });
}

}  // namespace arraysim
