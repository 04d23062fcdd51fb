#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * The simplest possible merge of a response: column after column, scanning all elements for each parent. It
 * has its own store, with which tests compare the real one.
 */
class literal_merge {
  public:
    struct variable {
        bool cached = false;
        uint32_t uint = 0xFFFFFFFF;
        std::string str;
    };

    literal_merge();

    int process_table_info(int col_id, const std::string& apiName,
                           const std::vector<attribute_map_entry>& map, const std::string& xml);

    std::vector<variable> vars;
    int32_t index_first = 0;
    int32_t index_second = 0;

    /** The only post-process that a map may contain. Its result depends on everything that it may read. */
    static void mark(std::string& str, uint32_t& number, bool cached);
    static void mark_real_variable(int32_t var_index);

  private:
    using elements = std::vector<parser::XMLElement>;

    int get_col_info(int col_id, const elements& list, const char* attribute, bool has_post_process);
    bool matches(const parser::XMLElement& element, int col_id, uint32_t parent, bool* has_tag) const;
    void merge(variable& target, int col_id, const parser::XMLElement& element, const char* attribute,
               int32_t child_index, bool has_post_process);
};
