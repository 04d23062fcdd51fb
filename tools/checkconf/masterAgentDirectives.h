#pragma once

namespace checkconf {

/**
 * The directives that Debian 12's snmpd accepts in snmpd.conf, separated by spaces: those that `snmpd -H`
 * lists, and extensions.
 */
inline constexpr const char* kMasterAgentDirectives =
    "access agentaddress agentgroup agentSecName agentuser agentxperms agentxRetries agentxsocket "
    "agentxTimeout at authaccess authcommunity authgroup authtrapenable authuser avgBulkVarbindSize "
    "certSecName com2sec com2sec6 com2secunix count_kthreads createUser cron defaultMonitors defDomain "
    "defTarget disablePerl disk diskio diskio_exclude_fd diskio_exclude_loop diskio_exclude_ram dlmod "
    "doNotRetainNotificationLogs dontLogTCPWrappersConnects dontRetainLogs engineID engineIDNic "
    "engineIDType exec execfix extend extendfix file group ifmib_max_num_ifaces ignoredisk "
    "include_ifmib_iface_prefix includeAllDisks includeAllExternals includeDir includeFile informsink "
    "interface interface_fadeout interface_replace_old iquerySecLevel iquerySecName iqueryVersion "
    "leave_pidfile linkUpDownNotifications load logmatch master maxGetbulkRepeats maxGetbulkResponses "
    "monitor notificationEvent override pass pass_persist pduStatsMax pduStatsThreshold perl "
    "perlInitFile proc procfix proxy realStorageUnits repeat rocommunity rocommunity6 rouser "
    "rwcommunity rwcommunity6 rwuser sendmail_config sendmail_index sendmail_queue sendmail_queue_t "
    "sendmail_stats sendmail_stats_t setaccess setEvent setserialno sh skipNFSInHostResources smuxpeer "
    "smuxsocket snmpTlstmAddr snmpTlstmParams sourceFilterAddress sourceFilterType storageUseNFS "
    "strictDisman swap syscontact sysdescr syslocation sysname sysobjectid sysservices trap2sink "
    "trapcommunity trapsess trapsink usmUser v1trapaddress view";

}  // namespace checkconf
