#include <algorithm>
#include <random>

#include "tests/unit/core/fakes/mibWorld.h"

namespace {

class Store : public MibWorld {};

TEST_F(Store, BeginsEmptyAndFindsRowAndParentByArithmetic) {
    const int32_t fans = cols[COLID_tsCtlrFanNbr].first_var;
    const std::tuple<int32_t, const char*, int32_t, int32_t> rows[] = {
        {0, "1.3.6.1.2.1.1.4.0", -1, -1},
        {10, "R.7.0", -1, -1},
        {cols[COLID_tsCtlrNbr].first_var + 1, "R.13.1.2.2", -1, 2},
        {fans + 5, "R.16.1.2.1.6", 1, 6},
        {fans + 6, "R.16.1.2.2.1", 2, 1},
        {cols[COLID_tsEnclTempForceTrap].first_var + 2199, "R.23.1.6.100.22", 100, 22},
        {254628, "R.46.1.11.2.9000", 2, 9000},
    };
    for (const auto& [var_index, name, parent, row] : rows) {
        EXPECT_EQ(name_of(var_index), name);
        EXPECT_EQ(get_parent_seq(var_index), parent) << name;
        EXPECT_EQ(get_row_seq(var_index), row) << name;
    }
    EXPECT_EQ(total_vars, 254629);
    EXPECT_EQ(current_oid_for_init, total_vars);
    for (int32_t i = 0; i < total_vars; ++i)
        ASSERT_TRUE(!is_cached(i) && vars[i].uint == 0xFFFFFFFF && vars[i].str.empty() && vars[i].flags == 0);
}

TEST_F(Store, BitmapBehavesLikeOneFlagAnEntry) {
    std::mt19937 random(7);
    std::vector<bool> model(static_cast<size_t>(total_vars), false);
    const auto below = [&](int32_t bound) {
        return std::uniform_int_distribution<int32_t>(0, bound - 1)(random);
    };
    for (int i = 0; i < 20000; ++i) {
        // Near word boundaries, at the ends, and anywhere. Ranges contain none to thousands of entries.
        int32_t first = below(3) == 0 ? below(total_vars) : below(total_vars / 64) * 64 + below(3);
        if (below(20) == 0)
            first = total_vars - 1 - below(130);
        const int32_t longest = below(4) == 0 ? 5000 : 140;
        const int32_t last = std::min(first + below(longest), total_vars);
        switch (below(4)) {
            case 0:
                clear_cached_range(first, last);
                std::fill(model.begin() + first, model.begin() + last, false);
                break;
            case 1:
                clear_cached(first);
                model[static_cast<size_t>(first)] = false;
                break;
            default:
                for (int32_t each = first; each < last; each += 1 + below(90)) {
                    set_cached(each);
                    model[static_cast<size_t>(each)] = true;
                }
        }
        const auto found = std::find(model.begin() + first, model.end(), true);
        ASSERT_EQ(first_cached_from(first), found == model.end() ? -1 : found - model.begin()) << first;
    }
    for (int32_t i = 0; i < total_vars; ++i)
        ASSERT_EQ(is_cached(i), model[static_cast<size_t>(i)]) << i;
    set_cached(254628);
    EXPECT_EQ(first_cached_from(254628), 254628);
    EXPECT_EQ(first_cached_from(254629), -1);
    EXPECT_EQ(first_cached_from(INT64_MAX), -1);
    EXPECT_EQ(first_cached_from(-1), -1);
}

TEST_F(Store, FindsARowByItsValueUpToTheFirstGap) {
    const int32_t first = cols[COLID_tsDiskApiIndex].first_var;
    for (const int32_t row : {0, 1, 2, 4})
        store_number(first + row, 10 * (row + 1));
    EXPECT_EQ(find_row_by_value(first, 2000, 10), 0);
    EXPECT_EQ(find_row_by_value(first, 2000, 30), 2);
    EXPECT_EQ(find_row_by_value(first, 2000, 50), -1);  // after the gap
    EXPECT_EQ(find_row_by_value(first, 2, 30), -1);
    EXPECT_EQ(find_row_by_value(first, 3, 30), 2);
    EXPECT_EQ(find_row_by_value(first, 0, 10), -1);
    EXPECT_EQ(find_row_by_value(first, -1, 10), -1);
    EXPECT_EQ(find_row_by_value(first + 3, 5, 0xFFFFFFFF), -1);
}

// ---- forced refreshes: a get_fn of the test records its calls ----

int failing_column = -1;

int get_and_note(int32_t var_index, bool background) {
    const int col_id = vars[var_index].col_id;
    transcript::add("get " + std::to_string(col_id) + (background ? " in the background" : ""));
    fake_clock::advance(2500);
    return col_id == failing_column ? 7 : 0;
}

class Force : public Store {
  protected:
    Force() {
        for (column_record& column : cols)
            column.get_fn = column.get_fn != nullptr ? get_and_note : nullptr;
    }
};

TEST_F(Force, TakesTheTimesOfARefresh) {
    EXPECT_EQ(force_get_table_info(COLID_tsDiskName, true), 0);  // any column of a table refreshes the table
    EXPECT_EQ(transcript::take(), "get 27 in the background\n");
    EXPECT_EQ(cols[COLID_tsDiskName].last_fetch_time_us, fake_clock::kStart_us);
    EXPECT_EQ(cols[COLID_tsDiskName].last_fetch_duration_us, 2500);

    failing_column = 27;
    EXPECT_EQ(force_get_table_info(COLID_tsDiskName, false), 1);
    EXPECT_EQ(transcript::take(), "get 27\nlog 7 UNsuccessful in get-handler for col-id: 29, retVal: 7$\n");
    EXPECT_EQ(cols[COLID_tsDiskName].last_fetch_time_us, fake_clock::kStart_us + 2500);
    EXPECT_EQ(cols[COLID_tsDiskName].last_fetch_duration_us, 2500);

    EXPECT_EQ(force_get_table_info(COLID_tsFolderUsageNbr, false), 0);  // it is not refreshed separately
    EXPECT_EQ(transcript::take(), "");
}

TEST_F(Force, OfAllGoesOnWithoutPagePoolsOnly) {
    verbose = false;
    failing_column = 177;
    EXPECT_EQ(force_get_table_info_all(), 0);
    std::string lines = transcript::take();
    const std::string complaint =
        "log 4 could not get table info for tsDiskConfig: perhaps there are no pagepools$\n";
    ASSERT_NE(lines.find(complaint), std::string::npos);
    EXPECT_NE(lines.find("get 184\n"), std::string::npos);

    failing_column = 144;
    EXPECT_EQ(force_get_table_info_all(), 1);
    lines = transcript::take();
    EXPECT_EQ(lines.substr(lines.find("get 144")),
              "get 144\nlog 4 could not get table info for col_id: 144$\n");
}

}  // namespace
