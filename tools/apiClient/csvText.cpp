#include "tools/apiClient/csvText.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

std::string FieldText(std::string text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    ReplaceAll(text, "\"", "\"\"");
    return '"' + text + '"';
}

std::string LineText(const std::vector<std::string>& fields) {
    std::string line;
    for (size_t i = 0; i < fields.size(); ++i) {
        line += (i == 0 ? "" : ",") + FieldText(fields[i]);
    }
    return line + "\n";
}

}  // namespace

std::string CsvText(const Result& result, const std::vector<std::string>& columns) {
    if (result.kind == Result::kNothing) {
        return {};
    }
    if (result.kind == Result::kValue) {
        return LineText({"Value"}) + LineText({result.value});
    }
    if (result.records.empty()) {
        return columns.empty() ? "" : LineText(columns);
    }
    const std::vector<Column> shown =
        columns.empty() ? AllColumns(result.records) : NamedColumns(result.records, columns);
    std::vector<std::string> fields;
    for (const Column& column : shown) {
        fields.push_back(column.name);
    }
    std::string text = LineText(fields);
    for (const Record& record : result.records) {
        fields.clear();
        for (const Column& column : shown) {
            fields.push_back(record.Value(column.name));
        }
        text += LineText(fields);
    }
    return text;
}
