#include "arraySim/control/statistics.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

void Statistics::CountExchange(const std::string& command, const std::string& object, bool good,
                               bool affected) {
    Row& row = rows_[{command, object}];
    ++row.exchanges;
    row.failed += good ? 0 : 1;
    row.affected += affected ? 1 : 0;
}

void Statistics::CountConnection(bool refused) {
    ++connections_;
    refused_ += refused ? 1 : 0;
}

size_t Statistics::Exchanges(const std::string& command, const std::string& object) const {
    const auto row = rows_.find({command, object});
    return row == rows_.end() ? 0 : row->second.exchanges;
}

std::string Statistics::Describe() const {
    std::string text = FormatString("connections %zu, refused %zu\n", connections_, refused_);
    text += FormatString("%-8s %-30s %9s %7s %7s\n", "command", "object", "exchanges", "failed", "faults");
    for (const auto& [key, row] : rows_) {
        text += FormatString("%-8s %-30s %9zu %7zu %7zu\n", key.first.c_str(), key.second.c_str(),
                             row.exchanges, row.failed, row.affected);
    }
    return text;
}

}  // namespace arraysim
