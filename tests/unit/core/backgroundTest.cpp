#include <random>
#include <stdexcept>
#include <thread>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using std::string;

constexpr int64_t kSecond = 1'000'000;

int note_refresh(int32_t var_index, bool background) {
    transcript::add("refresh " + std::to_string(vars[var_index].col_id) +
                    (background ? " in the background" : ""));
    return 0;
}

// All columns have just been refreshed, so none is due unless a test makes it due.
class Scan : public MibWorld {
  protected:
    Scan() {
        snmpSubagent_is_active = true;
        snmpSubagentComm->set_apimgr_state(true);
        for (column_record& column : cols) {
            if (column.get_fn != nullptr)
                column.get_fn = note_refresh;
            column.last_fetch_time_us = ClockNowUs();
        }
        bgUpdateLastFetch_us = ClockNowUs() - kSecond;
    }

    // Scans once. Returns the refreshes, the column of the next scan, and the state.
    static string scan() {
        check_for_table_changes();
        const int state = bgUpdateState;
        return transcript::take() + "next " + std::to_string(bgUpdateColumn) + ", state " +
               std::to_string(state) +
               (state == BGUPDATE_STATE_getlist_requested ? " of " + std::to_string(bgUpdateTable) : "");
    }
    static string scan_from(int column) {
        bgUpdateColumn = column;
        bgUpdateLastFetch_us = ClockNowUs() - kSecond;
        return scan();
    }
    static void set_age(int column, int64_t age_us, int64_t duration_us) {
        cols[column].last_fetch_time_us = ClockNowUs() - age_us;
        cols[column].last_fetch_duration_us = duration_us;
    }
};

TEST_F(Scan, StopsAtTheFirstColumnThatIsDueAndNotYetAllowed) {
    const std::tuple<int, int64_t, int64_t, const char*> rows[] = {
        {4, 20 * 5000 - 1, 5000, "next 4, state 0"},  // a scalar: 20 times
        {4, 20 * 5000, 5000, "refresh 4\nnext 5, state 0"},
        {47, 10 * 5000 - 1, 5000, "next 47, state 0"},  // a small table: 10 times
        {47, 10 * 5000, 5000, "refresh 47\nnext 48, state 0"},
        {27, 10 * kSecond - 1, kSecond, "next 27, state 0"},  // also a large one, before its age matters
        {27, 10 * kSecond, kSecond, "refresh 47\nnext 48, state 0"},
        {27, 120 * kSecond + 27 * 60 * kSecond / 194, 0, "next 28, state 1 of 27"},
        {151, 120 * kSecond + 151 * 60 * kSecond / 194, 0, "next 152, state 1 of 151"},  // has only one row
        {184, 0, 0, "next 0, state 0"},
        {157, 1000 * kSecond, 0, "refresh 165\nnext 166, state 0"},  // not refreshed separately
    };
    for (const auto& [column, age_us, duration_us, course] : rows) {
        set_age(column, age_us, duration_us);
        bgUpdateState = BGUPDATE_STATE_idle;
        EXPECT_EQ(scan_from(column), course) << column << " " << age_us;
        set_age(column, 0, 0);
    }
}

TEST_F(Scan, DoesNothingWithoutTheLinkAndStopsWithTheDaemon) {
    snmpSubagentComm->set_apimgr_state(false);
    bgUpdateState = BGUPDATE_STATE_getlist_done;
    EXPECT_EQ(scan_from(27), "next 27, state 2");
    snmpSubagentComm->set_apimgr_state(true);
    bgUpdateState = BGUPDATE_STATE_idle;
    snmpSubagent_is_active = false;
    EXPECT_EQ(scan_from(27), "next 28, state 0");
    EXPECT_EQ(scan_from(193), "next 0, state 0");
}

TEST_F(Scan, ServesEachStateOfTheHandshake) {
    const attribute_map_entry map[] = {{"Name", COLID_tsDiskName, nullptr}};
    bgUpdateTable = COLID_tsDiskNbr;
    bgUpdateApiName = "tsDisk";
    bgUpdateMapSize = 1;
    bgUpdateMap = map;
    bgUpdateResponse = table_response(fake_api_mgr::list_answer("<tsDisk><Name>d</Name></tsDisk>"));

    bgUpdateState = BGUPDATE_STATE_getlist_requested;
    EXPECT_EQ(scan_from(37), "next 37, state 1 of 27");  // busy: later large tables wait as well
    EXPECT_EQ(scan_from(47), "refresh 47\nnext 48, state 1 of 27");
    EXPECT_EQ(value_of(var_at(COLID_tsDiskName, 1)), "-");

    // The response is merged at the next large table in the scan, whether it is due or not.
    bgUpdateState = BGUPDATE_STATE_getlist_done;
    EXPECT_EQ(scan_from(107), "refresh 127\nnext 128, state 0");
    EXPECT_EQ(value_of(var_at(COLID_tsDiskName, 1)), "\"d\"");
    bgUpdateState = BGUPDATE_STATE_getlist_done;
    bgUpdateResponse = table_response("torn");
    set_age(115, 1000 * kSecond, 0);
    EXPECT_EQ(scan_from(115),
              "log 4 error found while trying to parse ipXmlString: torn$\nnext 116, state 1 of 115");
    EXPECT_EQ(bgUpdateLastFetch_us, ClockNowUs());
    set_age(115, 0, 0);

    bgUpdateTable = COLID_tsDiskNbr;
    bgUpdateState = BGUPDATE_STATE_error_on_getlist;
    EXPECT_EQ(scan_from(184),
              "log 7 BGUPDATE_STATE_error_on_getlist for bgUpdateTable: 27, bgUpdateApiName: tsDisk$\n"
              "next 0, state 0");
    bgUpdateState = 4;
    EXPECT_EQ(scan_from(184), "log 4 Error: invalid bgUpdateState: 4$\nnext 0, state 0");
}

// ---- the task ----

// Returns a response whose disks all have the same name: number of the response and number of disks.
string answer_of_generation(int generation, size_t disks) {
    string objects;
    for (size_t i = 0; i < disks; ++i)
        objects +=
            "<tsDisk><Name>" + std::to_string(generation) + "/" + std::to_string(disks) + "</Name></tsDisk>";
    return fake_api_mgr::list_answer(objects);
}

// Checks that all disks in the store have the same name, and that their number is right. Returns the name.
string generation_in_store() {
    const string name = vars[var_at(COLID_tsDiskName, 1)].str;
    const auto disks = static_cast<int32_t>(std::stoul(name.substr(name.find('/') + 1)));
    for (int32_t row = 1; row <= disks; ++row)
        EXPECT_EQ(value_of(var_at(COLID_tsDiskName, row)), "\"" + name + "\"") << row;
    EXPECT_FALSE(is_cached(var_at(COLID_tsDiskName, disks + 1)));
    return name;
}

// Of three exchanges, one gets no response, one a truncated document and one a complete one.
TEST_F(MibWorld, FetchesThatFailAtRandomNeverShowPartsOfTwoAnswers) {
    verbose = false;
    for (column_record& column : cols) {
        if (column.is_table() && column.head_var != cols[COLID_tsDiskNbr].first_var)
            column.get_fn = nullptr;
    }
    fake_api_mgr::meddle([random = std::mt19937(20251124), generation = 0](
                             const fake_api_mgr::envelope& request, fake_api_mgr::envelope& answer) mutable {
        if (!request.apireqmsg().has_cmd())
            return;
        const string whole = answer_of_generation(++generation, 1 + random() % 40);
        const auto kind = random() % 3;
        if (kind == 0)
            throw std::runtime_error("the peer is gone");
        answer.mutable_apirespmsg()->mutable_cmd()->set_respdata(
            kind == 1 ? whole.substr(0, random() % whole.size()) : whole);
    });
    snmpSubagent_is_active = true;
    std::thread task([] { GetListTaskMain(nullptr); });
    string last;
    for (int merges = 0; merges < 100;) {
        fake_clock::advance(kSecond);
        snmpSubagentComm->set_apimgr_state(true);  // as the main loop would detect
        check_for_table_changes();
        if (is_cached(var_at(COLID_tsDiskName, 1)) && generation_in_store() != last) {
            last = generation_in_store();
            ++merges;
        }
        std::this_thread::yield();
    }
    snmpSubagent_is_active = false;
    task.join();
    fake_api_mgr::meddle(nullptr);
}

}  // namespace
