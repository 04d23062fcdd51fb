#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "arraySim/model/model.h"

namespace arraysim {

/** A model text that cannot be used; says where and why. */
class ModelFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * The model as JSON, one object a line, in the order of the answers:
 *   {"serial": N, "objects": {"TsDisk": [{"Index": "5", "Status": "Up"}], ...}}
 * In a mixed list each object begins with its kind: {"kind": "TsPhysicalServer", "Index": "3"}.
 */
std::string WriteModel(const Model& model);

/** Reads such a text. Throws ModelFileError; unknown lists and attributes are refused, and so is an object
    without its index or with one that stands already. */
Model ReadModel(const Catalogue& catalogue, std::string_view text);

void WriteModelFile(const Model& model, const std::string& path);
Model ReadModelFile(const Catalogue& catalogue, const std::string& path);

/** Whether a text can stand in a model and in a document. */
bool IsUtf8(const std::string& text);

}  // namespace arraysim
