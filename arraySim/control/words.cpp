#include "arraySim/control/words.h"

namespace arraysim {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

class WordReader {
  public:
    explicit WordReader(std::string_view line) : rest_(line) {}

    std::vector<std::string> ReadAll() {
        std::vector<std::string> words;
        while (SkipBlanks()) {
            words.push_back(ReadWord());
        }
        return words;
    }

  private:
    bool SkipBlanks() {
        const size_t start = rest_.find_first_not_of(kBlanks);
        rest_.remove_prefix(start == rest_.npos ? rest_.size() : start);
        return !rest_.empty();
    }

    std::string ReadWord() {
        std::string word;
        while (!rest_.empty() && kBlanks.find(rest_.front()) == kBlanks.npos) {
            if (Take() == '"') {
                ReadQuoted(word);
            } else {
                word += taken_;
            }
        }
        return word;
    }

    void ReadQuoted(std::string& word) {
        while (Take() != '"') {
            word += taken_ == '\\' ? Escaped(Take()) : taken_;
        }
    }

    static char Escaped(char c) {
        switch (c) {
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case '"':
            case '\\':
                return c;
            default:
                throw CommandError(std::string("unknown escape sequence \\") + c);
        }
    }

    char Take() {
        if (rest_.empty()) {
            throw CommandError("missing closing quote");
        }
        taken_ = rest_.front();
        rest_.remove_prefix(1);
        return taken_;
    }

    std::string_view rest_;
    char taken_ = '\0';
};

}  // namespace

std::vector<std::string> SplitWords(std::string_view line) {
    return WordReader(line).ReadAll();
}

std::string JoinWords(const std::vector<std::string>& words, size_t from) {
    std::string text;
    for (size_t i = from; i < words.size(); ++i) {
        text += (i == from ? "" : " ") + words[i];
    }
    return text;
}

std::string QuoteWord(const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t\r\n\"\\") == std::string::npos) {
        return word;
    }
    std::string quoted = "\"";
    for (const char c : word) {
        if (c == '\n' || c == '\t') {
            quoted += c == '\n' ? "\\n" : "\\t";
        } else {
            quoted += c == '"' || c == '\\' ? std::string{'\\', c} : std::string{c};
        }
    }
    return quoted + '"';
}

}  // namespace arraysim
