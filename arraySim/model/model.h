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

/** Attributes given by name, for an object that is made. */
using GivenValues = std::vector<std::pair<std::string, std::string>>;

/**
 * One object of the array: an object of the API library whose class is told by its kind. Attributes are named
 * as the catalogue names them; one without a value is left out of answers.
 */
class Object : public BASEApiObject {
  public:
    explicit Object(const Kind& of_kind);

    const Kind* kind;
    uint32_t index = 1;  ///< API index, the object's identity within its list

    const std::string& GetObjectName() const override { return kind->class_name; }
    const ATTRIBUTEList& GetAttributeList() const override { return kind->whole; }

    /** None when the object lacks it. */
    std::optional<std::string_view> Value(std::string_view attribute) const;
    /** The same, with an empty text for none. */
    std::string_view Text(std::string_view attribute) const;
    /** The number that an attribute begins with, 0 for none. */
    uint32_t Number(std::string_view attribute) const;
    /** API index of the controller or enclosure; 0 for none. */
    uint32_t ParentIndex() const;
    /** Does nothing when the kind lacks the attribute. */
    void Put(std::string_view attribute, std::string_view value);

    bool operator==(const Object& other) const;
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
    size_t CountFor(const ValueRule& rule) const;

    const Catalogue* catalogue_;
    uint32_t serial_;
    std::vector<std::vector<Object>> lists_;
};

}  // namespace arraysim
