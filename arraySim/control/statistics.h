#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace arraysim {

/** Counts of exchanges and connections. Not thread-safe. */
class Statistics {
  public:
    /** command and object must be the program's own strings, not the peer's, so that the table stays small.
     */
    void CountExchange(const std::string& command, const std::string& object, bool good, bool affected);
    void CountConnection(bool refused);

    size_t Exchanges(const std::string& command, const std::string& object) const;
    /** Returns a human-readable table. */
    std::string Describe() const;

  private:
    struct Row {
        size_t exchanges = 0;
        size_t failed = 0;
        size_t affected = 0;
    };

    std::map<std::pair<std::string, std::string>, Row> rows_;
    size_t connections_ = 0;
    size_t refused_ = 0;
};

}  // namespace arraysim
