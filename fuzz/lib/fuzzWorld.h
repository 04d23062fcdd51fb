#pragma once

#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/trapWorld.h"

/** The worlds of the core's tests, outside of a test: one a process. */
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
