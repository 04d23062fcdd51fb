#include <gmock/gmock.h>

#include <map>
#include <random>

#include "apiMgmt/apiStub/base/apiObjects/base/attributeMap.h"

namespace {

using Model = std::map<std::string, std::string>;

Model ContentOf(const ATTRIBUTEMap& map) {
    Model content;
    for (const auto& [name, text] : map)
        content.emplace(name, text);
    return content;
}

TEST(AttributeMap, DoesWhatAnOrderedMapDoes) {
    std::mt19937 random(20161031);
    const auto pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    ATTRIBUTEMap map;
    Model model;
    size_t position = 0;  // of the last entry found; only a hint
    for (int step = 0; step < 20000; ++step) {
        const std::string name(static_cast<size_t>(pick(3)), static_cast<char>(pick(256)));
        const std::string text(static_cast<size_t>(pick(100) == 0 ? 3000 : pick(40)),
                               static_cast<char>(pick(256)));
        map.Set(name, text);
        model[name] = text;
        const auto found = map.Find(name);
        ASSERT_TRUE(found);
        ASSERT_EQ(*found, text);
        const std::string other(static_cast<size_t>(pick(3)), static_cast<char>(pick(256)));
        const auto near = map.Find(other, position);
        const auto expected = model.find(other);
        ASSERT_EQ(near.has_value(), expected != model.end());
        if (near) {
            ASSERT_EQ(*near, expected->second);
        }
        if (pick(4) == 0) {
            map.Remove(other);
            model.erase(other);
            ASSERT_FALSE(map.Contains(other));
        }
        if (pick(1000) == 0) {
            map.Clear();
            model.clear();
        }
        if (step % 500 == 0) {
            ASSERT_EQ(ContentOf(map), model);
            const ATTRIBUTEMap copy = map;
            ASSERT_EQ(ContentOf(copy), model);
        }
    }
    ASSERT_EQ(map.Size(), model.size());
    // The order is also that of the model.
    auto expected = model.begin();
    for (const auto& [name, text] : map)
        EXPECT_EQ(name, (expected++)->first);
    EXPECT_FALSE(map.Contains("no such name"));
}

TEST(AttributeMap, GivesBackWhatEntriesThatAreGoneTook) {
    ATTRIBUTEMap map;
    map.Set("Name", std::string(100, 'n'));
    map.Remove("Name");
    map.Clear();  // which also reclaims the wasted space
    map.Set("Kept", "text");
    for (int i = 0; i < 1000; ++i) {
        map.Set("Name", std::string(10000, 'n'));
        map.Remove("Name");
    }
    map.Set("Last", "text");
    // Both are in the one block.
    EXPECT_LT(map.Find("Last")->data() - map.Find("Kept")->data(), 100000);
    EXPECT_EQ(*map.Find("Kept"), "text");
}

TEST(AttributeMap, TakesTextsOutOfItself) {
    ATTRIBUTEMap map;
    map.Set("Name", std::string(200, 'n'));
    for (int i = 0; i < 50; ++i) {
        map.Set("Name", *map.Find("Name"));
        map.Set("Copy" + std::to_string(i), *map.Find("Name"));
    }
    EXPECT_EQ(*map.Find("Name"), std::string(200, 'n'));
    EXPECT_EQ(*map.Find("Copy49"), std::string(200, 'n'));
    map.Set((*map.begin()).first.substr(0, 4), "from a name");
    EXPECT_EQ(*map.Find("Copy"), "from a name");
}

}  // namespace
