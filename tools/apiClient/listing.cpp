#include "tools/apiClient/listing.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/tableText.h"
#include "tools/apiClient/usageError.h"

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string Paragraph(const std::string& head, const Rows& rows, const std::vector<size_t>& widths) {
    return rows.empty() ? "" : "\n" + head + "\n" + AlignedText(rows, widths);
}

std::string AttributeParagraph(const std::string& head, const std::vector<CatalogueAttribute>& attributes) {
    Rows rows;
    for (const CatalogueAttribute& each : attributes) {
        rows.push_back({"  " + each.name, each.kind, each.label, AllowedWords(each)});
    }
    return Paragraph(head, rows, {0, 0, 0, 0});
}

std::string CommandParagraph(const CatalogueObject& object) {
    Rows rows;
    for (const CatalogueCommand& each : object.commands) {
        if (!each.isAssociation) {
            std::string arguments;
            for (const CatalogueAttribute& argument : each.arguments) {
                arguments += (arguments.empty() ? "" : " ") +
                             (argument.IsRequired() ? argument.name : "[" + argument.name + "]");
            }
            rows.push_back(
                {"  " + each.name, each.changesState ? "changes" : "reads", each.privilege, arguments});
        }
    }
    return Paragraph("Commands: what they do to the array, the privilege they need, their arguments", rows,
                     {0, 0, 0, 0});
}

std::string AssociationParagraph(const CatalogueObject& object) {
    Rows rows;
    for (const CatalogueCommand& each : object.commands) {
        if (each.isAssociation) {
            rows.push_back({"  " + each.name});
        }
    }
    return Paragraph("Associations, which lead from InstanceId=... to related objects:", rows, {0});
}

std::vector<CatalogueAttribute> Arguments(const CatalogueCommand& command, bool required) {
    std::vector<CatalogueAttribute> some;
    std::ranges::copy_if(command.arguments, std::back_inserter(some),
                         [&](const CatalogueAttribute& each) { return each.IsRequired() == required; });
    return some;
}

}  // namespace

std::string ObjectsListing() {
    Rows rows;
    for (const CatalogueObject& each : ApiCatalogue().objects) {
        rows.push_back({each.name, each.text});
    }
    return AlignedText(rows, {0, 0});
}

std::string ObjectListing(const CatalogueObject& object) {
    return object.name + ": " + object.text + "\n" + CommandParagraph(object) + AssociationParagraph(object) +
           AttributeParagraph("Attributes:", object.attributes);
}

std::string CommandListing(const CatalogueObject& object, const CatalogueCommand& command) {
    std::string text = object.name + " " + command.name + ": " +
                       (command.isAssociation  ? "leads to related objects"
                        : command.changesState ? "changes the array"
                                               : "reads the array") +
                       "; privilege " + command.privilege + "\n" +
                       AttributeParagraph("Needed:", Arguments(command, true)) +
                       AttributeParagraph("May be left out:", Arguments(command, false));
    for (const CatalogueAttribute& each : command.arguments) {
        if (!each.object.empty()) {
            text += AttributeParagraph("Fields of " + each.name + ":",
                                       FindNamed(ApiCatalogue().methodObjects, each.object)->attributes);
        }
    }
    return text;
}

std::string EnumerationListing(const std::string& name) {
    const ENUMTable table = FindEnumeration(name);
    if (table.size() == 0) {
        std::vector<CatalogueAttribute> known;  // for their names
        for (const ENUMNamedTable& each : APIEnumsIDStrList::gAllEnumTables) {
            known.emplace_back().name = each.name;
        }
        throw UsageError(
            UnknownWords("enumeration", name, known, "the listing of an attribute names its own"));
    }
    Rows rows;
    for (const ENUMRow& row : table) {
        rows.push_back({std::to_string(row.Value), std::string(row.Description), UiText(row)});
    }
    return AlignedText(rows, {0, 0, 0});
}
