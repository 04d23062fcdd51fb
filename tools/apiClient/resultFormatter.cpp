#include "tools/apiClient/resultFormatter.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/client/attributeValue.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/terminalOutput.h"

namespace apiclient {

namespace {

constexpr size_t kGap = 2;

template <class Attribute>
const Attribute* As(const Column& column) {
    return dynamic_cast<const Attribute*>(column.descriptor);
}

std::vector<Column> SelectColumns(const std::vector<Record>& records, const std::vector<std::string>& names) {
    return names.empty() ? AllColumns(records) : NamedColumns(records, names);
}

std::string ReadableValue(const Column& column, const std::string& text) {
    if (const auto* size = As<SIZEApiAttribute>(column)) {
        const std::string display = size->FromText(text).ToDisplayText();
        return display.empty() ? text : display;
    }
    if (const auto* enumeration = As<ENUMApiAttribute>(column)) {
        const ENUMRow* row = enumeration->GetTable().FindDescription(text);
        return row == nullptr ? text : tessera::ReadableName(*row);
    }
    if (const auto* reference = As<OBJECTApiAttribute>(column)) {
        const std::unique_ptr<APIObjectInstance> object = reference->FromText(text);
        return object ? object->instanceName : text;
    }
    return text;
}

std::string CellText(const Record& record, const Column& column, bool readable) {
    const std::string text = record.Value(column.name);
    return readable && !text.empty() ? ReadableValue(column, text) : text;
}

// --- table

bool HasValue(const std::vector<Record>& records, const std::string& attribute) {
    return std::ranges::any_of(records,
                               [&](const Record& record) { return !record.Value(attribute).empty(); });
}

/** Position of a column by default: what identifies an object and its state come first. */
size_t Rank(const Column& column, bool has_name) {
    const std::string_view leading[] = {"InstanceId", has_name ? "Name" : "InstanceName", "Status"};
    return static_cast<size_t>(std::ranges::find(leading, column.name) - std::begin(leading));
}

/** The leading columns, then those that fit into the width. Columns without any value are omitted. */
std::vector<Column> FittingColumns(const std::vector<Record>& records, size_t width) {
    std::vector<Column> columns = AllColumns(records);
    std::erase_if(columns, [&](const Column& column) { return !HasValue(records, column.name); });
    const bool has_name = HasValue(records, "Name");
    std::ranges::stable_sort(columns, {}, [&](const Column& column) { return Rank(column, has_name); });
    size_t used = 0;
    const auto end = std::ranges::find_if(columns, [&](const Column& column) {
        used += std::max<size_t>(column.width, CountCharacters(column.label)) + kGap;
        return used > width + kGap;
    });
    // Even the narrowest table has one column.
    columns.erase(std::max(end, columns.begin() + std::min<ptrdiff_t>(1, std::ssize(columns))),
                  columns.end());
    return columns;
}

std::string FormatList(const std::vector<Record>& records, const std::vector<Column>& columns,
                       bool readable) {
    std::vector<std::vector<std::string>> rows(1);
    std::vector<size_t> widths;
    for (const Column& column : columns) {
        rows[0].push_back(column.label);
        widths.push_back(column.width);
    }
    for (const Record& record : records) {
        std::vector<std::string>& row = rows.emplace_back();
        for (const Column& column : columns) {
            row.push_back(Printable(CellText(record, column, readable)));
        }
    }
    return AlignColumns(rows, widths);
}

std::string FormatObject(const Record& record, const std::vector<Column>& columns, bool readable) {
    std::vector<std::vector<std::string>> rows;
    for (const Column& column : columns) {
        rows.push_back({column.label, Printable(CellText(record, column, readable))});
    }
    return AlignColumns(rows);
}

// --- CSV

std::string CsvField(std::string text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    ReplaceAll(text, "\"", "\"\"");
    return '"' + text + '"';
}

std::string CsvLine(const std::vector<std::string>& fields) {
    std::string line;
    for (size_t i = 0; i < fields.size(); ++i) {
        line += (i == 0 ? "" : ",") + CsvField(fields[i]);
    }
    return line + "\n";
}

// --- JSON

using Json = nlohmann::ordered_json;

// A string that is not entirely a number remains a string. So do "nan" and "inf", which JSON does not have:
// null would look like a missing value.

Json JsonInteger(const std::string& text) {
    const std::optional<int64_t> number = ParseWhole<int64_t>(text);
    return number ? Json(*number) : Json(text);
}

Json JsonReal(const std::string& text) {
    const char* end = nullptr;
    const std::optional<double> number = ParseDecimal(text, &end);
    return number && end == text.c_str() + text.size() ? Json(*number) : Json(text);
}

Json JsonBoolean(const std::string& text) {
    const bool is_true = text == "1" || CompareNoCase(text, "true") == 0;
    const bool is_false = text == "0" || CompareNoCase(text, "false") == 0;
    return is_true || is_false ? Json(is_true) : Json(text);
}

Json JsonReference(const APIObjectInstance& object) {
    return {{"InstanceId", object.instanceId},
            {"ObjectType", object.objectType},
            {"InstanceName", object.instanceName}};
}

Json JsonReferences(const OBJECTARRAYApiAttribute& attribute, const std::string& text) {
    Json list = Json::array();
    for (const std::unique_ptr<APIObjectInstance>& object : attribute.FromText(text)) {
        list.push_back(JsonReference(*object));
    }
    return list;
}

Json JsonCell(const Column& column, const std::string& text) {
    if (As<BOOLEANApiAttribute>(column)) {
        return JsonBoolean(text);
    }
    if (As<INTApiAttribute>(column) || As<SIZEApiAttribute>(column)) {
        return JsonInteger(text);
    }
    if (As<DOUBLEApiAttribute>(column)) {
        return JsonReal(text);
    }
    if (const auto* numbers = As<INTARRAYApiAttribute>(column)) {
        return numbers->FromText(text);
    }
    if (const auto* mask = As<ENUMMASKApiAttribute>(column)) {
        return mask->FromText(text);
    }
    if (const auto* strings = As<STRINGARRAYApiAttribute>(column)) {
        return strings->FromText(text);
    }
    if (const auto* reference = As<OBJECTApiAttribute>(column)) {
        const std::unique_ptr<APIObjectInstance> object = reference->FromText(text);
        return object ? JsonReference(*object) : Json(text);
    }
    const auto* references = As<OBJECTARRAYApiAttribute>(column);
    return references ? JsonReferences(*references, text) : Json(text);
}

Json JsonRecord(const Record& record, const std::vector<Column>& columns) {
    Json object = Json::object();
    for (const Column& column : columns) {
        if (record.values->Contains(column.name)) {
            object[column.name] = JsonCell(column, record.Value(column.name));
        }
    }
    return object;
}

Json JsonValue(const Result& result) {
    switch (result.value_kind) {
        case Result::kNumber:
            return JsonInteger(result.value);
        case Result::kBoolean:
            return JsonBoolean(result.value);
        default:
            return result.value;
    }
}

Json JsonResult(const Result& result, const std::vector<std::string>& names) {
    if (result.kind == Result::kNothing) {
        return nullptr;
    }
    if (result.kind == Result::kValue) {
        return JsonValue(result);
    }
    const std::vector<Column> columns = SelectColumns(result.records, names);
    Json list = Json::array();
    for (const Record& record : result.records) {
        list.push_back(JsonRecord(record, columns));
    }
    return result.kind == Result::kList ? list : list.empty() ? Json() : list.front();
}

}  // namespace

std::string FormatTable(const Result& result, const FormatOptions& options) {
    if (result.kind == Result::kNothing) {
        return "Done.\n";
    }
    if (result.kind == Result::kValue) {
        return Printable(result.value) + "\n";
    }
    if (result.records.empty()) {
        return "No objects.\n";
    }
    const std::vector<Column> columns = SelectColumns(result.records, options.columns);
    if (result.kind == Result::kOne) {
        return FormatObject(result.records.front(), columns, options.readable);
    }
    std::string text;
    for (const std::vector<Record>& part : SplitByClass(result.records)) {
        text += (text.empty() ? "" : "\n") +
                FormatList(part, options.columns.empty() ? FittingColumns(part, options.width) : columns,
                           options.readable);
    }
    return text;
}

std::string FormatCsv(const Result& result, const FormatOptions& options) {
    if (result.kind == Result::kNothing) {
        return {};
    }
    if (result.kind == Result::kValue) {
        return CsvLine({"Value"}) + CsvLine({result.value});
    }
    if (result.records.empty()) {
        return options.columns.empty() ? "" : CsvLine(options.columns);
    }
    const std::vector<Column> columns = SelectColumns(result.records, options.columns);
    std::string text = CsvLine(NamesOf(columns));
    for (const Record& record : result.records) {
        std::vector<std::string> fields;
        for (const Column& column : columns) {
            fields.push_back(CellText(record, column, options.readable));
        }
        text += CsvLine(fields);
    }
    return text;
}

std::string FormatJson(const Result& result, const std::vector<std::string>& columns) {
    return JsonResult(result, columns).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace apiclient
