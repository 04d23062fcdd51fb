#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/** One line of the catalogue's data. An object's lines follow it, a command's arguments follow the command.
 */
struct CatalogueRow {
    enum class What { kObject, kMethodObject, kAttribute, kRead, kChange, kNeeded, kTaken, kAssociation };
    static constexpr int64_t kNoRule = -1;

    What what;
    std::string_view name;
    std::string_view text = {};  ///< description of an object, privilege of a command, label of an attribute
    std::string_view kind = {};
    std::string_view table = {};
    std::string_view object = {};
    std::string_view invalid = {};
    int64_t min = kNoRule;
    int64_t max = kNoRule;
    int64_t minLength = kNoRule;
    int64_t maxLength = kNoRule;
};

/** The catalogue that this program was built with; generated from data/api. */
extern const std::span<const CatalogueRow> catalogue_rows;
