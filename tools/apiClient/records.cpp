#include "tools/apiClient/records.h"

#include <algorithm>

#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

namespace {

constexpr uint32_t kWidthWithoutDescriptor = 20;

Result ValueResult(Result::ValueKind kind, std::string value) {
    Result result;
    result.kind = Result::kValue;
    result.value = std::move(value);
    result.value_kind = kind;
    return result;
}

template <class Objects>
Result RecordResult(bool is_list, const Objects& objects, size_t skipped) {
    Result result;
    result.kind = is_list ? Result::kList : Result::kOne;
    result.skipped = skipped;
    for (const auto& object : objects) {
        result.records.push_back(
            {object->GetObjectName(), &object->GetAttributeList(), &object->GetAttributes()});
    }
    return result;
}

Result MaskResult(const ENUMMaskMethodReturn& mask) {
    std::string identifiers;
    for (const ENUMMaskMethodReturn::Row& row : mask.GetRows()) {
        identifiers += (identifiers.empty() ? "" : " ") + row.Description;
    }
    return ValueResult(Result::kString, identifiers);
}

Column ColumnOf(const BASEApiAttribute& attribute) {
    const std::string& label = attribute.GetLabel();
    return {attribute.GetXmlName(), label.empty() ? attribute.GetXmlName() : label,
            attribute.GetProperties().displayWidth, &attribute};
}

bool Contains(const std::vector<Column>& columns, std::string_view name) {
    return std::ranges::any_of(columns, [&](const Column& column) { return column.name == name; });
}

void AddColumn(std::vector<Column>& columns, const Column& column) {
    if (!Contains(columns, column.name)) {
        columns.push_back(column);
    }
}

/** The columns of the classes, whether or not a record has a value. */
std::vector<Column> KnownColumns(const std::vector<Record>& records) {
    std::vector<Column> known;
    const ATTRIBUTEList* last = nullptr;
    for (const Record& record : records) {
        if (record.descriptors != last) {
            last = record.descriptors;
            for (const BASEApiAttribute* attribute : *last) {
                AddColumn(known, ColumnOf(*attribute));
            }
        }
    }
    return known;
}

/** The names of all values, each once. */
ATTRIBUTEMap PresentNames(const std::vector<Record>& records) {
    ATTRIBUTEMap present;
    for (const Record& record : records) {
        for (const auto& [name, value] : *record.values) {
            if (!present.Contains(name)) {
                present.Set(name, "");
            }
        }
    }
    return present;
}

bool IsLess(const Column& column, const std::string& left, const std::string& right) {
    if (left.empty() || right.empty()) {
        return !left.empty();
    }
    const auto is_filtered = [&](const std::string& lower, const std::string& upper) {
        const FILTERItem item{.name = column.name, .value = upper, .filterOperator = filter_operator::kLess};
        return column.descriptor != nullptr && column.descriptor->MatchesFilter(item, lower);
    };
    if (is_filtered(left, right) || is_filtered(right, left)) {
        return is_filtered(left, right);
    }
    return CompareNoCase(left, right) < 0;
}

}  // namespace

std::string Record::Value(std::string_view attribute) const {
    return std::string(values->Find(attribute).value_or(std::string_view()));
}

Result ResultOf(const BASEApiMethodReturn* response) {
    if (const auto* boolean = dynamic_cast<const BOOLMethodReturn*>(response)) {
        return ValueResult(Result::kBoolean, boolean->value ? "True" : "False");
    }
    if (const auto* number = dynamic_cast<const INTMethodReturn*>(response)) {
        return ValueResult(Result::kNumber, std::to_string(number->value));
    }
    if (const auto* string = dynamic_cast<const STRINGMethodReturn*>(response)) {
        return ValueResult(Result::kString, string->value);
    }
    if (const auto* enumeration = dynamic_cast<const ENUMMethodReturn*>(response)) {
        return ValueResult(Result::kString, enumeration->value);
    }
    if (const auto* mask = dynamic_cast<const ENUMMaskMethodReturn*>(response)) {
        return MaskResult(*mask);
    }
    if (const auto* objects = dynamic_cast<const COMPObjectMethodReturn*>(response)) {
        return RecordResult(objects->isArray, objects->GetObjects(), objects->skippedCount);
    }
    if (const auto* objects = dynamic_cast<const METHODObjectMethodReturn*>(response)) {
        return RecordResult(objects->isArray, objects->objects, objects->skippedCount);
    }
    return {};
}

std::vector<Column> AllColumns(const std::vector<Record>& records) {
    const ATTRIBUTEMap present = PresentNames(records);
    std::vector<Column> columns = KnownColumns(records);
    std::erase_if(columns, [&](const Column& column) { return !present.Contains(column.name); });
    for (const auto& [name, nothing] : present) {
        AddColumn(columns, {std::string(name), std::string(name), kWidthWithoutDescriptor, nullptr});
    }
    return columns;
}

std::vector<Column> NamedColumns(const std::vector<Record>& records, const std::vector<std::string>& names) {
    const std::vector<Column> all = AllColumns(records);
    std::vector<Column> known = all;
    for (const Column& column : KnownColumns(records)) {
        AddColumn(known, column);
    }
    std::vector<Column> columns;
    for (const std::string& name : names) {
        if (CompareNoCase(name, kAllColumns) == 0) {
            for (const Column& column : all) {
                AddColumn(columns, column);
            }
        } else if (const Column* column = FindNamed(known, name)) {
            AddColumn(columns, *column);
        } else if (!records.empty()) {
            throw commandline::UsageError(commandline::UnknownName(
                "column", name, NamesOf(known), "'all' shows all attributes of the response"));
        }
    }
    return columns;
}

void SortRecords(std::vector<Record>& records, const std::string& attribute) {
    const std::vector<Column> columns = NamedColumns(records, {attribute});
    std::vector<Record> sorted;
    for (std::vector<Record>& part : SplitByClass(records)) {
        std::ranges::stable_sort(part, [&](const Record& left, const Record& right) {
            return IsLess(columns[0], left.Value(columns[0].name), right.Value(columns[0].name));
        });
        std::ranges::move(part, std::back_inserter(sorted));
    }
    records = std::move(sorted);
}

std::vector<std::vector<Record>> SplitByClass(const std::vector<Record>& records) {
    std::vector<std::vector<Record>> parts;
    for (const Record& record : records) {
        if (parts.empty() || parts.back().front().descriptors != record.descriptors) {
            parts.emplace_back();
        }
        parts.back().push_back(record);
    }
    return parts;
}

}  // namespace apiclient
