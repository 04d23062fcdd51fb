#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/**
 * A map of strings in the byte order of their names, stored in one block, because the response of a full
 * array has thousands of objects with some thirty values each. Copyable. Views are valid until the map
 * changes.
 */
class ATTRIBUTEMap {
  public:
    class Iterator;

    /** Creates or overwrites the entry. Both strings may be views into this map. */
    void Set(std::string_view name, std::string_view text);

    std::optional<std::string_view> Find(std::string_view name) const;
    /**
     * Checks `position` first, where a similar map had an entry with that name, and sets it to the position
     * in this map.
     */
    std::optional<std::string_view> Find(std::string_view name, size_t& position) const;
    bool Contains(std::string_view name) const { return Find(name).has_value(); }

    /** Does nothing if there is no such entry. */
    void Remove(std::string_view name);

    /** Removes all entries. */
    void Clear();

    bool IsEmpty() const { return entries.empty(); }
    size_t Size() const { return entries.size(); }

    /** Iterate over pairs of name and string. */
    Iterator begin() const;
    Iterator end() const;

  private:
    /** Offsets and lengths of name and string in the block. */
    struct Entry {
        uint32_t name;
        uint32_t nameLength;
        uint32_t text;
        uint32_t textLength;
    };

    std::string_view NameOf(const Entry& entry) const {
        return std::string_view(block).substr(entry.name, entry.nameLength);
    }
    std::string_view TextOf(const Entry& entry) const {
        return std::string_view(block).substr(entry.text, entry.textLength);
    }
    size_t LowerBound(std::string_view name) const;
    void Insert(size_t position, std::string_view name, std::string_view text);
    void Overwrite(Entry& entry, std::string_view text);
    void Append(std::string_view first, std::string_view second);
    void CompactIfWorthwhile();

    std::vector<Entry> entries;
    std::string block;
    /** Bytes of the block that no entry uses. */
    size_t wasted = 0;
};

class ATTRIBUTEMap::Iterator {
  public:
    using value_type = std::pair<std::string_view, std::string_view>;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    Iterator(const ATTRIBUTEMap* owner, size_t position) : map(owner), index(position) {}

    value_type operator*() const {
        const Entry& entry = map->entries[index];
        return {map->NameOf(entry), map->TextOf(entry)};
    }
    Iterator& operator++() {
        ++index;
        return *this;
    }
    Iterator operator++(int) {
        Iterator old = *this;
        ++index;
        return old;
    }
    bool operator==(const Iterator& other) const { return index == other.index; }

  private:
    const ATTRIBUTEMap* map = nullptr;
    size_t index = 0;
};

inline ATTRIBUTEMap::Iterator ATTRIBUTEMap::begin() const {
    return {this, 0};
}

inline ATTRIBUTEMap::Iterator ATTRIBUTEMap::end() const {
    return {this, entries.size()};
}
