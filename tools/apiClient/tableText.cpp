#include "tools/apiClient/tableText.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/printableText.h"

namespace {

constexpr size_t kGap = 2;

/** Characters of a UTF-8 text. */
size_t Length(std::string_view text) {
    return static_cast<size_t>(
        std::ranges::count_if(text, [](unsigned char c) { return (c & 0xc0) != 0x80; }));
}

std::string ReadableText(const Column& column, const std::string& text) {
    if (const auto* size = dynamic_cast<const SIZEApiAttribute*>(column.descriptor)) {
        const std::string words = size->FromText(text).ToDisplayText();
        return words.empty() ? text : words;
    }
    if (const auto* word = dynamic_cast<const ENUMApiAttribute*>(column.descriptor)) {
        const ENUMRow* row = word->GetTable().FindDescription(text);
        return row == nullptr ? text : UiText(*row);
    }
    if (const auto* reference = dynamic_cast<const OBJECTApiAttribute*>(column.descriptor)) {
        const std::unique_ptr<APIObjectInstance> object = reference->FromText(text);
        return object ? object->instanceName : text;
    }
    return text;
}

std::string CellText(const Record& record, const Column& column, bool readable) {
    const std::string text = record.Value(column.name);
    return PrintableText(readable && !text.empty() ? ReadableText(column, text) : text);
}

bool HasValue(const std::vector<Record>& run, const std::string& attribute) {
    return std::ranges::any_of(run, [&](const Record& record) { return !record.Value(attribute).empty(); });
}

/** Where a column stands when nobody has chosen: what identifies an object and says how it is comes first. */
size_t Rank(const Column& column, bool has_name) {
    const std::string_view leading[] = {"InstanceId", has_name ? "Name" : "InstanceName", "Status"};
    return static_cast<size_t>(std::ranges::find(leading, column.name) - std::begin(leading));
}

/** The leading columns, and beside them the objects' own attributes as far as a line goes; without those that
   are empty throughout. */
std::vector<Column> FittingColumns(const std::vector<Record>& run, size_t width) {
    std::vector<Column> columns = AllColumns(run);
    std::erase_if(columns, [&](const Column& column) { return !HasValue(run, column.name); });
    const bool has_name = HasValue(run, "Name");
    std::ranges::stable_sort(columns, {}, [&](const Column& column) { return Rank(column, has_name); });
    size_t used = 0;
    const auto end = std::ranges::find_if(columns, [&](const Column& column) {
        used += std::max<size_t>(column.width, Length(column.label)) + kGap;
        return used > width + kGap;
    });
    // However narrow, a table has a column.
    columns.erase(std::max(end, columns.begin() + std::min<ptrdiff_t>(1, std::ssize(columns))),
                  columns.end());
    return columns;
}

std::string ListText(const std::vector<Record>& run, const std::vector<Column>& columns, bool readable) {
    std::vector<std::vector<std::string>> rows(1);
    std::vector<size_t> widths;
    for (const Column& column : columns) {
        rows[0].push_back(column.label);
        widths.push_back(column.width);
    }
    for (const Record& record : run) {
        std::vector<std::string>& row = rows.emplace_back();
        for (const Column& column : columns) {
            row.push_back(CellText(record, column, readable));
        }
    }
    return AlignedText(rows, widths);
}

std::string ObjectText(const Record& record, const std::vector<Column>& columns, bool readable) {
    std::vector<std::vector<std::string>> rows;
    for (const Column& column : columns) {
        rows.push_back({column.label, CellText(record, column, readable)});
    }
    return AlignedText(rows, {0, 0});
}

}  // namespace

std::string TableText(const Result& result, const TableOptions& options) {
    if (result.kind == Result::kNothing) {
        return "Done.\n";
    }
    if (result.kind == Result::kValue) {
        return PrintableText(result.value) + "\n";
    }
    if (result.records.empty()) {
        return "No objects.\n";
    }
    const bool chosen = !options.columns.empty();
    const std::vector<Column> columns =
        chosen ? NamedColumns(result.records, options.columns) : AllColumns(result.records);
    if (result.kind == Result::kOne) {
        return ObjectText(result.records.front(), columns, options.readable);
    }
    std::string text;
    for (const std::vector<Record>& run : RunsOfRecords(result.records)) {
        text += (text.empty() ? "" : "\n") +
                ListText(run, chosen ? columns : FittingColumns(run, options.width), options.readable);
    }
    return text;
}

std::string AlignedText(const std::vector<std::vector<std::string>>& rows, std::vector<size_t> widths) {
    for (const std::vector<std::string>& row : rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], Length(row[i]));
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : rows) {
        std::string line;
        size_t end = 0;
        for (size_t i = 0; i < row.size(); ++i) {
            line += std::string(end - std::min(end, Length(line)), ' ') + row[i];
            end += widths[i] + kGap;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}
