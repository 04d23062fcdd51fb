#include "tools/apiClient/catalogueDescription.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/client/attributeValue.h"
#include "tools/apiClient/terminalOutput.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

namespace {

using Rows = std::vector<std::vector<std::string>>;

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
    if (!attribute.object.empty()) {
        return DescribeStructure(attribute);
    }
    if (attribute.kind == "GETLISTFILTER") {
        return "a filter, as --filter builds it";
    }
    const std::string legal = tessera::LegalValues(*attribute.descriptor);
    if (attribute.kind == "OBJECTARRAY" || attribute.kind == "STRINGARRAY") {
        return legal + "; repeat the argument for several";
    }
    const bool is_listed = attribute.Rows().size() <= tessera::kMaximumRowsInMessage;
    return is_listed ? legal : legal + "; see --enumeration " + attribute.table;
}

std::string DescribeAttribute(const CatalogueAttribute& attribute) {
    if (attribute.label.empty() || tessera::HaveSameLetters(attribute.name, attribute.label)) {
        return attribute.name;
    }
    return attribute.name + " (" + attribute.label + ")";
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
        rows.push_back({std::to_string(row.Value), std::string(row.Description), tessera::ReadableName(row)});
    }
    return AlignColumns(rows);
}

}  // namespace apiclient
