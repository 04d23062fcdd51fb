#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

class BASEApiMethodReturn;

namespace apiclient {

/** An object of a response, or a structured value. References the return object that it was made from. */
struct Record {
    std::string_view name;
    const ATTRIBUTEList* descriptors = nullptr;
    const ATTRIBUTEMap* values = nullptr;

    /** Returns an empty string if there is no such attribute. */
    std::string Value(std::string_view attribute) const;
};

/** The content of a response: records, or a single value. */
struct Result {
    enum Kind { kNothing, kValue, kOne, kList };
    enum ValueKind { kString, kNumber, kBoolean };

    Kind kind = kNothing;
    std::vector<Record> records;
    size_t skipped = 0;              ///< objects of the response whose classes the library does not know
    std::string value;               ///< of kValue
    ValueKind value_kind = kString;  ///< of kValue: its type in JSON
};

/** A column name that stands for all columns. */
inline constexpr char kAllColumns[] = "all";

/** An attribute to show. */
struct Column {
    std::string name;
    std::string label;
    uint32_t width = 0;
    const BASEApiAttribute* descriptor = nullptr;  ///< null for an attribute that its class does not know
};

/** Converts what a call has returned. response: null for a success without a result. */
Result ResultOf(const BASEApiMethodReturn* response);

/** Returns all attributes that a record has: in the order of the class, then those that the class does not
 * know. */
std::vector<Column> AllColumns(const std::vector<Record>& records);

/**
 * Returns the columns with these case-insensitive names, in the order of the names; "all" stands for all
 * columns. Throws UsageError for a name that neither the records' classes nor their values have. Without
 * records, there are no columns.
 */
std::vector<Column> NamedColumns(const std::vector<Record>& records, const std::vector<std::string>& names);

/**
 * Sorts the records of each class by an attribute, in the order in which filters compare it, and if they do
 * not, in case-insensitive order. Records without a value come last. Throws UsageError for an unknown
 * attribute.
 */
void SortRecords(std::vector<Record>& records, const std::string& attribute);

/** Splits records where the class changes, since each class has its own columns. */
std::vector<std::vector<Record>> SplitByClass(const std::vector<Record>& records);

}  // namespace apiclient
