#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"

/**
 * Writes the objects of a list one after the other. Objects of a sort have the same attributes, mostly in the
 * same places, so tags are put together once and places are remembered: an alert list of a full array has
 * some hundred thousand values.
 */
class OBJECTWriter {
  public:
    /** form: null for that of the objects' classes. */
    explicit OBJECTWriter(const OBJECTForm* lent);
    OBJECTWriter(const OBJECTWriter&) = delete;
    OBJECTWriter& operator=(const OBJECTWriter&) = delete;

    void Append(std::string& document, const BASEApiObject& object);

  private:
    /** An attribute: its tags, and where the object before had it. */
    struct Column {
        const std::string& name;
        std::string opening;
        std::string closing;
        size_t position = 0;
    };
    /** Objects of one element with one list of attributes. */
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
