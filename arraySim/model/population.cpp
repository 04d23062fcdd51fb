#include "arraySim/model/population.h"

#include "arraySim/model/objectMaker.h"

namespace arraysim {

namespace {

/** Objects that come and go with another of the same index. */
struct Companion {
    const char* kind;
    const char* companion;
};
constexpr Companion kCompanions[] = {
    {"TsDisk", "TsDiskConfiguration"},
    {"TsDiskFolder", "TsDiskFolderStorageUsage"},
};

const char* CompanionOf(const Kind& kind) {
    for (const Companion& each : kCompanions) {
        if (kind.name == each.kind) {
            return each.companion;
        }
    }
    return nullptr;
}

/** Places do not last: the list may have grown out of its memory. */
void Make(Model& model, const Kind& kind, uint32_t index, const GivenValues& values) {
    const Place place = PlaceAtEnd(model, kind, index, values);
    model.Append(MakeObject(kind, place, Random::For(model.serial(), kind.name, index), values));
}

}  // namespace

Object& AddObject(Model& model, const Kind& kind, uint32_t index, const GivenValues& values) {
    Make(model, kind, index, values);
    const char* companion = CompanionOf(kind);
    if (companion != nullptr && model.Find(*model.catalogue().Find(companion), index) == nullptr) {
        Make(model, model.catalogue().KindOf(companion), index, {});
    }
    model.UpdateCounts();
    return *model.Find({kind.list, &kind}, index);
}

void RemoveObject(Model& model, const Object& object) {
    const Kind& kind = *object.kind;
    const uint32_t index = object.index;
    model.Remove({kind.list, &kind}, index);
    if (const char* companion = CompanionOf(kind)) {
        model.Remove(*model.catalogue().Find(companion), index);
    }
    model.UpdateCounts();
}

}  // namespace arraysim
