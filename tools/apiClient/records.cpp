#include "tools/apiClient/records.h"

#include <algorithm>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/usageError.h"

namespace {

constexpr uint32_t kWidthWithoutDescriptor = 20;

Result ValueResult(Result::ValueKind kind, std::string value) {
    Result result;
    result.kind = Result::kValue;
    result.value = std::move(value);
    result.valueKind = kind;
    return result;
}

template <class Objects>
Result RecordResult(bool is_list, const Objects& objects) {
    Result result;
    result.kind = is_list ? Result::kList : Result::kOne;
    for (const auto& object : objects) {
        result.records.push_back(
            {object->GetObjectName(), &object->GetAttributeList(), &object->GetAttributes()});
    }
    return result;
}

Result MaskResult(const ENUMMaskMethodReturn& mask) {
    std::string words;
    for (const ENUMMaskMethodReturn::Row& row : mask.GetRows()) {
        words += (words.empty() ? "" : " ") + row.Description;
    }
    return ValueResult(Result::kText, words);
}

Column ColumnOf(const BASEApiAttribute& attribute) {
    const std::string& label = attribute.GetLabel();
    return {attribute.GetXmlName(), label.empty() ? attribute.GetXmlName() : label,
            attribute.GetProperties().displayWidth, &attribute};
}

bool Holds(const std::vector<Column>& columns, std::string_view name) {
    return std::ranges::any_of(columns, [&](const Column& column) { return column.name == name; });
}

void AddColumn(std::vector<Column>& columns, const Column& column) {
    if (!Holds(columns, column.name)) {
        columns.push_back(column);
    }
}

/** The column of a class, or of a value without a descriptor. */
const Column* FindColumn(const std::vector<Column>& columns, std::string_view name) {
    const auto found = std::ranges::find_if(
        columns, [&](const Column& column) { return CompareNoCase(column.name, name) == 0; });
    return found == columns.end() ? nullptr : &*found;
}

/** Those of the classes, whether or not a record has a value. */
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

/** Names that occur among the values, each once. */
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

}  // namespace

std::string Record::Value(std::string_view attribute) const {
    return std::string(values->Find(attribute).value_or(std::string_view()));
}

Result ResultOf(const BASEApiMethodReturn* answer) {
    if (const auto* truth = dynamic_cast<const BOOLMethodReturn*>(answer)) {
        return ValueResult(Result::kTruth, truth->value ? "True" : "False");
    }
    if (const auto* number = dynamic_cast<const INTMethodReturn*>(answer)) {
        return ValueResult(Result::kNumber, std::to_string(number->value));
    }
    if (const auto* text = dynamic_cast<const STRINGMethodReturn*>(answer)) {
        return ValueResult(Result::kText, text->value);
    }
    if (const auto* word = dynamic_cast<const ENUMMethodReturn*>(answer)) {
        return ValueResult(Result::kText, word->value);
    }
    if (const auto* mask = dynamic_cast<const ENUMMaskMethodReturn*>(answer)) {
        return MaskResult(*mask);
    }
    if (const auto* objects = dynamic_cast<const COMPObjectMethodReturn*>(answer)) {
        return RecordResult(objects->isArray, objects->GetObjects());
    }
    if (const auto* objects = dynamic_cast<const METHODObjectMethodReturn*>(answer)) {
        return RecordResult(objects->isArray, objects->objects);
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
        } else if (const Column* column = FindColumn(known, name)) {
            AddColumn(columns, *column);
        } else if (!records.empty()) {
            throw UsageError(UnknownWords("column", name, known, "'all' shows all that the answer has"));
        }
    }
    return columns;
}

std::vector<std::vector<Record>> RunsOfRecords(const std::vector<Record>& records) {
    std::vector<std::vector<Record>> runs;
    for (const Record& record : records) {
        if (runs.empty() || runs.back().front().descriptors != record.descriptors) {
            runs.emplace_back();
        }
        runs.back().push_back(record);
    }
    return runs;
}
