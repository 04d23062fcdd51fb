#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"
#include "apiMgmt/common/utils/stringUtil.h"

/** An attribute of an object, or an argument of a call. A rule that is absent is no limit. */
struct CatalogueAttribute {
    std::string name;
    std::string kind;  ///< as in the data files: "STRING", "ENUM", ...
    std::string label;
    std::string table;   ///< of an enumeration that has one: its name
    std::string object;  ///< of a structured argument: its name
    std::string invalid;
    std::optional<int64_t> min;
    std::optional<int64_t> max;
    std::optional<int64_t> minLength;
    std::optional<int64_t> maxLength;
    bool needed = false;

    /** Whether a call without it is refused: a filter may be absent also where it is needed. */
    bool IsRequired() const;

    /** The rows of the enumeration; empty when it has no table. */
    ENUMTable Rows() const;
};

/** A call of an object: a command, or an association, which leads to related objects. */
struct CatalogueCommand {
    std::string name;
    bool isAssociation = false;
    bool changesState = false;
    std::string privilege;
    std::vector<CatalogueAttribute> arguments;
};

struct CatalogueObject {
    std::string name;
    std::string text;
    std::vector<CatalogueAttribute> attributes;
    std::vector<CatalogueCommand> commands;  ///< associations behind the commands

    /** A command of that name goes before an association. */
    const CatalogueCommand* FindCommand(std::string_view command) const;
};

/** All that can be asked of an array. */
struct Catalogue {
    std::vector<CatalogueObject> objects;
    std::vector<CatalogueObject> methodObjects;  ///< structured arguments: attributes only
};

/** The catalogue that this program was built with, read at first use. */
const Catalogue& ApiCatalogue();

/** The enumeration of that name, letter case aside; empty for none. */
ENUMTable FindEnumeration(std::string_view name);

/** The item of that name, letter case aside, or null. */
template <class Item>
const Item* FindNamed(const std::vector<Item>& items, std::string_view name) {
    for (const Item& item : items) {
        if (CompareNoCase(item.name, name) == 0) {
            return &item;
        }
    }
    return nullptr;
}
