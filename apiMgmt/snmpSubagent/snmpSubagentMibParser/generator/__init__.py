"""Makes the C++ tables of the MIB store from columns.def and refresh.def."""
