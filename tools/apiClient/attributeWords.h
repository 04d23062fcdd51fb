#pragma once

#include <string>
#include <string_view>

#include "tools/apiClient/apiCatalogue.h"

/** What a value of the attribute may be, in words: "a text of 1 to 64 bytes without < > &". */
std::string AllowedWords(const CatalogueAttribute& attribute);

/** The name, and its label where that says more: "Name", "BmcGateway (BMC Gateway IPv4 Address)". */
std::string AttributeWords(const CatalogueAttribute& attribute);

/** The words of an enumeration, with their texts where these say more: "Up, NotPresent (Not Present)". */
std::string EnumerationWords(const ENUMTable& rows);

/** A text for people of an enumeration's row, in UTF-8. */
std::string UiText(const ENUMRow& row);

/** "there is no object 'X'; do you mean TsDisk?" or, when nothing is near, the hint. */
template <class Item>
std::string UnknownWords(std::string_view what, std::string_view given, const std::vector<Item>& items,
                         std::string_view hint);

/** How many letters have to change, come or go to make one text of the other, letter case aside. */
size_t TextDistance(std::string_view left, std::string_view right);

template <class Item>
std::string UnknownWords(std::string_view what, std::string_view given, const std::vector<Item>& items,
                         std::string_view hint) {
    const Item* nearest = nullptr;
    size_t distance = given.size() / 3 + 1;
    for (const Item& item : items) {
        const size_t of_item = TextDistance(item.name, given);
        if (of_item <= distance && (nearest == nullptr || of_item < distance)) {
            nearest = &item;
            distance = of_item;
        }
    }
    return "there is no " + std::string(what) + " '" + std::string(given) + "'; " +
           (nearest == nullptr ? std::string(hint) : "do you mean " + nearest->name + "?");
}
