#include "apiMgmt/snmpSubagent/snmpSubagentMain/startStep.h"

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

bool run_start_steps(std::initializer_list<start_step> steps) {
    for (const start_step& step : steps) {
        SUBAGENT_LOG(7, "%s", step.progress);
        if (step.run() != 0) {
            SUBAGENT_LOG(4, "%s", step.failure);
            return false;
        }
    }
    return true;
}
