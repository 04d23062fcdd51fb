#include "arraySim/protocol/callReader.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

namespace arraysim {

namespace {

using What = Clause::What;

struct ClauseForm {
    const char* word;
    What what;
    enum class Takes { kNothing, kWord, kAssignments, kKindAndAssignments, kStateAndText } takes;
};
constexpr ClauseForm kClauses[] = {
    {"unless", What::kUnless, ClauseForm::Takes::kAssignments},
    {"set", What::kSet, ClauseForm::Takes::kAssignments},
    {"more", What::kMore, ClauseForm::Takes::kWord},
    {"less", What::kLess, ClauseForm::Takes::kWord},
    {"up", What::kUp, ClauseForm::Takes::kNothing},
    {"down", What::kDown, ClauseForm::Takes::kNothing},
    {"remove", What::kRemove, ClauseForm::Takes::kNothing},
    {"create", What::kCreate, ClauseForm::Takes::kKindAndAssignments},
    {"says", What::kSays, ClauseForm::Takes::kWord},
    {"history", What::kHistory, ClauseForm::Takes::kKindAndAssignments},
    {"refuse", What::kRefuse, ClauseForm::Takes::kStateAndText},
    {"nothing", What::kNothing, ClauseForm::Takes::kNothing},
    {"itself", What::kItself, ClauseForm::Takes::kNothing},
};

}  // namespace

void CallReader::Fail(const std::string& why) const {
    throw CatalogueError("calls.def:" + std::to_string(line_number_) + ": " + why);
}

void CallReader::Read(std::string_view text) {
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);) {
        ++line_number_;
        std::istringstream words(line);
        const Words split{std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()};
        if (!split.empty() && split.front()[0] != '#') {
            ReadLine(split);
        }
    }
}

void CallReader::ReadLine(Words words) {
    const std::string first = Take(words);
    const std::string name = Take(words);
    if (first == "object" && words.empty()) {
        if (!catalogue_.FindRequestable(name)) {
            Fail("no object is named '" + name + "'");
        }
        object_ = name;
    } else if (first == "does" && !object_.empty()) {
        ReadEffect(name, std::move(words));
    } else if (first == "related" && !object_.empty()) {
        ReadRelation(name, std::move(words));
    } else {
        Fail("'" + first + "' does not fit here");
    }
}

void CallReader::ReadEffect(const std::string& command, Words words) {
    const std::string key = "API" + object_ + command + "Method";
    if (!APIObjectFactory<BASEApiMethod>::Instance().GetCreators().contains(key)) {
        Fail(object_ + " has no command '" + command + "'");
    }
    std::vector<Clause>& effect = table_.effects_[{object_, command}];
    if (!effect.empty()) {
        Fail("'" + command + "' stands already");
    }
    do {
        effect.push_back(TakeClause(words));
    } while (!words.empty());
}

void CallReader::ReadRelation(const std::string& relation, Words words) {
    if (!CreateAssociation(object_, relation)) {
        Fail(object_ + " has no association '" + relation + "'");
    }
    const std::string target = Take(words);
    const std::optional<Selection> selection = catalogue_.Find(target);
    if (!selection) {
        Fail("no kind of object is named '" + target + "'");
    }
    const Assignments conditions = TakeAssignments(words);
    CheckAttributes(*selection, conditions);
    if (!words.empty() || !table_.relations_.insert({{object_, relation}, {*selection, conditions}}).second) {
        Fail("'" + relation + "' stands already, or its line is too long");
    }
}

std::string CallReader::Take(Words& words) const {
    if (words.empty()) {
        Fail("something is missing at the end");
    }
    std::string word = std::move(words.front());
    words.pop_front();
    return word;
}

Assignments CallReader::TakeAssignments(Words& words) const {
    Assignments assignments;
    while (!words.empty() && words.front().find('=') != std::string::npos) {
        const std::string word = Take(words);
        const size_t equals = word.find('=');
        assignments.emplace_back(word.substr(0, equals), word.substr(equals + 1));
    }
    return assignments;
}

std::string CallReader::FirstUnknown(const Selection& selection, const Assignments& assignments) const {
    for (const auto& [attribute, value] : assignments) {
        const bool known = std::any_of(
            catalogue_.kinds().begin(), catalogue_.kinds().end(), [&, name = attribute](const Kind& kind) {
                return kind.list == selection.list && selection.Matches(kind) && kind.HasAttribute(name);
            });
        if (!known) {
            return attribute;
        }
    }
    return {};
}

void CallReader::CheckAttributes(const Selection& selection, const Assignments& assignments) const {
    const std::string unknown = FirstUnknown(selection, assignments);
    if (!unknown.empty()) {
        Fail(selection.Name() + " has no attribute '" + unknown + "'");
    }
}

void CallReader::CheckSubject(const Clause& clause) const {
    Assignments used = clause.assignments;
    if (clause.what == What::kMore || clause.what == What::kLess) {
        used.emplace_back(clause.word, "");
    }
    const std::string unknown = FirstUnknown(*catalogue_.Find(object_), used);
    if (!unknown.empty() && !FirstUnknown(*catalogue_.Find("Tessera"), used).empty()) {
        Fail("neither " + object_ + " nor the array has an attribute '" + unknown + "'");
    }
}

Clause CallReader::TakeClause(Words& words) const {
    const std::string word = Take(words);
    const ClauseForm* form = std::find_if(std::begin(kClauses), std::end(kClauses),
                                          [&](const ClauseForm& each) { return word == each.word; });
    if (form == std::end(kClauses)) {
        Fail("unknown word '" + word + "'");
    }
    Clause clause;
    clause.what = form->what;
    switch (form->takes) {
        case ClauseForm::Takes::kNothing:
            break;
        case ClauseForm::Takes::kWord:
            clause.word = Take(words);
            CheckSubject(clause);
            break;
        case ClauseForm::Takes::kAssignments:
            clause.assignments = TakeAssignments(words);
            if (clause.assignments.empty()) {
                Fail("'" + word + "' needs ATTR=VALUE");
            }
            CheckSubject(clause);
            break;
        case ClauseForm::Takes::kKindAndAssignments:
            clause.word = Take(words);
            if (!catalogue_.Find(clause.word)) {
                Fail("no kind of object is named '" + clause.word + "'");
            }
            clause.assignments = TakeAssignments(words);
            CheckAttributes(*catalogue_.Find(clause.word), clause.assignments);
            break;
        case ClauseForm::Takes::kStateAndText:
            clause.word = Take(words);
            if (ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindDescription(clause.word) ==
                nullptr) {
                Fail("the API has no error state '" + clause.word + "'");
            }
            do {
                clause.text += (clause.text.empty() ? "" : " ") + Take(words);
            } while (!words.empty());
            break;
    }
    return clause;
}

}  // namespace arraysim
