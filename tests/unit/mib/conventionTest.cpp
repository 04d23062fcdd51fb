// Checks that the daemon converts the array's strings as the MIB module documents.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

struct text_number {
    std::string text;
    int32_t number;
};

struct convention {
    post_process_type post_process;
    const char* api;
    std::vector<text_number> texts;
    int32_t other;
};

std::vector<convention> all_conventions() {
    std::vector<convention> all;
#define CONVENTION(post_process, api) all.push_back({post_process, api, {}, 0});
#define TEXT(text, number) all.back().texts.push_back({text, number});
#define END(number) all.back().other = number;
#include "mib/conventionRows.inc"
#undef CONVENTION
#undef TEXT
#undef END
    return all;
}

class Convention : public MibWorld {
  protected:
    Convention() { verbose = false; }

    static int32_t ask_daemon(const convention& each, const std::string& text) {
        const int32_t variable = var_at(COLID_tsDiskStatus, 1);
        vars[variable].str = text;
        vars[variable].uint = 777;
        each.post_process(variable);
        return static_cast<int32_t>(vars[variable].uint);
    }
};

TEST_F(Convention, HasTheNumbersOfTheDaemon) {
    for (const convention& each : all_conventions()) {
        for (const auto& [text, number] : each.texts)
            EXPECT_EQ(ask_daemon(each, text), number) << text;
        EXPECT_EQ(ask_daemon(each, "no such word"), each.other) << each.api;
    }
}

// Every keyword that the daemon supports must be in the MIB.
TEST_F(Convention, ContainsEveryKeywordOfTheDaemon) {
    size_t asked = 0;
    for (const convention& each : all_conventions()) {
        if (*each.api == '\0')
            continue;
        const auto& tables = APIEnumsIDStrList::gAllEnumTables;
        const auto table = std::find_if(std::begin(tables), std::end(tables),
                                        [&](const ENUMNamedTable& one) { return one.name == each.api; });
        ASSERT_NE(table, std::end(tables)) << each.api;
        for (const ENUMRow& row : table->rows) {
            const std::string word(row.Description);
            const auto known = std::find_if(each.texts.begin(), each.texts.end(),
                                            [&](const text_number& one) { return one.text == word; });
            EXPECT_EQ(ask_daemon(each, word), known == each.texts.end() ? each.other : known->number) << word;
            ++asked;
        }
    }
    EXPECT_GT(asked, 30U);
}

}  // namespace
