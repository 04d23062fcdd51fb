#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/** A row of an enumeration. The strings of a table's rows live until the process exits. */
struct ENUMRow {
    int32_t Value = 0;
    std::string_view Description;  ///< the identifier in attribute values
    std::string_view UiString;     ///< human-readable; bytes outside ASCII are ISO-8859-1
};

/**
 * A view of an enumeration, cheap to copy. Searches go in row order, so the first of several rows with the
 * same ID or string is found.
 */
class ENUMTable {
  public:
    constexpr ENUMTable() = default;
    template <size_t N>
    constexpr ENUMTable(const ENUMRow (&rows)[N]) : rows_(rows) {}

    constexpr const ENUMRow* begin() const { return rows_.data(); }
    constexpr const ENUMRow* end() const { return rows_.data() + rows_.size(); }
    constexpr size_t size() const { return rows_.size(); }

    /** Returns the row with this ID, or null. */
    const ENUMRow* FindValue(int32_t value) const;

    /** Returns the row with this Description (case-insensitive), or null. */
    const ENUMRow* FindDescription(std::string_view description) const;

    /** Returns the Description that an attribute stores for an ID; empty for an unknown ID. */
    std::string_view DescriptionOf(int32_t value) const;

  private:
    std::span<const ENUMRow> rows_;
};

/** An enumeration with its name, without "g" and "EnumIdStrList". */
struct ENUMNamedTable {
    std::string_view name;
    ENUMTable rows;
};
