#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/** One row of an enumeration. The texts of a table's rows live as long as the process. */
struct ENUMRow {
    int32_t Value = 0;
    std::string_view Description;  ///< the identifier that travels in attribute texts
    std::string_view UiString;     ///< the text for people; bytes outside ASCII are ISO-8859-1
};

/**
 * A view of one enumeration, cheap to copy. Every search goes in row order, so that of two rows with the same
 * id or text the first is found.
 */
class ENUMTable {
  public:
    constexpr ENUMTable() = default;
    template <size_t N>
    constexpr ENUMTable(const ENUMRow (&rows)[N]) : rows_(rows) {}

    constexpr const ENUMRow* begin() const { return rows_.data(); }
    constexpr const ENUMRow* end() const { return rows_.data() + rows_.size(); }
    constexpr size_t size() const { return rows_.size(); }

    /** The row with this id, or null. */
    const ENUMRow* FindValue(int32_t value) const;

    /** The row with this Description, letter case aside, or null. */
    const ENUMRow* FindDescription(std::string_view description) const;

    /** What an attribute stores for an id: its Description, empty for an id that the table does not know. */
    std::string_view DescriptionOf(int32_t value) const;

  private:
    std::span<const ENUMRow> rows_;
};

/** An enumeration and its name, without "g" and "EnumIdStrList". */
struct ENUMNamedTable {
    std::string_view name;
    ENUMTable rows;
};
