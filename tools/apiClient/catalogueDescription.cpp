#include "tools/apiClient/catalogueDescription.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/terminalOutput.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

namespace {

using Rows = std::vector<std::vector<std::string>>;

/** Longer enumerations are not listed in a message. */
constexpr size_t kMaximumRowsInMessage = 15;

const std::map<std::string_view, const char*> kKindsWithoutRules = {
    {"BOOLEAN", "True or False"},
    {"INSTANCEID", "an instance ID"},
    {"OBJECT", "a reference: ID, type and name of an object, for example '64702.17 TsDisk 01-17'"},
    {"OBJECTARRAY", "references, each with ID, type and name of an object; repeat the argument for several"},
    {"STRINGARRAY", "strings; repeat the argument for several"},
    {"DATETIME", "a time, for example '10/31/2016 01:02:03 PM' or '10/31/2016-13:02:03'"},
    {"SIZE", "a number of 512-byte blocks, or a number with a unit, for example '1.5 TB'"},
    {"TEMPERATURE", "a temperature, for example '45 C' or '113 F'"},
    {"VERSION", "a version, for example '06.03.01.002'"},
    {"IPV4ADDRESS", "an IPv4 address"},
    {"IPV6ADDRESS", "an IPv6 address"},
    {"GETLISTFILTER", "a filter, as --filter builds it"},
};

std::string Singular(const std::string& unit) {
    return unit.empty() ? unit : unit.substr(0, unit.size() - 1);
}

std::string DescribeLimits(std::optional<int64_t> low, std::optional<int64_t> high, const std::string& unit) {
    if (low && high) {
        return std::to_string(*low) + " to " + std::to_string(*high) + unit;
    }
    if (low) {
        return "at least " + std::to_string(*low) + (*low == 1 ? Singular(unit) : unit);
    }
    return high ? "at most " + std::to_string(*high) + (*high == 1 ? Singular(unit) : unit) : "";
}

std::string DescribeNumber(const CatalogueAttribute& attribute) {
    const std::string kind = attribute.kind == "INT"      ? "an integer"
                             : attribute.kind == "DOUBLE" ? "a number"
                                                          : "integers separated by spaces";
    const std::string limits = DescribeLimits(attribute.min, attribute.max, "");
    return limits.empty() ? kind : kind + ", " + limits;
}

std::string DescribeString(const CatalogueAttribute& attribute) {
    std::optional<int64_t> low = attribute.min_length;
    if (low == 0) {
        low.reset();
    }
    std::string description = "a string";
    if (const std::string limits = DescribeLimits(low, attribute.max_length, " bytes"); !limits.empty()) {
        description += " of " + limits;
    }
    if (!attribute.invalid.empty()) {
        description += " without";
        for (const char c : attribute.invalid) {
            description += std::string(" ") + c;
        }
    }
    return description;
}

bool HaveSameLetters(std::string_view left, std::string_view right) {
    const auto letters = [](std::string_view text) {
        std::string kept;
        std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                     [](unsigned char c) { return std::isalnum(c); });
        return ToLower(kept);
    };
    return letters(left) == letters(right);
}

/** The identifiers, with the readable names that say more: "Up, NotPresent (Not Present)". */
std::string DescribeRows(const ENUMTable& rows) {
    std::string description;
    for (const ENUMRow& row : rows) {
        description += (description.empty() ? "" : ", ") + std::string(row.Description);
        if (!HaveSameLetters(row.Description, row.UiString)) {
            description += " (" + ReadableName(row) + ")";
        }
    }
    return description;
}

std::string DescribeEnumeration(const CatalogueAttribute& attribute) {
    const bool is_single = attribute.kind == "ENUM";
    if (attribute.table.empty()) {
        return is_single ? "an identifier" : "identifiers separated by spaces";
    }
    const std::string beginning = is_single ? "one of " : "some of ";
    const ENUMTable rows = attribute.Rows();
    if (rows.size() <= kMaximumRowsInMessage) {
        return beginning + DescribeRows(rows);
    }
    return beginning + std::to_string(rows.size()) + " values; see --enumeration " + attribute.table;
}

std::string DescribeStructure(const CatalogueAttribute& attribute) {
    if (attribute.kind == "METHODOBJECTARRAY") {
        return "a list of " + attribute.object + ": give " + attribute.name +
               ".1.FIELD=VALUE for each field of the first, .2 for the second, and so on";
    }
    return "a " + attribute.object + ": give " + attribute.name + ".FIELD=VALUE for each field";
}

std::string Section(const std::string& heading, const Rows& rows) {
    return rows.empty() ? "" : "\n" + heading + "\n" + AlignColumns(rows);
}

std::string AttributeSection(const std::string& heading, const std::vector<CatalogueAttribute>& attributes) {
    Rows rows;
    for (const CatalogueAttribute& each : attributes) {
        rows.push_back({"  " + each.name, each.kind, each.label, DescribeLegalValues(each)});
    }
    return Section(heading, rows);
}

std::string CommandSection(const CatalogueObject& object) {
    Rows rows;
    for (const CatalogueCommand& each : object.commands) {
        if (!each.is_association) {
            std::string arguments;
            for (const CatalogueAttribute& argument : each.arguments) {
                arguments += (arguments.empty() ? "" : " ") +
                             (argument.IsRequired() ? argument.name : "[" + argument.name + "]");
            }
            rows.push_back(
                {"  " + each.name, each.changes_state ? "changes" : "reads", each.privilege, arguments});
        }
    }
    return Section("Commands (whether they read or change the array, required privilege, arguments):", rows);
}

std::string AssociationSection(const CatalogueObject& object) {
    Rows rows;
    for (const CatalogueCommand& each : object.commands) {
        if (each.is_association) {
            rows.push_back({"  " + each.name});
        }
    }
    return Section("Associations (return the objects related to InstanceId=...):", rows);
}

std::vector<CatalogueAttribute> SelectArguments(const CatalogueCommand& command, bool required) {
    std::vector<CatalogueAttribute> selected;
    std::ranges::copy_if(command.arguments, std::back_inserter(selected),
                         [&](const CatalogueAttribute& each) { return each.IsRequired() == required; });
    return selected;
}

}  // namespace

std::string DescribeLegalValues(const CatalogueAttribute& attribute) {
    if (attribute.kind == "INT" || attribute.kind == "DOUBLE" || attribute.kind == "INTARRAY") {
        return DescribeNumber(attribute);
    }
    if (attribute.kind == "STRING" || attribute.kind == "NAME") {
        return DescribeString(attribute);
    }
    if (attribute.kind == "ENUM" || attribute.kind == "ENUMMASK") {
        return DescribeEnumeration(attribute);
    }
    return attribute.object.empty() ? kKindsWithoutRules.at(attribute.kind) : DescribeStructure(attribute);
}

std::string DescribeAttribute(const CatalogueAttribute& attribute) {
    if (attribute.label.empty() || HaveSameLetters(attribute.name, attribute.label)) {
        return attribute.name;
    }
    return attribute.name + " (" + attribute.label + ")";
}

std::string ReadableName(const ENUMRow& row) {
    std::string name;
    for (const char c : row.UiString) {  // ISO-8859-1
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            name += c;
        } else {
            name += static_cast<char>(0xc0 | byte >> 6);
            name += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return name;
}

std::string ListObjects() {
    Rows rows;
    for (const CatalogueObject& each : ApiCatalogue().objects) {
        rows.push_back({each.name, each.text});
    }
    return AlignColumns(rows);
}

std::string ListObject(const CatalogueObject& object) {
    return object.name + ": " + object.text + "\n" + CommandSection(object) + AssociationSection(object) +
           AttributeSection("Attributes:", object.attributes);
}

std::string ListCommand(const CatalogueObject& object, const CatalogueCommand& command) {
    std::string list = object.name + " " + command.name + ": " +
                       (command.is_association  ? "returns related objects"
                        : command.changes_state ? "changes the array"
                                                : "reads the array") +
                       "; privilege " + command.privilege + "\n" +
                       AttributeSection("Required arguments:", SelectArguments(command, true)) +
                       AttributeSection("Optional arguments:", SelectArguments(command, false));
    for (const CatalogueAttribute& each : command.arguments) {
        if (!each.object.empty()) {
            list += AttributeSection("Fields of " + each.name + ":",
                                     FindNamed(ApiCatalogue().method_objects, each.object)->attributes);
        }
    }
    return list;
}

std::string ListEnumeration(const std::string& name) {
    const ENUMTable table = FindEnumeration(name);
    if (table.size() == 0) {
        std::vector<std::string> names;
        for (const ENUMNamedTable& each : APIEnumsIDStrList::gAllEnumTables) {
            names.emplace_back(each.name);
        }
        throw commandline::UsageError(commandline::UnknownName(
            "enumeration", name, names, "OBJECT --list shows the enumeration of each attribute"));
    }
    Rows rows;
    for (const ENUMRow& row : table) {
        rows.push_back({std::to_string(row.Value), std::string(row.Description), ReadableName(row)});
    }
    return AlignColumns(rows);
}

}  // namespace apiclient
