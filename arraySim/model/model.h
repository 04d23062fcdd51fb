#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "arraySim/model/catalogue.h"

namespace arraysim {

/** Names and values of attributes for a new object. */
using GivenValues = std::vector<std::pair<std::string, std::string>>;

/**
 * One object of the array: an object of the API library whose kind defines its class. Attributes have the
 * names of the catalogue; one without a value is omitted from responses.
 */
class Object : public BASEApiObject {
  public:
    explicit Object(const Kind& of_kind);

    const Kind* kind;
    uint32_t index = 1;  ///< API index, the object's identity within its list

    const std::string& GetObjectName() const override { return kind->class_name; }
    const ATTRIBUTEList& GetAttributeList() const override { return kind->whole; }

    /** Returns none if the object lacks the attribute. */
    std::optional<std::string_view> Value(std::string_view attribute) const;
    /** Returns an empty string if the object lacks the attribute. */
    std::string_view Text(std::string_view attribute) const;
    /** Returns the number at the start of an attribute, or 0. */
    uint32_t Number(std::string_view attribute) const;
    /** Returns the API index of the controller or enclosure, or 0. */
    uint32_t ParentIndex() const;
    /** Sets an attribute. Does nothing if the kind lacks it. */
    void Put(std::string_view attribute, std::string_view value);

    bool operator==(const Object& other) const;
};

/** The state of the array: all objects, in the order of responses. Not thread-safe. */
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
    /** Returns the array object, or null if the model has none. */
    Object* Array();
    /** Returns its name, or a placeholder. */
    std::string ArrayName() const;

    /** Appends an object to its list. */
    Object& Append(Object object);
    /** Returns false if there is no such object. */
    bool Remove(const Selection& selection, uint32_t index);
    /** Returns an index larger than all in the list. */
    uint32_t NextIndex(const ObjectList& list) const;

    /** Updates the attributes that count other objects; call it after each change. */
    void UpdateCounts();

    bool operator==(const Model& other) const;

  private:
    size_t CountFor(const ValueRule& rule) const;

    const Catalogue* catalogue_;
    uint32_t serial_;
    std::vector<std::vector<Object>> lists_;
};

}  // namespace arraysim
