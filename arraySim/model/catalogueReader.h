#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/model/catalogue.h"

namespace arraysim {

/** Reads data/objects.def, whose head describes the form, into a catalogue. */
class CatalogueReader {
  public:
    explicit CatalogueReader(Catalogue& catalogue) : catalogue_(catalogue) {}

    /** Throws CatalogueError with the line of the first mistake. */
    void Read(std::string_view text);

  private:
    using Words = std::vector<std::string>;
    /** A line that gives an attribute its mark and rule. */
    struct ValueLine {
        size_t number;
        bool is_read;
        std::string attribute;
        std::string rule;
    };

    void ReadLine(const std::string& line);
    void StartObject(const Words& words);
    void StartList(const Words& words);
    void StartRun(const Words& words);
    void ReadValue(const Words& words, const std::string& rule);
    void UseRun(const Words& words);
    void ReadOwn(const Words& words);
    void ReadEvent(const Words& words);

    ObjectList& AddList(const std::string& name);
    Kind& OpenKind();
    /** The attributes that the catalogue has for it, with what they have by default. */
    void TakeAttributes(Kind& kind) const;
    void Put(const ValueLine& line);
    void FinishKind(Kind& kind);
    void CheckEvent(const Kind& kind) const;
    [[noreturn]] void Fail(const std::string& why) const;

    Catalogue& catalogue_;
    std::map<std::string, std::vector<ValueLine>> runs_;
    std::map<std::string, std::string> keys_;  ///< kind to the word behind `keyed`
    std::vector<ValueLine>* open_run_ = nullptr;
    Kind* open_kind_ = nullptr;
    std::set<std::string> put_;        ///< attributes of the open kind that have a line of their own
    ObjectList* open_list_ = nullptr;  ///< what an event line belongs to
    size_t line_number_ = 0;
};

}  // namespace arraysim
