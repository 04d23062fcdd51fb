#include "tools/checkconf/report.h"

#include <ostream>

namespace checkconf {

namespace {

std::string Counted(int count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

void Report::Begin(const std::string& heading) {
    pending_heading_ = heading;
}

void Report::Fact(const std::string& text) {
    if (!is_quiet_)
        Print("", text);
}

void Report::Warn(const std::string& text) {
    ++warnings_;
    Print("warning: ", text);
}

void Report::Error(const std::string& text) {
    ++errors_;
    Print("ERROR: ", text);
}

void Report::Summarise() {
    if (!is_quiet_)
        out_ << Counted(errors_, "error") << ", " << Counted(warnings_, "warning") << '\n';
}

void Report::Print(const char* mark, const std::string& text) {
    if (!pending_heading_.empty())
        out_ << pending_heading_ << '\n';
    pending_heading_.clear();
    out_ << "  " << mark << text << '\n';
}

}  // namespace checkconf
