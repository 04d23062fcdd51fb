#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

class BASEApiMethodReturn;

/** An object of an answer, or a structured value. Lent by the answer. */
struct Record {
    std::string_view name;
    const ATTRIBUTEList* descriptors = nullptr;
    const ATTRIBUTEMap* values = nullptr;

    /** Empty when it is absent. */
    std::string Value(std::string_view attribute) const;
};

/** What an answer holds: records, or one value alone. */
struct Result {
    enum Kind { kNothing, kValue, kOne, kList };
    Kind kind = kNothing;
    std::vector<Record> records;
    /** Of kValue: the text of the value, and what JSON makes of it. */
    std::string value;
    enum ValueKind { kText, kNumber, kTruth } valueKind = kText;
};

/** In place of a column: all that an answer has. */
inline constexpr char kAllColumns[] = "all";

/** What to show of records, and how. */
struct Column {
    std::string name;
    std::string label;
    uint32_t width = 0;
    const BASEApiAttribute* descriptor = nullptr;  ///< null for an attribute that its class does not know
};

/** null: a success without a result. */
Result ResultOf(const BASEApiMethodReturn* answer);

/** All attributes that one of the records has: in the order of the class, and behind them those that it does
   not know. */
std::vector<Column> AllColumns(const std::vector<Record>& records);

/**
 * The columns with these names, letter case aside, in their order; "all" stands for all of them. Throws
 * UsageError for a name that neither the records' classes nor their values know. No records: no columns.
 */
std::vector<Column> NamedColumns(const std::vector<Record>& records, const std::vector<std::string>& names);

/** The runs of records of one class, which a table shows under one head. */
std::vector<std::vector<Record>> RunsOfRecords(const std::vector<Record>& records);
