#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/arraySim/catalogue.h"

namespace arraysim {

/** Attributes given by name, for an object that is made. */
using GivenValues = std::vector<std::pair<std::string, std::string>>;

/** One object of the array. An attribute without a value is left out of answers. */
struct Object {
    const Kind* kind = nullptr;
    uint32_t index = 0;                              ///< API index, the object's identity within its list
    std::vector<std::optional<std::string>> values;  ///< one for each attribute of the kind

    /** The text of an attribute; empty when the kind or the object lacks it. */
    std::string_view Text(std::string_view attribute) const;
    /** Does nothing when the kind lacks the attribute. */
    void Put(std::string_view attribute, std::string value);
};

/** The state of the array: every object, in the order of the answers. Not guarded by itself. */
class Model {
  public:
    Model(const Catalogue& catalogue, uint32_t serial);

    const Catalogue& catalogue() const { return *catalogue_; }
    uint32_t serial() const { return serial_; }

    const std::vector<Object>& Objects(const ObjectList& list) const { return lists_[list.position]; }
    std::vector<Object>& Objects(const ObjectList& list) { return lists_[list.position]; }

    size_t Count(const Selection& selection) const;
    const Object* Find(const Selection& selection, uint32_t index) const;
    Object* Find(const Selection& selection, uint32_t index);
    /** The one array object; null when the model has none. */
    Object* Array();
    /** Its name, or a stand-in. */
    std::string ArrayName() const;

    /** Appends an object to its list. */
    Object& Append(Object object);
    /** False when there is no such object. */
    bool Remove(const Selection& selection, uint32_t index);
    /** Above every index that the list holds. */
    uint32_t NextIndex(const ObjectList& list) const;

    /** Brings the attributes up to date that count other objects; called after each change. */
    void UpdateCounts();

    bool operator==(const Model& other) const;

  private:
    size_t CountFor(const Rule& rule) const;

    const Catalogue* catalogue_;
    uint32_t serial_;
    std::vector<std::vector<Object>> lists_;
};

}  // namespace arraysim
