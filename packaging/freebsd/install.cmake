# What FreeBSD gets beside the programs, below the prefix, which is /usr/local there. The daemon reads its settings from
# /etc: the samples are copied there by the port's packing list, or by hand.
install(PROGRAMS freebsd/snmpsubagent DESTINATION etc/rc.d COMPONENT daemon)
foreach(settings snmpSubagent.conf start.conf)
  install(FILES etc/${settings} DESTINATION etc/snmpsubagent RENAME ${settings}.sample COMPONENT daemon)
endforeach()
# Passphrases are written into it.
install(FILES etc/snmpd.conf DESTINATION etc/snmpsubagent RENAME snmpd.conf.sample
        PERMISSIONS OWNER_READ OWNER_WRITE COMPONENT daemon)
