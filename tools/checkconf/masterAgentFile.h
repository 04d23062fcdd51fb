#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace checkconf {

/** The directives of a snmpd.conf: the words of each line, the first one in lower case. */
class MasterAgentFile {
  public:
    using Directive = std::vector<std::string>;

    explicit MasterAgentFile(const std::string& text);

    const std::vector<Directive>& directives() const { return directives_; }

    /** Returns all directives with one of these names. */
    std::vector<Directive> Find(std::initializer_list<std::string_view> names) const;

    /** Returns the number in the last line of that name; nothing if there is none or it is not just digits.
     */
    std::optional<int> Number(std::string_view name) const;

    /** Returns the rest of the last line of that name, including quotes and comments; empty if there is none.
     */
    std::string LastText(const std::string& name) const;

  private:
    std::vector<Directive> directives_;
    std::map<std::string, std::string> last_texts_;
};

}  // namespace checkconf
