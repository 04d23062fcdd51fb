#include <algorithm>
#include <optional>
#include <random>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingCheck.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

enum kind_number : size_t {
    ctlr,
    encl,
    disk,
    fan,
    power,
    supply,
    folder,
    volume,
    server,
    cache,
    ports,
    ups,
    kKinds
};

struct kind_of_test {
    int32_t trapNum;
    const char* object;
    int first_column; /**< the row number; the name is two columns later */
    int status_column;
    int index_column;       /**< -1: none */
    bool is_instance;       /**< only the object's status is re-read, and its index verifies it */
    size_t parent = kKinds; /**< kKinds: none */
    int32_t component = 0;
};

// Parents first.
const kind_of_test kinds[kKinds] = {
    {203, "tsController", COLID_tsCtlrNbr, COLID_tsCtlrStatus, -1, false},
    {205, "tsEnclosure", COLID_tsEnclNbr, COLID_tsEnclStatus, COLID_tsEnclApiIndex, false},
    {202, "tsDisk", COLID_tsDiskNbr, COLID_tsDiskStatus, COLID_tsDiskApiIndex, true},
    {204, "tsControllerFanSensor", COLID_tsCtlrFanNbr, COLID_tsCtlrFanStatus, COLID_tsCtlrFanApiIndex, false,
     ctlr, 1},
    {204, "tsControllerPowerSupply", COLID_tsCtlrPowerNbr, COLID_tsCtlrPowerStatus, -1, false, ctlr, 2},
    {206, "tsEnclosurePowerSupply", COLID_tsEnclPowerNbr, COLID_tsEnclPowerStatus, -1, false, encl, 2},
    {207, "tsDiskFolder", COLID_tsDiskFolderNbr, COLID_tsDiskFolderStatus, COLID_tsDiskFolderApiIndex, true},
    {208, "tsVolume", COLID_tsVolumeNbr, COLID_tsVolumeStatus, COLID_tsVolumeApiIndex, true},
    {209, "tsServer", COLID_tsServerNbr, COLID_tsServerStatus, COLID_tsServerApiIndex, true},
    {210, "tsControllerCacheCard", COLID_tsCacheNbr, COLID_tsCacheStatus, -1, false},
    {211, "Tessera", COLID_tsTsNbr, COLID_tsTsPortsBal, -1, false},
    {212, "tsUps", COLID_tsUPSNbr, COLID_tsUPSStatus, COLID_tsUPSApiIndex, false},
};

struct thing {
    int parent; /**< API index; 0: none */
    int number; /**< API index */
    uint32_t status = 1;
    bool is_listed = true;

    /** For a disk, the name refers to enclosure 5, which always exists. */
    string name() const { return "5-" + std::to_string(100 * parent + number); }
};

/** The objects of the array, by kind. Tests reorder the lists, and remove and add objects. */
std::vector<thing> things[kKinds] = {
    {{0, 11}, {0, 12}},
    {{0, 5}, {0, 6}, {0, 7}},
    {{0, 40}, {0, 41}, {0, 42}},
    {{11, 1}, {11, 2}, {12, 3}, {12, 4}, {12, 5}},
    {{11, 1}, {12, 2}, {12, 3}},
    {{5, 1}, {5, 2}, {6, 3}, {7, 4}, {7, 5}},
    {{0, 21}, {0, 22}},
    {{0, 31}, {0, 32}},
    {{0, 51}, {0, 52}, {0, 53}},
    {{0, 1}, {0, 2}},
    {{0, 1}},
    {{0, 61}, {0, 62}, {0, 63}},
};
bool is_busy = false;  // the array does not respond

bool is_child(size_t kind, int32_t parent_row, const thing& object) {
    if (kinds[kind].parent == ctlr)
        return object.parent == (parent_row == 1 ? ctlrIndexFirst : ctlrIndexSecond);
    const int32_t above = var_at(COLID_tsEnclApiIndex, parent_row);
    return kinds[kind].parent == kKinds ||
           (is_cached(above) && vars[above].uint == static_cast<uint32_t>(object.parent));
}

// Packs the rows of the listed objects. Unused rows keep their values.
void refresh_rows(size_t kind, int32_t parent) {
    const kind_of_test& columns = kinds[kind];
    const auto rows = static_cast<int32_t>(std::min(cols[columns.first_column].maxNumOfRows, 5U));
    for (int32_t row = 1; row <= rows; ++row) {
        for (const int col_id : {columns.first_column, columns.status_column, columns.index_column})
            clear_cached(var_at(std::max(col_id, columns.first_column), row, parent));
    }
    int32_t row = 0;
    for (const thing& each : things[kind]) {
        if (!each.is_listed || !is_child(kind, parent, each))
            continue;
        ++row;
        store_number(var_at(columns.first_column, row, parent), row);
        store_number(var_at(columns.status_column, row, parent), each.status);
        store_text(var_at(columns.first_column + 2, row, parent), each.name());
        if (columns.index_column >= 0)
            store_number(var_at(columns.index_column, row, parent), each.number);
        if (kind == ctlr)
            (row == 1 ? ctlrIndexFirst : ctlrIndexSecond) = each.number;
    }
}

void refresh_kind(size_t kind) {
    const int32_t parents = kinds[kind].parent == kKinds ? 1 : kinds[kind].parent == ctlr ? 2 : 3;
    for (int32_t parent = 1; parent <= parents && !is_busy; ++parent)
        refresh_rows(kind, parent);
}

/** A trap command: API index or row of the object or its parent, and of the component. */
struct command_of_test {
    size_t kind;
    int object;
    int component = 0;

    bool operator==(const command_of_test&) const = default;

    string text() const {
        return std::to_string(kinds[kind].trapNum) + " " + std::to_string(object) + " " +
               std::to_string(kinds[kind].component) + " " +
               std::to_string(component - (kind == fan ? 1 : 0)) + " ";
    }
};

/** The object that a command finds. */
struct sight {
    size_t kind;
    int32_t row;
    int32_t status_var;
    uint32_t status;
    string name;
};

struct notice {
    sight seen;
    int32_t clearing;
};

struct record_of_model {
    command_of_test command;
    int32_t clearing; /**< the command's last argument */
    int32_t row;
    uint32_t status;
    int64_t checked_s;
};

/** A simple model of the records: each belongs to an object, whatever its row. Use it after the daemon has
   processed a command, when the tables have been refreshed. */
class memory_model {
  public:
    std::vector<record_of_model> records;

    /** Call before the daemon processes a command: it rejects unknown parents without a refresh. */
    void see_what_is_known() {
        known = {ctlrIndexFirst, ctlrIndexSecond};
        for (const thing& each : things[encl]) {
            if (row_of(encl, each.number) != 0)
                known.push_back(each.number);
        }
    }

    /** Returns the object that a command finds; none if the command is rejected. */
    std::optional<sight> reach(const command_of_test& command) const {
        const size_t parent_kind = kinds[command.kind].parent;
        if (parent_kind == kKinds)
            return reach_whole(command.kind, command.object);
        const std::optional<sight> parent =
            parent_kind == ctlr ? seen_in(ctlr, command.object, 1) : reach_whole(encl, command.object);
        if (!parent || parent->status != 1)
            return {};
        return seen_in(command.kind, row_of(command.kind, command.component, parent->row), parent->row);
    }

    std::optional<notice> event(const command_of_test& command, int32_t clearing, int64_t now_s) {
        const std::optional<sight> seen = reach(command);
        if (!seen)
            return {};
        const auto first = [&](auto fits) { return std::find_if(records.begin(), records.end(), fits); };
        const auto mine = first([&](const record_of_model& record) { return record.command == command; });
        const auto displaced = first([&](const record_of_model& record) {
            return kinds[command.kind].is_instance && record.command.kind == command.kind &&
                   record.row == seen->row;
        });
        if (mine != records.end()) {
            mine->row = seen->row;
            if (mine->status == seen->status && clearing != 5)
                return {};
            records.erase(mine);
        } else if (displaced != records.end()) {
            records.erase(displaced);
            return {};
        }
        if (seen->status != 1)
            records.push_back({command, clearing, seen->row, seen->status, now_s});
        return notice{*seen, clearing};
    }

    std::optional<notice> look(int64_t now_s) {
        if (records.empty() || now_s - looked_s < 1)
            return {};
        if (cursor >= records.size())
            cursor = 0;
        do {
            const record_of_model record = records[cursor];
            const int64_t age_s = now_s - record.checked_s;
            if (age_s < 60)
                continue;
            if (age_s < 604801)
                looked_s = records[cursor].checked_s = now_s;
            if (age_s >= 604801 || is_displaced(record)) {
                forget();
                continue;
            }
            const std::optional<notice> sent = look_at(record, now_s);
            advance();
            return sent;
        } while (advance());
        return {};
    }

  private:
    std::optional<notice> look_at(const record_of_model& record, int64_t now_s) {
        const std::optional<sight> seen = reach(record.command);
        if (!seen) {
            forget();
            return {};
        }
        records[cursor].row = seen->row;
        if (seen->status == record.status)
            return {};
        return event(record.command, seen->status == 1 ? 5 : record.clearing, now_s);
    }

    // Returns whether another object has the row, which only an API index can show.
    static bool is_displaced(const record_of_model& record) {
        const kind_of_test& kind = kinds[record.command.kind];
        return kind.is_instance && vars[var_at(kind.index_column, record.row)].uint !=
                                       static_cast<uint32_t>(record.command.object);
    }

    // Returns the row (from 1), or 0 if there is none.
    static int32_t row_of(size_t kind, int number, int32_t parent = 1) {
        if (kind == ctlr)
            return number == ctlrIndexFirst ? 1 : number == ctlrIndexSecond ? 2 : 0;
        const int col_id = kinds[kind].index_column;
        return col_id < 0
                   ? number
                   : find_row_by_value(var_at(col_id, 1, parent), 5, static_cast<uint32_t>(number)) + 1;
    }

    std::optional<sight> reach_whole(size_t kind, int number) const {
        const bool must_be_known = kind == ctlr || kind == encl;
        if (must_be_known && std::find(known.begin(), known.end(), number) == known.end())
            return {};
        return seen_in(kind, row_of(kind, number), 1);
    }

    static std::optional<sight> seen_in(size_t kind, int32_t row, int32_t parent) {
        const kind_of_test& columns = kinds[kind];
        const int32_t status_var = var_at(columns.status_column, std::max(row, 1), parent);
        if (row < 1 || static_cast<uint32_t>(row) > cols[columns.status_column].maxNumOfRows ||
            !is_cached(status_var))
            return {};
        sight seen{kind, row, status_var, vars[status_var].uint,
                   vars[var_at(columns.first_column + 2, row, parent)].str};
        if (is_busy)
            return columns.is_instance ? std::nullopt : std::optional(seen);
        for (const thing& each : things[kind]) {
            if (each.name() != seen.name || !each.is_listed)
                continue;
            seen.status = each.status;
            return seen;
        }
        EXPECT_TRUE(columns.is_instance) << "not refreshed: " << columns.object;
        return {};
    }

    void forget() { records.erase(records.begin() + static_cast<std::ptrdiff_t>(cursor)); }

    bool advance() {
        if (++cursor < records.size())
            return true;
        cursor = 0;
        return false;
    }

    std::vector<int> known;
    size_t cursor = 0;
    int64_t looked_s = 0;
};

class OutstandingModel : public TrapWorld {
  protected:
    OutstandingModel() {
        on_refresh = [](const string& object) {
            const auto refreshed = [&](const kind_of_test& kind) { return object == kind.object; };
            refresh_kind(
                static_cast<size_t>(std::find_if(std::begin(kinds), std::end(kinds), refreshed) - kinds));
        };
        for (size_t kind = 0; kind < kKinds; ++kind) {
            refresh_kind(kind);
            for (const thing& each : things[kind]) {
                const int whole =
                    each.parent == 0 ? each.number : each.parent - (kinds[kind].parent == ctlr ? 10 : 0);
                const int component = kind == fan ? each.number : each.number % 2 + 1;
                commands.push_back({kind, whole, each.parent == 0 ? 0 : component});
            }
        }
        tell_states();
    }

    memory_model model;
    std::vector<command_of_test> commands;
    std::mt19937 random{20240915};
    string course;            // the transcript of the last step
    size_t changed_kind = 0;  // of the latest change; an event is likely to follow

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

    static string real_records() {
        string text;
        for (const auto& record : outstandingTraps) {
            for (const int64_t number : {int64_t{record->command.trapNum}, int64_t{record->command.trapArgA},
                                         int64_t{record->command.trapArgB}, int64_t{record->command.trapArgC},
                                         int64_t{record->command.trapArgD}, int64_t{record->statusUint},
                                         record->timeLastChecked_us / kSecondUs})
                text += std::to_string(number) + " ";
            text += "\n";
        }
        return text;
    }

    string model_records() const {
        string text;
        for (const record_of_model& record : model.records)
            text += record.command.text() + std::to_string(record.clearing) + " " +
                    std::to_string(record.status) + " " + std::to_string(record.checked_s) + " \n";
        return text;
    }

    void change_array() {
        const size_t kind = changed_kind = below(kKinds);
        thing& one = things[kind][below(things[kind].size())];
        const size_t what = below(6);
        if (what < 2)
            one.status = static_cast<uint32_t>(below(3)) + 1;
        else if (what == 2)
            one.is_listed = one.number == 5 || one.number == 11 || kind == ports || !one.is_listed;
        else if (what == 3)
            std::swap(one, things[kind][below(things[kind].size())]);
        else if (what == 4)
            is_busy = below(4) == 0;
        else
            refresh_kind(kind);
        tell_states();
    }

    // Sets the responses of the array to requests for one object.
    static void tell_states() {
        static constexpr const char* kTexts[] = {"", "Up", "Down", "Degraded"};
        for (const size_t kind : {disk, folder, volume, server}) {
            const string object = string("T") + (kinds[kind].object + 1);
            for (const thing& each : things[kind]) {
                answer_status(object, each.number, kTexts[each.status]);
                if (is_busy || !each.is_listed)
                    fake_api_mgr::documents["Get " + object + " 64702." + std::to_string(each.number)] =
                        fake_api_mgr::failure_answer("ObjectNotAvailable");
            }
        }
    }

    bool report() {
        command_of_test command{};
        do
            command = commands[below(commands.size())];
        while (command.kind != changed_kind && below(8) != 0);
        const int32_t clearing = below(5) == 0 ? 5 : static_cast<int32_t>(below(3));
        model.see_what_is_known();
        course = run("1 2 3 " + command.text() + std::to_string(clearing) + " a@@@text");
        return is_as_expected(model.event(command, clearing, ClockNowUs() / kSecondUs));
    }

    bool look(int64_t later_s) {
        model.see_what_is_known();
        fake_clock::advance(later_s * kSecondUs);
        check_outstanding_traps();
        course = transcript::take();
        return is_as_expected(model.look(ClockNowUs() / kSecondUs));
    }

    bool look() {
        static const int64_t kSteps_s[] = {0, 1, 1, 2, 30, 59, 60, 61, 604800, 604801};
        return look(kSteps_s[below(below(20) == 0 ? 10 : 8)]);
    }

    /** Without further changes, each object whose status differs from its record is reported once. */
    void settle() {
        is_busy = false;
        tell_states();
        const size_t round = outstandingTraps.size() + 1;
        for (size_t looks = 0; looks < 3 * round; ++looks) {
            ASSERT_TRUE(look(61)) << course << model_records();
            ASSERT_TRUE(looks < 2 * round || course.find("notify ") == string::npos) << course;
        }
        for (const record_of_model& record : model.records)
            ASSERT_EQ(model.reach(record.command)->status, record.status) << record.command.text();
    }

    // Returns whether a receiver got exactly this.
    bool is_as_expected(const std::optional<notice>& expected) const {
        const size_t sent = course.find("notify ");
        if (sent == string::npos || !expected)
            return sent == string::npos && !expected;
        const auto says = [&](const string& text) { return course.find(text + "\n", sent) != string::npos; };
        const auto& [seen, clearing] = *expected;
        const bool clears = clearing == 5 && (seen.kind != ups || seen.status == 1);
        const string status = kinds[seen.kind].component != 0 ? "R.35.0" : name_of(seen.status_var);
        const string type = kinds[seen.kind].component != 0 || seen.kind == ports ? " integer " : " gauge ";
        return course.find("notify ", sent + 1) == string::npos &&
               says(status + type + std::to_string(seen.status)) &&
               says(clears ? "R.43.0 integer 1" : "R.43.0 integer 2") &&
               (seen.kind == ports ||
                (says("\"" + seen.name + "\"") &&
                 says(clearing == 5 ? "R.41.0 \"Alert Cleared - text\"" : "R.41.0 \"text\"")));
    }
};

TEST_F(TrapWorld, TheLogTellsWhyARecordChangesOrIsDropped) {
    const auto expect_logged = [](const string& line) {
        const string course = transcript::take();
        EXPECT_NE(course.find("log " + line + "$\n"), string::npos) << line << " in\n" << course;
    };
    const auto event = [](const string& arguments) {
        transcript::add(run("1 2 3 " + arguments + " a@@@text"));
    };
    const auto check = [](int64_t later_us) {
        fake_clock::advance(later_us);
        check_outstanding_traps();
    };
    const string removal = "7 we're removing the outstanding trap cuz ";
    verbose = true;
    const int32_t number = var_at(COLID_tsCtlrNbr, 2);
    const int32_t status = var_at(COLID_tsCtlrStatus, 2);
    set_status(status, 2);
    event("203 12 0 0 4");
    set_status(status, 3);
    check(60 * kSecondUs);
    expect_logged("4 found status change: trapNum: 203, trapArgA: 12, trapArgB: 0, trapArgC: 0, trapArgD: 4");
    clear_cached(status);
    EXPECT_EQ(IsRedundantTrap(outstandingTraps[0]->command, {number, number, status}, false), 1);
    expect_logged(removal +
                  "the var is no longer cached: trapNum: 203, owenerOid: 16, statusOid: 17, status string: "
                  "Degraded, var verify: 2, trap verify: 2");

    // A disk is verified by its API index.
    answer_status("TsDisk", 43, "Down");
    answer_status("TsDisk", 44, "Down");
    for (const bool is_event : {true, false}) {
        store_number(var_at(COLID_tsDiskApiIndex, 2), 43);
        event("202 43 0 0 0");
        store_number(var_at(COLID_tsDiskApiIndex, 2), 44);
        if (is_event)
            event("202 44 0 0 5");
        else
            check(60 * kSecondUs);
        expect_logged(is_event
                          ? removal +
                                "verify-value does not match: trapNum: 202, owenerOid: 27, statusOid: 28, "
                                "status string: Down, var verify: 44, trap verify: 43"
                          : "7 found verify-value mismatch - removing outstanding trap: trap: 43, var: 44");
        EXPECT_TRUE(outstandingTraps.empty());
    }
    set_status(status, 2);
    event("203 12 0 0 0");
    check(604801 * kSecondUs);
    expect_logged(
        "7 oustanding trap is stale - removing outstanding trap: trapNum: 203, trapArgA: 12, trapArgB: 0, "
        "trapArgC: 0, trapArgD: 0");
}

TEST_F(OutstandingModel, RandomEventsAndLooksLeaveWhatTheRulesSay) {
    for (int step = 0; step < 20000; ++step) {
        const size_t action = below(8);
        if (action < 2)
            change_array();
        else
            ASSERT_TRUE(action < 4 ? report() : look()) << "step " << step << "\n"
                                                        << course << model_records();
        ASSERT_EQ(real_records(), model_records()) << "step " << step << "\n" << course;
        if (step % 1000 == 999)
            settle();
        ASSERT_FALSE(HasFailure()) << "step " << step;
    }
}

}  // namespace
