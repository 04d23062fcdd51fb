#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

#include <algorithm>
#include <stdexcept>

namespace {

/** Less waste than this is not worth a copy. */
constexpr size_t kSmallWaste = 256;

}  // namespace

void ATTRIBUTEMap::Set(std::string_view name, std::string_view text) {
    const size_t position = LowerBound(name);
    if (position < entries.size() && NameOf(entries[position]) == name)
        Overwrite(entries[position], text);
    else
        Insert(position, name, text);
}

std::optional<std::string_view> ATTRIBUTEMap::Find(std::string_view name) const {
    size_t position = entries.size();
    return Find(name, position);
}

std::optional<std::string_view> ATTRIBUTEMap::Find(std::string_view name, size_t& position) const {
    if (position < entries.size() && NameOf(entries[position]) == name)
        return TextOf(entries[position]);
    position = LowerBound(name);
    if (position == entries.size() || NameOf(entries[position]) != name)
        return std::nullopt;
    return TextOf(entries[position]);
}

void ATTRIBUTEMap::Remove(std::string_view name) {
    const size_t position = LowerBound(name);
    if (position == entries.size() || NameOf(entries[position]) != name)
        return;
    wasted += entries[position].nameLength + entries[position].textLength;
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(position));
    CompactIfWorthwhile();
}

void ATTRIBUTEMap::Clear() {
    entries.clear();
    block.clear();
    wasted = 0;
}

/** Checks the end first, because documents usually list their elements in order. */
size_t ATTRIBUTEMap::LowerBound(std::string_view name) const {
    if (entries.empty() || NameOf(entries.back()) < name)
        return entries.size();
    const auto found = std::partition_point(entries.begin(), entries.end(),
                                            [&](const Entry& entry) { return NameOf(entry) < name; });
    return static_cast<size_t>(found - entries.begin());
}

void ATTRIBUTEMap::Insert(size_t position, std::string_view name, std::string_view text) {
    const size_t start = block.size();
    Append(name, text);
    const Entry entry = {.name = static_cast<uint32_t>(start),
                         .nameLength = static_cast<uint32_t>(name.size()),
                         .text = static_cast<uint32_t>(start + name.size()),
                         .textLength = static_cast<uint32_t>(text.size())};
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(position), entry);
}

void ATTRIBUTEMap::Overwrite(Entry& entry, std::string_view text) {
    const size_t start = block.size();
    Append(text, {});
    wasted += entry.textLength;
    entry.text = static_cast<uint32_t>(start);
    entry.textLength = static_cast<uint32_t>(text.size());
    CompactIfWorthwhile();
}

/** The strings may be parts of the block, which must therefore live until they are copied. */
void ATTRIBUTEMap::Append(std::string_view first, std::string_view second) {
    const size_t size = block.size() + first.size() + second.size();
    if (size > UINT32_MAX)
        throw std::length_error("attributes: too much text");
    if (size <= block.capacity()) {
        block.append(first).append(second);
        return;
    }
    std::string larger;
    larger.reserve(std::max(size, 2 * block.capacity()));
    larger.append(block).append(first).append(second);
    block = std::move(larger);
}

void ATTRIBUTEMap::CompactIfWorthwhile() {
    if (wasted <= kSmallWaste || wasted <= block.size() / 2)
        return;
    std::string kept;
    kept.reserve(block.size() - wasted);
    for (Entry& entry : entries) {
        const auto name = static_cast<uint32_t>(kept.size());
        kept.append(NameOf(entry)).append(TextOf(entry));
        entry.name = name;
        entry.text = name + entry.nameLength;
    }
    block = std::move(kept);
    wasted = 0;
}
