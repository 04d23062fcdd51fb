#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/numericText.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/storageUnits.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

uint32_t number_from_text(std::string_view text, uint32_t data_type) {
    if (data_type == SMI_BASETYPE_UNSIGNED32)
        return as_number_column(ParseUnsigned(text));
    return static_cast<uint32_t>(ParseInt(text));
}
