#include <random>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

struct object_of_test {
    const char* command; /**< trap number and first argument */
    int32_t status_var;
};

struct record_of_model {
    size_t object;
    int32_t clearing; /**< the command's last argument */
    uint32_t status;
    int64_t checked_s;
};

/** The rules of the memory in their plainest form, over objects whose state is known here. 0: gone. */
class memory_model {
  public:
    explicit memory_model(size_t objects) : states(objects, 1) {}

    std::vector<uint32_t> states;
    std::vector<record_of_model> records;

    /** Whether a notification goes out. */
    bool event(size_t object, int32_t clearing, int64_t now_s) {
        if (states[object] == 0)
            return false;
        const auto known = std::find_if(records.begin(), records.end(), [&](const record_of_model& record) {
            return record.object == object;
        });
        if (known != records.end()) {
            if (known->status == states[object] && clearing != 5)
                return false;
            records.erase(known);
        }
        if (states[object] != 1)
            records.push_back({object, clearing, states[object], now_s});
        return true;
    }

    /** One look, whether a notification goes out. */
    bool look(int64_t now_s) {
        if (records.empty() || now_s - looked_s < 1)
            return false;
        if (cursor >= records.size())
            cursor = 0;
        for (;;) {
            const record_of_model record = records.at(cursor);
            const int64_t age_s = now_s - record.checked_s;
            if (age_s >= 604801) {
                records.erase(records.begin() + static_cast<std::ptrdiff_t>(cursor));
            } else if (age_s >= 60) {
                looked_s = records[cursor].checked_s = now_s;
                if (states[record.object] != 0) {
                    const bool has_changed = states[record.object] != record.status;
                    if (has_changed)
                        event(record.object, states[record.object] == 1 ? 5 : record.clearing, now_s);
                    advance();
                    return has_changed;
                }
                records.erase(records.begin() + static_cast<std::ptrdiff_t>(cursor));
                advance();
                return false;
            }
            if (!advance())
                return false;
        }
    }

  private:
    bool advance() {
        if (++cursor < records.size())
            return true;
        cursor = 0;
        return false;
    }

    size_t cursor = 0;
    int64_t looked_s = 0;
};

class OutstandingModel : public TrapWorld {
  protected:
    const std::vector<object_of_test> objects = {
        {"203 11", var_at(COLID_tsCtlrStatus, 1)}, {"203 12", var_at(COLID_tsCtlrStatus, 2)},
        {"212 61", var_at(COLID_tsUPSStatus, 1)},  {"210 2", var_at(COLID_tsCacheStatus, 2)},
        {"205 5", var_at(COLID_tsEnclStatus, 1)},  {"205 7", var_at(COLID_tsEnclStatus, 2)},
    };
    memory_model model{objects.size()};
    std::mt19937 random{20240915};
    string course;  // what the last step called

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random); }

    static int64_t now_s() { return ClockNowUs() / kSecondUs; }

    static size_t sent_in(const string& course) {
        size_t count = 0;
        for (size_t place = 0; (place = course.find("notify ", place)) != string::npos; ++place)
            ++count;
        return count;
    }

    string real_records() const {
        string text;
        for (const auto& record : outstandingTraps) {
            const TrapToSend& command = record->command;
            text += std::to_string(command.trapNum) + " " + std::to_string(command.trapArgA) + " argument " +
                    std::to_string(command.trapArgD) + " status " + std::to_string(record->statusUint) +
                    " checked " + std::to_string(record->timeLastChecked_us / kSecondUs) + "\n";
        }
        return text;
    }

    string model_records() const {
        string text;
        for (const record_of_model& record : model.records)
            text += string(objects[record.object].command) + " argument " + std::to_string(record.clearing) +
                    " status " + std::to_string(record.status) + " checked " +
                    std::to_string(record.checked_s) + "\n";
        return text;
    }

    void change_state(size_t object) {
        const uint32_t state = static_cast<uint32_t>(below(4));
        model.states[object] = state;
        set_status(objects[object].status_var, std::max(state, 1U));
        if (state == 0)
            clear_cached(objects[object].status_var);
    }

    bool report(size_t object) {
        const int32_t clearing = below(5) == 0 ? 5 : static_cast<int32_t>(below(3));
        course = run("1 2 3 " + string(objects[object].command) + " 0 0 " + std::to_string(clearing) +
                     " a@@@text");
        return sent_in(course) == (model.event(object, clearing, now_s()) ? 1U : 0U);
    }

    bool look() {
        static const int64_t kSteps_s[] = {0, 1, 1, 2, 30, 59, 60, 61, 604800, 604801};
        fake_clock::advance(kSteps_s[below(below(20) == 0 ? 10 : 8)] * kSecondUs);
        check_outstanding_traps();
        course = transcript::take();
        return sent_in(course) == (model.look(now_s()) ? 1U : 0U);
    }
};

TEST_F(OutstandingModel, RandomEventsAndLooksLeaveWhatTheRulesSay) {
    for (int step = 0; step < 20000; ++step) {
        const size_t object = below(objects.size());
        const size_t kind = below(8);
        if (kind < 2)
            change_state(object);
        else
            ASSERT_TRUE(kind < 4 ? report(object) : look()) << "step " << step << "\n"
                                                            << course << model_records();
        ASSERT_EQ(real_records(), model_records()) << "step " << step << "\n" << course;
    }
}

}  // namespace
