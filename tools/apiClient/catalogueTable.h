#pragma once

#include <span>
#include <string_view>

namespace apiclient {

/**
 * One row of the generated catalogue. The rows of an object's attributes and commands follow the object,
 * those of a command's arguments follow the command.
 */
struct CatalogueRow {
    enum class What { kObject, kMethodObject, kAttribute, kRead, kChange, kNeeded, kTaken, kAssociation };

    What what;
    std::string_view name;
    std::string_view text = {};  ///< description of an object, privilege of a command, label of an attribute
    std::string_view kind = {};
    std::string_view table = {};
    std::string_view object = {};
};

/** The catalogue that this program was built with; generated from data/api. */
extern const std::span<const CatalogueRow> kCatalogueRows;

}  // namespace apiclient
