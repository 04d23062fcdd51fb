#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"

/**
 * Writes the objects of a list. Objects of a class have the same attributes, mostly in the same positions, so
 * tags are composed once and positions are remembered: an alert list of a full array has hundreds of
 * thousands of values.
 */
class OBJECTWriter {
  public:
    /** If `object_form` is null, objects are written as their classes define. */
    explicit OBJECTWriter(const OBJECTForm* object_form);
    OBJECTWriter(const OBJECTWriter&) = delete;
    OBJECTWriter& operator=(const OBJECTWriter&) = delete;

    void Append(std::string& document, const BASEApiObject& object);

  private:
    /** An attribute: its tags, and its position in the previous object. */
    struct Column {
        const std::string& name;
        std::string opening;
        std::string closing;
        size_t position = 0;
    };
    /** Objects with the same element name and attributes. */
    struct Sort {
        const std::string* element;
        const ATTRIBUTEList* attributes;
        std::vector<Column> columns;
    };

    Sort& SortOf(const BASEApiObject& object);

    const OBJECTForm plain;
    const OBJECTForm& form;
    std::deque<Sort> sorts;
};
