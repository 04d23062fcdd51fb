#pragma once

#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/trapWorld.h"

/** The fixtures of the core's tests, for use without GoogleTest; one per process. */
class FuzzMibWorld : public MibWorld {
  public:
    void TestBody() override {}
};

class FuzzTrapWorld : public TrapWorld {
  public:
    using TrapWorld::answer_status;
    using TrapWorld::set_status;
    void TestBody() override {}
};
