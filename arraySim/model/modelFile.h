#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "arraySim/model/model.h"

namespace arraysim {

/** An error in a model file, with its place and reason. */
class ModelFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Returns the model as JSON, one object per line, in the order of responses:
 *   {"serial": N, "objects": {"TsDisk": [{"Index": "5", "Status": "Up"}], ...}}
 * In a mixed list each object begins with its kind: {"kind": "TsPhysicalServer", "Index": "3"}.
 */
std::string WriteModel(const Model& model);

/** Parses such JSON. Throws ModelFileError, also for an unknown list or attribute and for a missing or
   duplicate index. */
Model ReadModel(const Catalogue& catalogue, std::string_view text);

void WriteModelFile(const Model& model, const std::string& path);
Model ReadModelFile(const Catalogue& catalogue, const std::string& path);

/** Returns whether a model and a document may contain the string. */
bool IsUtf8(const std::string& text);

}  // namespace arraysim
