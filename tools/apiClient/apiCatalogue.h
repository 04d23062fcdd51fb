#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace apiclient {

/** An attribute of an object, or an argument of a call. */
struct CatalogueAttribute {
    std::string name;
    std::string kind;  ///< as in the data files: "STRING", "ENUM", ...
    std::string label;
    std::string table;                             ///< name of the enumeration, if the kind has one
    std::string object;                            ///< name of the structured type; empty for all other kinds
    const BASEApiAttribute* descriptor = nullptr;  ///< the library's: the legal values
    bool needed = false;

    /** Returns whether a call without this argument is rejected. Filters are optional even if needed. */
    bool IsRequired() const;

    /** Returns the rows of the enumeration; empty if there is no table. */
    ENUMTable Rows() const;
};

/** A call of an object: a command, or an association, which leads to related objects. */
struct CatalogueCommand {
    std::string name;
    bool is_association = false;
    bool changes_state = false;
    std::string privilege;
    std::vector<CatalogueAttribute> arguments;
};

/** An object of the API. */
struct CatalogueObject {
    std::string name;
    std::string text;
    std::vector<CatalogueAttribute> attributes;
    std::vector<CatalogueCommand> commands;  ///< commands first, then associations

    /** Returns the command, or else the association, of that name, or null. */
    const CatalogueCommand* FindCommand(std::string_view command) const;
};

/** The objects and structured arguments of the array's API. */
struct Catalogue {
    std::vector<CatalogueObject> objects;
    std::vector<CatalogueObject> method_objects;  ///< structured arguments: attributes only
};

/** Returns the catalogue that this program was built with. It is read on first use. */
const Catalogue& ApiCatalogue();

/** Returns the name under which the library's factory knows the class of a command. */
std::string MethodClass(const std::string& object, std::string_view command);

/** Finds an enumeration by its case-insensitive name. Returns an empty table if there is none. */
ENUMTable FindEnumeration(std::string_view name);

/** Finds an item by its case-insensitive name. Returns null if there is none. */
template <class Item>
const Item* FindNamed(const std::vector<Item>& items, std::string_view name) {
    for (const Item& item : items) {
        if (CompareNoCase(item.name, name) == 0) {
            return &item;
        }
    }
    return nullptr;
}

/** Returns the names of the items, in their order. */
template <class Item>
std::vector<std::string> NamesOf(const std::vector<Item>& items) {
    std::vector<std::string> names;
    for (const Item& item : items) {
        names.push_back(item.name);
    }
    return names;
}

}  // namespace apiclient
