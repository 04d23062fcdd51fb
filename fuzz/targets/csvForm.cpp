// Converts objects to CSV and parses them again as a client does. Each line of the input is "NAME VALUE"; a
// line "+" starts another object.

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"

namespace {

using Rows = std::vector<std::map<std::string, std::string>>;

std::string Between(const std::string& text, const std::string& begin, const std::string& end) {
    const size_t from = text.find(begin) + begin.size();
    return text.substr(from, text.find(end) - from);
}

std::vector<std::string> Fields(const std::string& text, char separator) {
    std::vector<std::string> fields(1);
    for (const char c : text) {
        if (c == separator)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

// From the left: between the marks of two commas there may stand what looks like another with them.
std::string Plain(const std::string& field) {
    constexpr std::pair<std::string_view, char> kMarks[] = {
        {"--cl--", ':'}, {"--nl--", '\n'}, {"--cm--", ','}};
    std::string plain;
    for (size_t at = 0; at < field.size();) {
        const auto* mark = std::find_if(std::begin(kMarks), std::end(kMarks), [&](const auto& each) {
            return field.compare(at, each.first.size(), each.first) == 0;
        });
        plain += mark == std::end(kMarks) ? field[at] : mark->second;
        at += mark == std::end(kMarks) ? 1 : mark->first.size();
    }
    return UnescapeXml(plain, false);
}

Rows Read(const std::string& csv) {
    const std::vector<std::string> names = Fields(Between(csv, "<Header>", "</Header>"), ',');
    std::vector<std::string> lines = Fields(Between(csv, "<Data>", "</Data>"), ':');
    lines.pop_back();  // behind the last row's colon
    Rows rows;
    for (const std::string& line : lines) {
        const std::vector<std::string> fields = Fields(line, ',');
        if (fields.size() != names.size())
            FuzzFail("a row has other fields than the header:\n" + csv);
        auto& row = rows.emplace_back();
        for (size_t i = 0; i < names.size(); ++i)
            row[names[i]] = Plain(fields[i]);
    }
    return rows;
}

// What comes through unchanged: no marks that stand for separators, no control characters.
std::string Carried(std::string_view text) {
    std::string carried;
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 32 && c != '-')
            carried += c;
    }
    return carried;
}

std::string Name(std::string_view text) {
    std::string name;
    for (const char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c)))
            name += c;
    }
    return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    COMPObjectMethodReturn answer(true);
    std::unique_ptr<BASEApiObject> object = std::make_unique<APITsDisk>();
    while (!input.IsEmpty()) {
        const std::string_view line = input.Line();
        if (line == "+") {
            answer.AddObject(object.release(), false);
            object = std::make_unique<APITsDisk>();
            continue;
        }
        const size_t blank = std::min(line.find(' '), line.size());
        object->SetAttribute(Name(line.substr(0, blank)),
                             Carried(line.substr(std::min(blank + 1, line.size()))));
    }
    answer.AddObject(object.release(), false);

    const Rows rows = Read(answer.ReturnXml(object_encoding::kCsv));
    FuzzCheck(rows.size() == answer.GetObjects().size(), "rows are lost or made");
    for (size_t i = 0; i < rows.size(); ++i) {
        for (const auto& [name, text] : rows[i])
            if (text != answer.GetObjects()[i]->GetAttribute(name))
                FuzzFail("'" + name + "' came back as '" + text + "'");
    }
    return 0;
}
