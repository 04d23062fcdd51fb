#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace checkconf {

/** The directives of a snmpd.conf: words of a line, the first one in small letters. */
class MasterAgentFile {
  public:
    using Directive = std::vector<std::string>;

    explicit MasterAgentFile(const std::string& text);

    const std::vector<Directive>& directives() const { return directives_; }

    /** All that begin with one of these words. */
    std::vector<Directive> Find(std::initializer_list<std::string_view> names) const;

    /** The number behind a word, of its last line; nothing when there is none, or none in plain digits. */
    std::optional<int> Number(std::string_view name) const;

    /** What stands behind a word in its last line, quotes and a comment with it; empty without a line. */
    std::string LastText(const std::string& name) const;

  private:
    std::vector<Directive> directives_;
    std::map<std::string, std::string> last_texts_;
};

}  // namespace checkconf
