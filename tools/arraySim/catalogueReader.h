#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/arraySim/catalogue.h"

namespace arraysim {

/** Reads data/objects.def, whose head describes the form, into a catalogue. */
class CatalogueReader {
  public:
    explicit CatalogueReader(Catalogue& catalogue) : catalogue_(catalogue) {}

    /** Throws CatalogueError with the line of the first mistake. */
    void Read(std::string_view text);

  private:
    using Words = std::vector<std::string>;

    void ReadLine(const std::string& line);
    void StartObject(const Words& words);
    void StartList(const Words& words);
    void StartRun(const Words& words);
    void ReadAttribute(const Words& words, const std::string& rule);
    void UseRun(const Words& words);
    void ReadEvent(const Words& words);

    ObjectList& AddList(const std::string& name);
    /** The attributes that lines go to now: those of an object or of a run. */
    std::vector<Attribute>& Target();
    void Put(const Attribute& attribute);
    void FinishKind(Kind& kind);
    void CheckEvent(const Kind& kind) const;
    Rule RuleOf(const std::string& text) const;
    [[noreturn]] void Fail(const std::string& why) const;

    Catalogue& catalogue_;
    std::map<std::string, std::vector<Attribute>> runs_;
    std::map<std::string, std::string> keys_;  ///< kind to the word behind `keyed`
    std::vector<Attribute>* target_ = nullptr;
    ObjectList* open_list_ = nullptr;  ///< what an event line belongs to
    size_t line_number_ = 0;
};

}  // namespace arraysim
